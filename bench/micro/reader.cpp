// The reader: plain text, text full of braces, tags, and files through PHP's streams.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <unistd.h>

#include "bench/micro/page.h"
#include "input/input.h"

namespace {

std::string repeated(std::string_view piece, size_t size)
{
    std::string text;
    while (text.size() < size) {
        text += piece;
    }
    return text;
}

// Reads the whole input as analysis does: text up to a tag, then the tag.
size_t readAll(const std::string& source, bool stringMode)
{
    EngineCall call;
    Input input(source, stringMode, call);
    std::string text;
    std::string tag;
    while (input.fillBufferTillMark(text, '{')) {
        tag.clear();
        input.fillBufferTillMark(tag, '}');
    }
    return text.size();
}

void readString(benchmark::State& state, std::string_view piece)
{
    const std::string source = repeated(piece, static_cast<size_t>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(readAll(source, true));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(source.size()));
}

BENCHMARK_CAPTURE(readString, plain text, "Plain text as it stands in any page, without a tag.\n")
    ->Arg(1000)
    ->Arg(100'000);
BENCHMARK_CAPTURE(readString, escaped braces, "{{ a }} ")->Arg(100'000);
BENCHMARK_CAPTURE(readString, a tag in every 40 bytes, "<td>{name}</td> and thirty more bytes..\n")
    ->Arg(100'000);

void readFile(benchmark::State& state)
{
    const std::string name = "/tmp/template-micro-" + std::to_string(getpid());
    const auto size = static_cast<size_t>(state.range(0));
    const std::string source = repeated("Plain text of a file.\n", size);
    std::ofstream(name) << source;
    for (auto _ : state) {
        benchmark::DoNotOptimize(readAll(name, false));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(source.size()));
    std::remove(name.c_str());
}

BENCHMARK(readFile)->Arg(400)->Arg(200'000);

}
