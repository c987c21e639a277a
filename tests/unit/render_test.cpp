// Rendering: dispatch by type, the escaping tables, what a walk leaves behind.
#include <random>

#include "fixture.h"

namespace {

// A block of any type, and of no class that rendering knows.
struct ForeignBlock final : Block {
    explicit ForeignBlock(int type) : Block(static_cast<BlockType>(type)) {}
};

std::string renderBlock(std::unique_ptr<Block> block)
{
    Page page("");
    page->blocks.push_back(std::make_unique<TextBlock>());
    static_cast<TextBlock&>(*page->blocks[0]).text = "text";
    page->blocks.push_back(std::move(block));
    return outcome([&] { return page->getResult(); });
}

template <class Wanted>
Wanted& find(Blocks& blocks)
{
    for (const auto& block : blocks) {
        if (auto* found = dynamic_cast<Wanted*>(block.get())) {
            return *found;
        }
    }
    throw std::logic_error("There is no such block.");
}

}

TEST(Dispatch, RefusesBlocksOfAForeignTypeOrClassAndSkipsTheUnheardOf)
{
    const std::string refused = std::bad_cast().what();
    for (int type = 0; type <= 20; ++type) {
        EXPECT_EQ(renderBlock(std::make_unique<ForeignBlock>(type)), type > 14 ? "text" : refused) << type;
    }
    EXPECT_EQ(renderBlock(std::make_unique<ForeignBlock>(-1)), "text");
    EXPECT_EQ(renderBlock(std::make_unique<TextBlock>()), "text");
}

TEST(Dispatch, AppendsAndLeavesAnEmptyListAlone)
{
    Page page("a{{b");
    std::string out = "before ";
    page->_getResult(page->blocks, out, nullptr);
    EXPECT_EQ(out, "before ");
    page.analyze()->_getResult(page->blocks, out, nullptr);
    EXPECT_EQ(out, "before a{b");
}

TEST(Escaping, IsTheEnginesOwnForEveryByteAndText)
{
    std::mt19937 random(1);
    std::string list = "[";
    for (int i = 1; i < 400; ++i) {
        // Every byte alone, then texts in which special bytes are many.
        std::string text(i < 256 ? 1 : random() % 40, static_cast<char>(i));
        for (size_t at = 0; i >= 256 && at < text.size(); ++at) {
            text[at] = random() % 2 ? "&<>'\"\\%/ "[random() % 9] : static_cast<char>(1 + random() % 255);
        }
        list += "rawurldecode('";
        for (const unsigned char byte : text) {
            char code[4];
            snprintf(code, sizeof code, "%%%02x", byte);
            list += code;
        }
        list += "'),";
    }
    list += "]";
    const struct {
        const char *tag, *call;
    } cases[] = {
        {"addslashes", "addslashes($text)"},
        {"htmlentities", "htmlentities($text, ENT_COMPAT, 'ISO-8859-1')"},
        {"htmlspecialchars", "htmlspecialchars($text, ENT_COMPAT, 'ISO-8859-1')"},
        {"rawurlencode", "rawurlencode($text)"},
    };
    for (const auto& [tag, call] : cases) {
        Page page("{dynamic list}[{" + std::string(tag) + " *}]{/dynamic}", "['list' => " + list + "]");
        Value expected("implode(array_map(fn($text) => '['." + std::string(call) + ".']', " + list + "))");
        EXPECT_EQ(page.render(), expected.text()) << tag;
    }
}

TEST(Variable, LeavesTheReferenceTriedLastInItsWorkingFields)
{
    Page page("{dynamic r,list}{missing r::*::a::b r::[*] *::c}{/dynamic}", "['list' => ['k' => 'x']]");
    EXPECT_EQ(page.render(), "k");
    const auto& block = find<MultiVariableBlock>(find<DynamicBlock>(page->blocks).blocks);
    EXPECT_EQ(block.namespaceName, "r");
    EXPECT_EQ(block.path.size(), 0U);
    EXPECT_TRUE(block.isKey);

    Page other("{dynamic r,list}{r::[*] *}{/dynamic}", "['list' => ['x']]");
    other.analyze();
    auto& variable = find<MultiVariableBlock>(find<DynamicBlock>(other->blocks).blocks);
    variable.variables = {"r::*::a::b"};
    EXPECT_EQ(other->getResult(), "");
    EXPECT_EQ(variable.namespaceName + keys(variable.path), "r/a/b");
    EXPECT_FALSE(variable.isKey);
}

TEST(Variable, HearsOfAMalformedReferenceOnlyWhenItsTurnComes)
{
    const std::string source = "{dynamic r,list}{r::*::a ::}{/dynamic}";
    EXPECT_EQ(Page(source, "['list' => [['a' => ''], ['a' => 1]]]").render(), "1");
    EXPECT_EQ(outcome([&] { return Page(source, "['list' => [['a' => 1], ['b' => 1]]]").render(); }),
        "Bad formated parameter'::': too many : in " + source);
}

TEST(Variable, TakesTheFirstValueThenTheDefault)
{
    const char* data = "['list' => [['a' => null], ['b' => 'b'], []], 's' => 's']";
    const struct {
        const char *tag, *result;
    } cases[] = {
        {"{r::*::a r::*::b 'd'}", "|b|d|"},
        {"{r::*::a r::*::b}", "|b||"},
        {"{r::*::a s r::*::b 'd'}", "|s|s|"},
        {"{q::*::a q::[*] 'd'}", "d|d|d|"},
        {"{missing::a [*]}", "0|1|2|"},
    };
    for (const auto& [tag, result] : cases) {
        Page page("{dynamic r,list}" + std::string(tag) + "|{/dynamic}", data);
        EXPECT_EQ(page.render(), result) << tag;
    }
    Page empty("");
    MultiVariableBlock block({}, "default", "");
    std::string out;
    empty->_getResultVariable(block, out, nullptr);
    EXPECT_EQ(out, "default");
}

TEST(Dynamic, PublishesKeysAndElementsInOrder)
{
    const std::string rows = "['list' => ['a' => 1, 5 => 2, -1 => 3, \"n\\0l\" => 4]]";
    Page page("{dynamic r,list}{[*]}={*} {/dynamic}{rdynamic list}{[*]}{/rdynamic}", rows);
    EXPECT_EQ(page.render(), "a=1 5=2 18446744073709551615=3 n=4 n184467440737095516155a");
    EXPECT_TRUE(page->dynamicStack.empty());
    const auto& section = find<DynamicBlock>(page->blocks);
    EXPECT_EQ(section.currentKey, std::string("n\0l", 3));
    EXPECT_EQ(Z_LVAL_P(section.currentData), 4);
    EXPECT_EQ(page->getResult(), "a=1 5=2 18446744073709551615=3 n=4 n184467440737095516155a");
}

TEST(Dynamic, IteratesNumWhateverItIs)
{
    runPhp("$unit = [1];");
    Page page("{dynamic r,rows}{dynamic r::*}{*}{/dynamic}|{/dynamic}", R"(['rows' => [
        ['num' => ['x', 'y']], ['num' => (object) ['p' => 'q']], ['num' => 5], ['num' => &$unit], ['z'], 'text']])");
    EXPECT_EQ(page.render(), "xy|q|||z||");
}

TEST(Sections, ResolveNothingWhereNoneIsOpen)
{
    for (const char* source : {"{*}", "{[*]}", "{addslashes *}", "{optional *}x{/optional}",
             "{!optional *}x{/optional}", "{!optional [*] 0}x{/optional}", "{dynamic r::*}x{/dynamic}",
             "{dynamic r,list}{!optional q::*}x{/optional}{/dynamic}"}) {
        EXPECT_EQ(Page(source, "['list' => [1]]").render(), "") << source;
    }
}
