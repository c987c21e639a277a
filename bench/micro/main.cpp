// Runs the micro-benchmarks inside one PHP request.
#include <benchmark/benchmark.h>

#include "module/engine.h"
#include "sapi/embed/php_embed.h"

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    php_embed_init(0, nullptr);
    benchmark::RunSpecifiedBenchmarks();
    php_embed_shutdown();
    return 0;
}
