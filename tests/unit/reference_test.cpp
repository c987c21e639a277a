// The reference notation: what becomes of what is accepted.
#include "template/reference.h"

#include "fixture.h"

namespace {

std::string describe(VariableKind kind, const String& namespaceName, const Deque<String>& path)
{
    static const char* const KINDS[] = {"root ", "value ", "key ", "missing "};
    return KINDS[static_cast<uint32_t>(kind)] + std::string(namespaceName) + keys(path);
}

std::string parse(Page& page, const std::string& argument)
{
    return outcome([&] {
        const ParsedArgument parsed = page->parseArgument(argument);
        return describe(parsed.kind, parsed.namespaceName, parsed.path);
    });
}

}

TEST(Reference, ComesApart)
{
    Page page("F");
    const struct {
        std::string argument, parsed;
    } cases[] = {
        {"", "root /"},
        {"a", "root /a"},
        {"a::b::c", "root /a/b/c"},
        {"a:b", "root /a:b"},
        {" a : :'b*", "root / a : :'b*"},
        {"a::.*", "root /a/.*"},
        {"*", "value "},
        {".*", "value "},
        {"[*]", "key "},
        {"*::a::b", "value /a/b"},
        {".*::a", "value /a"},
        {"row::*", "value row"},
        {"row::*::a::b", "value row/a/b"},
        {"row::[*]", "key row"},
        {"a:::b", "Bad formated parameter'a:::b': too many : in F"},
        {"*::*", "Bad formated parameter: too many * in F"},
    };
    for (const auto& [argument, parsed] : cases) {
        EXPECT_EQ(parse(page, argument), parsed) << argument;
    }
}

TEST(Reference, IsLookedUpAtTheRootOnly)
{
    Page page("F", "['a' => ['b' => null], 5 => 'x']");
    const auto analyze = [&](const char* argument) {
        const VariableReference found = page->analyzeVariable(argument);
        EXPECT_EQ(found.value != nullptr, found.kind == VariableKind::ROOT_VALUE) << argument;
        return describe(found.kind, found.namespaceName, found.path);
    };
    EXPECT_EQ(analyze("a::b"), "root /a/b");
    EXPECT_EQ(analyze("a::c"), "missing /a/c");
    EXPECT_EQ(analyze("5"), "missing /5");
    EXPECT_EQ(analyze("a::*::b"), "value a/b");
    EXPECT_EQ(analyze("a::[*]"), "key a");
}
