// Rendering: dispatch by type, what a walk leaves behind.
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

TEST(Variable, PrintsItsDefaultWithoutAnyReference)
{
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
