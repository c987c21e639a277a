// Analysis: the tree that a template becomes, as a dump.
#include <fstream>

#include "fixture.h"

namespace {

constexpr const char* DATA = R"([
    's' => 'str', 'i' => 5, 'n' => null, 'z' => '', 'o' => "O'Neil", 'nul' => "a\0b", 'd' => 1.5,
    'list' => ['x', 'y'], 'empty' => [], 'map' => ['k' => 'v'],
    'num' => ['num' => [1, 2, 3], 'x' => 1], 'badnum' => ['num' => 7, 'x' => 1],
    'hidden' => ['visible' => false, 1], 'shown' => ['visible' => 1],
])";

std::string analyzed(const std::string& source)
{
    return outcome([&] {
        Page page(source, DATA);
        std::string text = dump(page.analyze()->blocks);
        EXPECT_TRUE(page->dynamicStack.empty());
        return text;
    });
}

struct Case {
    std::string source, tree;
};

void check(const std::vector<Case>& cases)
{
    for (const auto& [source, tree] : cases) {
        EXPECT_EQ(analyzed(source), tree) << source;
    }
}

}

TEST(Tree, TextAndFolding)
{
    check({
        {"", ""},
        {"plain }} {{text}}", "'plain } {text}'"},
        {"a{s}b{i}c{n}d{z}e", "'astrb5cde'"},
        {"{list} {d} {nul}", "'Array 1.5 a'"},
        {"{missing}{ x}{}{\f \v}{missing  other }", "'{missing}{ x}{}{\f \v}{missing  other}'"},
        {"{missing s}{missing 'none'}{'it's'}{''}", "'strnoneit's'"},
        {"{a 'x' 'y'}{a\t'x'}", "'x' 'yx'"},
        {"{z}{n}{''}", ""},
        {"Hi {s", "'Hi str'"},
        {"{htmlspecialchars i}{addslashes o}{rawurlencode 0}{htmlentities map::k}{addslashes list}",
            "'O\\'Neilv'"},
    });
}

TEST(Tree, SectionVariables)
{
    check({
        {"a{*}b", "'a' var[*] 'b'"},
        {"{missing\tr::*::x s 'it's'}", "var[missing|r::*::x|s]='it's'"},
        {"{s r::*::x}", "'str'"},
        {"{r::[*] ''}", "var[r::[*]]=''"},
        {"{* ::}", "var[*|::]"},
        {"{htmlentities r::*::a::b}{htmlspecialchars *}", "htmlentities(r/a/b) htmlspecialchars()"},
        {"x{addslashes r::[*]}{rawurlencode [*]}", "'x' addslashes(r[*]) rawurlencode([*])"},
        {"{addslashes}", ""},
    });
}

TEST(Tree, MultiVariableBlockFields)
{
    Page page("{missing\t r::*::x  'd'}{ r}{* }");
    const auto& block = dynamic_cast<MultiVariableBlock&>(*page.analyze()->blocks.at(0));
    EXPECT_EQ(block.tagContent, "missing\t r::*::x  'd'");
    EXPECT_EQ(block.namespaceName, "");
    EXPECT_EQ(keys(block.path), "");
    EXPECT_FALSE(block.isKey);
    const auto& other = dynamic_cast<MultiVariableBlock&>(*page->blocks.at(2));
    EXPECT_EQ(other.tagContent, "*");
    EXPECT_FALSE(other.hasDefaultValue);
}

TEST(Tree, OptionalSections)
{
    check({
        {"a{optional s}b{/optional}c", "'a' optional(analyzed/s)['b'] 'c'"},
        {"a{optional z}b{s}{/optional}c", "'a' 'c'"},
        {"{optional missing}b{/optional}{!optional missing}{*}{/optional}",
            "!optional(analyzed/missing)[var[*]]"},
        {"{!optional s}b{/optional}{!optional empty}{/optional}", "!optional(analyzed/empty)[]"},
        {"{optionals str}b{/optionalwhatever}", "optional(analyzed/s =str)['b']"},
        {"{optional map::k  'v'}{/optional}{optional map::k  v}{/optional}",
            "optional(analyzed/map/k = 'v')[]"},
        {"{optional map::k x'v'y}{/optional}", "optional(analyzed/map/k =x'v'y)[]"},
        {"{optional i 5abc}1{/optional}{optional d 1.5}2{/optional}{optional i ''}3{/optional}",
            "optional(analyzed/i =5abc)['1']"},
        {"{optional hidden}{/optional}{optional shown}{/optional}{optional list}{/optional}",
            "optional(analyzed/shown)[] optional(analyzed/list)[]"},
        {"{optional r::*::a b c}{/optional}{!optional *}{/optional}",
            "optional(value r/a =b c)[] !optional(value )[]"},
        {"{!optional [*] '0'}x{optional r::[*]}{/optional}{/optional}",
            "!optional(key  ='0')['x' optional(key r)[]]"},
        {"{optional s\tx}1{/optional}", ""},
        {"{optional}1{/optional}", ""},
    });
}

TEST(Tree, DynamicSections)
{
    check({
        {"a{dynamic r,list}b{r::*}{/dynamic}c", "'a' dynamic(r: 2 elements)['b' var[r::*]] 'c'"},
        {"{rdynamic list}{/rdynamic}{dynamic empty}{/dynamic}",
            "rdynamic(: 2 elements)[] dynamic(: 0 elements)[]"},
        {"{dynamic r,num}{/dynamic}{rdynamic r,badnum}x{/rdynamic}",
            "dynamic(r: 3 elements)[] rdynamic(off)['x']"},
        {"{dynamic r,missing}{dynamic r,s}{/dynamic}{/dynamic}", "dynamic(off)[dynamic(off)[]]"},
        {"{dynamic r,list}{dynamic c,r::*::k}{/dynamic}{rdynamic ,*}{/rdynamic}{/dynamic}",
            "dynamic(r: 2 elements)[dynamic(c: r/k)[] rdynamic(: )[]]"},
        {"{dynamic r ,list}{dynamic r,list}{/dynamic}{/dynamic}",
            "dynamic(r : 2 elements)[dynamic(r: 2 elements)[]]"},
        {"{dynamic r,list,x}{/dynamic}{dynamic , list}{/dynamic}", "dynamic(off)[] dynamic(off)[]"},
    });
}

TEST(Tree, DynamicDataIsTheArrayItself)
{
    runPhp("$unit = ['x'];");
    Page page("{dynamic a}{/dynamic}{dynamic r}{/dynamic}", "['a' => [1], 'r' => &$unit]");
    const auto data = [&](size_t i) { return dynamic_cast<DynamicBlock&>(*page->blocks[i]).data; };
    page.analyze();
    EXPECT_EQ(data(0), page->phpInterface.hashFind("a", nullptr));
    EXPECT_EQ(data(1), Z_REFVAL_P(page->phpInterface.hashFind("r", nullptr)));
}

TEST(Tree, IncludedBlocksTakeThePlaceOfTheTag)
{
    const std::string path = testing::TempDir() + "unit-include-" + std::to_string(getpid());
    std::ofstream(path) << "in{*}{s}side";
    check({
        {"a{include " + path + "}b", "'a' 'in' var[*] 'strside' 'b'"},
        {"{dynamic r,list}{include " + path + "}{/dynamic}",
            "dynamic(r: 2 elements)['in' var[*] 'strside']"},
        {"a{include nosuch}b", "'a' 'b'"},
    });
    std::ofstream(path) << "{/dynamic}";
    Page page("{dynamic r,list}{include " + path + "}{/dynamic}", DATA);
    EXPECT_EQ(outcome([&] { return dump(page.analyze()->blocks); }),
        "Unexpected closing dynamic tag in " + path);
    // The chain that was lent is back.
    EXPECT_EQ(page->fileNames.size(), 1U);
    std::remove(path.c_str());
}

TEST(Tag, KeywordsArePrefixesInTheirOrder)
{
    const Call call;
    const struct {
        std::string tag, argument;
        Block::BlockType type;
    } cases[] = {
        {"", "", Block::MULTI_VARIABLE},
        {" \t a b\v", "a b", Block::MULTI_VARIABLE},
        {"include_file ", "_file", Block::INCLUDE},
        {"optionals", "s", Block::OPTIONAL},
        {"!optional\n  ", "\n  ", Block::NOT_OPTIONAL},
        {"/optional x", "x", Block::OPTIONAL_END},
        {"dynamicr,x", "r,x", Block::DYNAMIC},
        {"/rdynamic", "", Block::RDYNAMIC_END},
        {"htmlentities\fx\r", "x", Block::HTMLENTITIES},
        {"dynami", "dynami", Block::MULTI_VARIABLE},
    };
    for (const auto& [tag, argument, type] : cases) {
        const TagMatch match = Template::matchInput(tag);
        EXPECT_EQ(std::string_view(match.argument), argument) << tag;
        EXPECT_EQ(match.type, type) << tag;
    }
    EXPECT_EQ(Template::trim("abc  d ", 3), "d");
    EXPECT_EQ(Template::trim("abc \t", 3), " \t");
    EXPECT_EQ(Template::trim(std::string_view("x\0 ", 3), 1), String(1, '\0'));
    EXPECT_EQ(Template::trim("", 0), "");
}
