// Rendering: dispatch by type, what a walk leaves behind.
#include "fixture.h"

namespace {

// A block of any type, and of no class that rendering knows.
struct ForeignBlock final : Block {
    explicit ForeignBlock(int type) : Block(static_cast<BlockType>(type)) {}
};

template <class Kind>
std::string renderBlock(int type = Block::TEXT)
{
    Page page("");
    page->blocks.push_back(make<TextBlock>(Text("text")));
    if constexpr (std::is_constructible_v<Kind, int>) {
        page->blocks.push_back(make<Kind>(type));
    } else {
        page->blocks.push_back(make<Kind>());
    }
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
        EXPECT_EQ(renderBlock<ForeignBlock>(type), type > 14 ? "text" : refused) << type;
    }
    EXPECT_EQ(renderBlock<ForeignBlock>(-1), "text");
    EXPECT_EQ(renderBlock<TextBlock>(), "text");
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

TEST(Variable, LeavesTheReferenceTakenApartLastInItsWorkingFields)
{
    Page page(
        "{dynamic r,list}{missing r::*::a::b r::[*] *::c}{/dynamic}", "['list' => ['k' => 'x']]");
    EXPECT_EQ(page.render(), "k");
    // Nothing can come behind a key.
    const auto& block = find<MultiVariableBlock>(find<DynamicBlock>(page->blocks).blocks);
    EXPECT_EQ(block.namespaceName, "r");
    EXPECT_EQ(block.path.size(), 0U);
    EXPECT_TRUE(block.isKey);
}

TEST(Variable, PrintsItsDefaultWithoutAnyReference)
{
    Page empty("");
    MultiVariableBlock block({}, "default", "");
    Text out;
    empty->_getResultVariable(block, out, nullptr);
    EXPECT_EQ(out.view(), "default");
}

TEST(Dynamic, PublishesKeysAndElementsInOrder)
{
    const std::string rows = "['list' => ['a' => 1, 5 => 2, -1 => 3, \"n\\0l\" => 4]]";
    Page page("{dynamic r,list}{[*]}={*} {/dynamic}{rdynamic list}{[*]}{/rdynamic}", rows);
    EXPECT_EQ(page.render(), "a=1 5=2 18446744073709551615=3 n=4 n184467440737095516155a");
    EXPECT_TRUE(page->dynamicStack.empty());
    const auto& section = find<DynamicBlock>(page->blocks);
    Digits digits;
    EXPECT_EQ(section.currentKey.view(digits), std::string_view("n\0l", 3));
    EXPECT_EQ(Z_LVAL_P(section.currentData), 4);
    EXPECT_EQ(page->getResult(), "a=1 5=2 18446744073709551615=3 n=4 n184467440737095516155a");
}
