// What the parts of a call cost, one by one: template() itself, called with templates that need little but that part.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include <unistd.h>

#include <sapi/embed/php_embed.h>

extern "C" zend_module_entry template_module_entry;

namespace {

// A call of template() that can be made again and again.
class Call final {
public:
    Call(std::string_view source, const std::string& data, bool stringMode = true)
    {
        ZVAL_STRING(&function_, "template");
        ZVAL_STRINGL(&arguments_[0], source.data(), source.size());
        ZVAL_BOOL(&arguments_[2], stringMode);
        if (zend_eval_string(data.c_str(), &arguments_[1], "micro-benchmark") == FAILURE) {
            throw std::logic_error("PHP does not take: " + data);
        }
    }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;
    ~Call()
    {
        zval_ptr_dtor(&arguments_[0]);
        zval_ptr_dtor(&arguments_[1]);
        zval_ptr_dtor(&function_);
    }

    void run()
    {
        zval result;
        call_user_function(nullptr, nullptr, &function_, &result, 3, arguments_);
        if (Z_TYPE(result) != IS_STRING) {
            throw std::logic_error("template() gives no text.");
        }
        zval_ptr_dtor(&result);
    }

private:
    zval function_;
    zval arguments_[3];
};

std::string repeated(std::string_view piece, int64_t count)
{
    std::string text;
    for (; count > 0; --count) {
        text += piece;
    }
    return text;
}

// Reading: text of so many bytes, and what is looked for in it.
void read(benchmark::State& state, std::string_view piece)
{
    const std::string text = repeated(piece, state.range(0) / static_cast<int64_t>(piece.size()));
    Call call(text, "[]");
    for (auto _ : state) {
        call.run();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}

BENCHMARK_CAPTURE(read, nothing, "{")->Arg(1);
BENCHMARK_CAPTURE(read, plain text, "Plain text as it stands in any page, without a tag.\n")->Arg(1000)->Arg(100'000);
BENCHMARK_CAPTURE(read, escaped braces, "{{ a }} ")->Arg(100'000);

void readFile(benchmark::State& state)
{
    const std::string name = "/tmp/template-micro-" + std::to_string(getpid());
    std::ofstream(name) << std::string(static_cast<size_t>(state.range(0)), 'x');
    Call call(name, "[]", false);
    for (auto _ : state) {
        call.run();
    }
    std::remove(name.c_str());
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

BENCHMARK(readFile)->Arg(400)->Arg(200'000);

// Analysis: a thousand tags; time is for one. In a section that repeats nothing, none is rendered.
void analyze(benchmark::State& state, const std::string& piece)
{
    constexpr int PIECES = 1000;
    Call call("{dynamic row,rows}" + repeated(piece, PIECES) + "{/dynamic}",
        "['name' => 'value', 'a' => ['b' => ['c' => 'deep']], 'rows' => []]");
    for (auto _ : state) {
        call.run();
    }
    state.SetItemsProcessed(state.iterations() * PIECES);
}

BENCHMARK_CAPTURE(analyze, variable settled at once, "{name}");
BENCHMARK_CAPTURE(analyze, three keys, "{a::b::c}");
BENCHMARK_CAPTURE(analyze, default, "{nobody 'nothing'}");
BENCHMARK_CAPTURE(analyze, variable of the section, "{row::*::name}");
BENCHMARK_CAPTURE(analyze, two alternatives, "{row::*::nobody row::*::name}");
BENCHMARK_CAPTURE(analyze, condition of the section, "{optional row::*::name}x{/optional}");

// Rendering: a section over a thousand rows; time is for one.
void render(benchmark::State& state, const std::string& body)
{
    constexpr int ROWS = 1000;
    Call call("{dynamic row,rows}" + body + "{/dynamic}",
        "['rows' => array_map(fn($i) => ['name' => \"name $i\", 'number' => 12345 + $i, 'half' => $i + 0.5,"
        " 'in' => ['side' => 'y']] + (mt_rand(0, 1) ? [] : ['nick' => 'z']), range(1, 1000))]");
    for (auto _ : state) {
        call.run();
    }
    state.SetItemsProcessed(state.iterations() * ROWS);
}

BENCHMARK_CAPTURE(render, text, "<td></td>");
BENCHMARK_CAPTURE(render, string, "{row::*::name}");
BENCHMARK_CAPTURE(render, text and string, "<td>{row::*::name}</td>");
BENCHMARK_CAPTURE(render, integer, "{row::*::number}");
BENCHMARK_CAPTURE(render, float, "{row::*::half}");
BENCHMARK_CAPTURE(render, two keys, "{row::*::in::side}");
BENCHMARK_CAPTURE(render, section key, "{row::[*]}");
BENCHMARK_CAPTURE(render, first of two or second, "{row::*::nick row::*::name}");
BENCHMARK_CAPTURE(render, nothing there, "{row::*::nobody}");
BENCHMARK_CAPTURE(render, condition, "{optional row::*::nick}x{/optional}");

// Escaping: a hundred texts of 1150 bytes, in which so many of a hundred bytes, anywhere, are special.
void escape(benchmark::State& state, const std::string& tag)
{
    const std::string special = std::to_string(state.range(0));
    Call call("{dynamic row,rows}{" + tag + " *}{/dynamic}",
        "['rows' => array_map(fn() => preg_replace_callback('/./', fn() => mt_rand(1, 100) <= " + special
            + " ? '<>&\"'[mt_rand(0, 3)] : 'a', str_repeat('a', 1150)), range(1, 100))]");
    for (auto _ : state) {
        call.run();
    }
    state.SetBytesProcessed(state.iterations() * 100 * 1150);
}

BENCHMARK_CAPTURE(escape, htmlspecialchars, "htmlspecialchars")->Arg(0)->Arg(5);
BENCHMARK_CAPTURE(escape, htmlentities, "htmlentities")->Arg(5);
BENCHMARK_CAPTURE(escape, addslashes, "addslashes")->Arg(5);
BENCHMARK_CAPTURE(escape, rawurlencode, "rawurlencode")->Arg(5);

}

// All of them inside one PHP request.
int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    php_embed_init(0, nullptr);
    // The function alone: it is too late for the module, which PHP would free twice.
    zend_register_functions(nullptr, template_module_entry.functions, nullptr, MODULE_PERSISTENT);
    benchmark::RunSpecifiedBenchmarks();
    php_embed_shutdown();
    return 0;
}
