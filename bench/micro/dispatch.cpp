// Dispatch: from a block to the renderer of its type, where that has next to nothing to do.
#include <benchmark/benchmark.h>

#include "bench/micro/page.h"

namespace {

// Analyses `piece` a thousand times over and renders that; time is for one block.
void renderBlocks(benchmark::State& state, std::string_view piece)
{
    constexpr int PIECES = 1000;
    std::string text;
    for (int i = 0; i < PIECES; ++i) {
        text += piece;
    }
    Page page("['rows' => [['name' => 'x']]]", text);
    page.page.analyzeTemplate();
    const OpenSection section(page);
    std::string out;
    for (auto _ : state) {
        page.page._getResult(page.page.blocks, out, section.element());
        out.clear();
    }
    const auto blocks = static_cast<int64_t>(page.page.blocks.size());
    state.SetItemsProcessed(state.iterations() * blocks);
}

BENCHMARK_CAPTURE(renderBlocks, section shown by the data, "{optional rows}{/optional}");
BENCHMARK_CAPTURE(renderBlocks, section shown by the element, "{optional row::*::name}{/optional}");
BENCHMARK_CAPTURE(renderBlocks, variable without a value, "{row::*::nobody}");
BENCHMARK_CAPTURE(renderBlocks, text and variable, "<td>{row::*::name}</td>");

}
