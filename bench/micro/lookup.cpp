// Lookup: a path walked from its keys, and a reference resolved while rendering.
#include <benchmark/benchmark.h>

#include "bench/micro/page.h"

namespace {

const char* const DATA = R"([
    'name' => 'value',
    'a' => ['b' => ['c' => 'deep']],
    'rows' => [['name' => 'x', 'number' => 12345, 'half' => 0.5, 'in' => ['side' => 'y']]],
])";

void findVariable(benchmark::State& state, const std::deque<std::string>& path)
{
    const Page page(DATA);
    for (auto _ : state) {
        benchmark::DoNotOptimize(page.page.findVariable(path, nullptr));
    }
}

BENCHMARK_CAPTURE(findVariable, one key, {"name"});
BENCHMARK_CAPTURE(findVariable, three keys, {"a", "b", "c"});
BENCHMARK_CAPTURE(findVariable, with an index, {"rows", "0", "name"});
BENCHMARK_CAPTURE(findVariable, missing, {"nobody"});

// A tag that was left to rendering, as each element of its section renders it.
void renderVariable(benchmark::State& state, const std::vector<std::string>& references)
{
    Page page(DATA);
    const OpenSection section(page);
    MultiVariableBlock block(references, "");
    std::string out;
    for (auto _ : state) {
        page.page._getResultVariable(block, out, section.element());
        out.clear();
    }
}

BENCHMARK_CAPTURE(renderVariable, string, {"row::*::name"});
BENCHMARK_CAPTURE(renderVariable, integer, {"row::*::number"});
BENCHMARK_CAPTURE(renderVariable, float, {"row::*::half"});
BENCHMARK_CAPTURE(renderVariable, two keys, {"row::*::in::side"});
BENCHMARK_CAPTURE(renderVariable, section key, {"row::[*]"});
BENCHMARK_CAPTURE(renderVariable, second of two, {"row::*::nobody", "row::*::name"});

}
