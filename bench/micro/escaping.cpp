// Escaping while rendering, and the engine's own function on the same bytes.
#include <benchmark/benchmark.h>

#include "bench/micro/page.h"

namespace {

constexpr size_t LENGTH = 1150;

// Text in which one byte in so many is special; none for 0.
std::string textWithOneSpecialIn(size_t distance)
{
    std::string text(LENGTH, 'a');
    for (size_t i = 0; distance > 0 && i < LENGTH; i += distance) {
        text[i] = "<>&\""[i / distance % 4];
    }
    return text;
}

template <class Kind, void (Template::*RENDER)(const Kind&, std::string&, const zval*) const>
void render(benchmark::State& state)
{
    const auto distance = static_cast<size_t>(state.range(0));
    Page page("['rows' => [['text' => '" + textWithOneSpecialIn(distance) + "']]]");
    const OpenSection section(page);
    const Kind block("row", {"text"}, false);
    std::string out;
    for (auto _ : state) {
        (page.page.*RENDER)(block, out, section.element());
        out.clear();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(LENGTH));
}

BENCHMARK(render<HtmlspecialcharsBlock, &Template::_getResultHtmlspecialchars>)
    ->Name("htmlspecialchars")
    ->ArgName("one special in")
    ->Arg(0)
    ->Arg(20);
BENCHMARK(render<HtmlentitiesBlock, &Template::_getResultHtmlentities>)
    ->Name("htmlentities")
    ->ArgName("one special in")
    ->Arg(20);
BENCHMARK(render<AddslashesBlock, &Template::_getResultAddslashes>)
    ->Name("addslashes")
    ->ArgName("one special in")
    ->Arg(20);
BENCHMARK(render<RawurlencodeBlock, &Template::_getResultRawurlencode>)
    ->Name("rawurlencode")
    ->ArgName("one special in")
    ->Arg(20);

void engineFunction(benchmark::State& state)
{
    const std::string text = textWithOneSpecialIn(static_cast<size_t>(state.range(0)));
    for (auto _ : state) {
        zend_string* escaped
            = php_escape_html_entities(reinterpret_cast<const unsigned char*>(text.data()),
                text.size(), 0, ENT_COMPAT, "ISO-8859-1");
        zend_string_release(escaped);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(LENGTH));
}

BENCHMARK(engineFunction)
    ->Name("php_escape_html_entities")
    ->ArgName("one special in")
    ->Arg(0)
    ->Arg(20);

}
