// The reference notation: taking one apart, and whole tags from text to block.
#include <benchmark/benchmark.h>

#include "bench/micro/page.h"

namespace {

const char* const DATA = R"([
    'name' => 'value',
    'a' => ['b' => ['c' => 'deep']],
    'rows' => [['name' => 'x']],
])";

void parseArgument(benchmark::State& state, std::string_view reference)
{
    const Page page(DATA);
    for (auto _ : state) {
        benchmark::DoNotOptimize(page.page.parseArgument(reference));
    }
}

BENCHMARK_CAPTURE(parseArgument, name, "name");
BENCHMARK_CAPTURE(parseArgument, three keys, "a::b::c");
BENCHMARK_CAPTURE(parseArgument, of a section, "row::*::name");
BENCHMARK_CAPTURE(parseArgument, section key, "row::[*]");

void analyzeVariable(benchmark::State& state, std::string_view reference)
{
    const Page page(DATA);
    for (auto _ : state) {
        benchmark::DoNotOptimize(page.page.analyzeVariable(reference));
    }
}

BENCHMARK_CAPTURE(analyzeVariable, name, "name");
BENCHMARK_CAPTURE(analyzeVariable, three keys, "a::b::c");
BENCHMARK_CAPTURE(analyzeVariable, missing, "nobody");

void matchInput(benchmark::State& state, std::string_view tag)
{
    for (auto _ : state) {
        benchmark::DoNotOptimize(Template::matchInput(tag));
    }
}

BENCHMARK_CAPTURE(matchInput, first keyword, "include header.tpl");
BENCHMARK_CAPTURE(matchInput, last keyword, "rawurlencode name");
BENCHMARK_CAPTURE(matchInput, no keyword, "row::*::name");

void variableTag(benchmark::State& state, std::string_view content)
{
    Page page(DATA);
    EngineCall& call = page.phpInterface.engineCall;
    const size_t charged = call.charged();
    Blocks blocks;
    PendingText text = std::make_unique<TextBlock>();
    for (auto _ : state) {
        page.page.analyzeVariableBlock(blocks, text, content);
        blocks.clear();
        text->text.clear();
        call.dischargeTo(charged);
    }
}

BENCHMARK_CAPTURE(variableTag, settled at once, "name");
BENCHMARK_CAPTURE(variableTag, with a default, "nobody 'nothing'");
BENCHMARK_CAPTURE(variableTag, left to rendering, "row::*::name");

}
