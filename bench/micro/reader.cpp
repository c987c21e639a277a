// The reader: plain text, text full of braces, tags, and files beside the bare system calls that they take.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <fcntl.h>
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

class FileOf {
public:
    explicit FileOf(const std::string& text) : name("/tmp/template-micro-" + std::to_string(getpid()))
    {
        std::ofstream(name) << text;
    }
    ~FileOf() { std::remove(name.c_str()); }

    const std::string name;
};

void readFile(benchmark::State& state)
{
    const std::string text = repeated("Plain text of a file.\n", static_cast<size_t>(state.range(0)));
    const FileOf file(text);
    for (auto _ : state) {
        benchmark::DoNotOptimize(readAll(file.name, false));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}

// The kernel's share of readFile(): its system calls and nothing else.
void systemCalls(benchmark::State& state)
{
    const FileOf file(repeated("Plain text of a file.\n", static_cast<size_t>(state.range(0))));
    char chunk[8192];
    for (auto _ : state) {
        const int descriptor = open(file.name.c_str(), O_RDONLY | O_CLOEXEC);
        while (read(descriptor, chunk, sizeof chunk) > 0) {
        }
        close(descriptor);
    }
}

BENCHMARK(readFile)->Arg(400)->Arg(200'000);
BENCHMARK(systemCalls)->Arg(400)->Arg(200'000);

}
