// The reader: what it makes of braces, wherever the input is cut into chunks.
#include "input/input.h"

#include <cstdio>
#include <fstream>

#include "fixture.h"

namespace {

constexpr size_t CHUNK = 8192;
constexpr size_t LARGE_CHUNK = 256 * 1024;

// Everything that is read, as the analysis reads it: a tag stands in <>, one
// that the input's end cuts off in <$.
std::string readAll(Input& input)
{
    std::string all;
    while (!input.exhausted()) {
        std::string piece;
        if (input.fillBufferTillMark(piece, '{')) {
            piece += '<';
            piece += input.fillBufferTillMark(piece, '}') ? '>' : '$';
        }
        all += piece;
    }
    return all;
}

std::string readString(const std::string& text)
{
    const Call call;
    Input input(String(text), true);
    return readAll(input);
}

class FileInput : public testing::Test {
protected:
    FileInput() : path_(testing::TempDir() + "unit-input-" + std::to_string(getpid())) {}
    ~FileInput() override { std::remove(path_.c_str()); }

    Input& open(const std::string& content)
    {
        std::ofstream(path_, std::ios::binary) << content;
        return input_.emplace(String(path_), false);
    }

    Call call_;
    std::string path_;
    std::optional<Input> input_;
};

struct Case {
    std::string text, read;
};

const std::vector<Case> CASES = {
    {"", ""},
    {"text", "text"},
    {"a{{b}}c", "a{b}c"},
    {"a{b}c{}", "a<b>c<>"},
    {"a { b", "a { b"},
    {"{\t{\n{\r{ }", "{\t{\n{\r{ }"},
    {"{\f}{\v}{\x01}{\xff}", "<\f><\v><\x01><\xff>"},
    {std::string("{\0}\0", 4), std::string("<\0>\0", 4)},
    {"{", "{"},
    {"a}", "a}"},
    {"}}}x}}}", "}}x}}"},
    {"{{{a}}}", "{<a>}"},
    {"{{{{{ }}}}", "{{{ }}"},
    {"{a}}}{{", "<a>}{"},
    {"{{ {", "{ {"},
    {"{ {a}", "{ <a>"},
    {"Hi {name", "Hi <name$"},
    {"{x{y}z", "<x{{{{$"},
    {"{x{", "<x{$"},
    {"{a}{b{{c}}", "<a><b{{{{{$"},
};

}

TEST(StringInput, ResolvesBraces)
{
    for (const auto& [text, read] : CASES) {
        EXPECT_EQ(readString(text), read) << text;
    }
}

TEST(StringInput, AppendsAndEndsWhenItsTextIsUsedUp)
{
    const Call call;
    Input input("ab{c}", true);
    std::string out = "kept ";
    EXPECT_TRUE(input.fillBufferTillMark(out, '{') && input.fillBufferTillMark(out, '}'));
    EXPECT_EQ(out, "kept abc");
    EXPECT_FALSE(input.ended || input.exhausted());
    EXPECT_FALSE(input.fillBufferTillMark(out, '{') || input.fetchStream());
    EXPECT_TRUE(input.ended && input.exhausted());
    EXPECT_EQ(out, "kept abc");
}

TEST_F(FileInput, ReadsWhatAStringReadsAtEveryChunkBoundary)
{
    // The first chunk, and the larger one that follows it.
    for (const size_t boundary : {CHUNK, CHUNK + LARGE_CHUNK}) {
        for (const auto& [text, read] : CASES) {
            for (size_t before = 0; before <= text.size() + 1; ++before) {
                const size_t filler = boundary - before;
                const std::string all = readAll(open(std::string(filler, '.') + text));
                EXPECT_EQ(all.find_first_not_of('.'), read.empty() ? all.npos : filler) << text;
                EXPECT_EQ(all.substr(filler), read) << text << " cut at " << before;
            }
        }
    }
}

// The reader passes long stretches without a brace many bytes at a time, by a
// coarser test than for a brace.
TEST(StringInput, FindsBracesAmongTheirNeighbours)
{
    const std::string neighbours("z|~\x7f\x80\xfby");
    for (size_t before = 0; before < 200; ++before) {
        std::string text;
        while (text.size() < before) {
            text += neighbours[text.size() % neighbours.size()];
        }
        EXPECT_EQ(readString(text + "{a}" + text + "}}"), text + "<a>" + text + "}");
    }
}

TEST_F(FileInput, FetchesOneChunkThenLargeOnesAndThenNothing)
{
    Input& input = open(std::string(CHUNK + 2 * LARGE_CHUNK + 7, 'x'));
    EXPECT_TRUE(input.buffer.empty());
    for (const size_t size : {CHUNK, LARGE_CHUNK, LARGE_CHUNK, size_t{7}}) {
        EXPECT_FALSE(input.exhausted());
        EXPECT_TRUE(input.fetchStream());
        EXPECT_EQ(input.buffer.size(), size);
    }
    while (input.fetchStream()) {
        EXPECT_TRUE(input.buffer.empty());
    }
    EXPECT_TRUE(input.exhausted());
    EXPECT_FALSE(input.ended);
}

TEST_F(FileInput, RefusesWhatCannotBeOpened)
{
    open("there");
    for (const std::string& name :
        {path_ + ".missing", path_ + std::string("\0x", 2), std::string("\0", 1)}) {
        EXPECT_EQ(outcome([&] { return readAll(input_.emplace(String(name), false)); }),
            std::string(("Could not open file " + name).c_str()));
    }
}
