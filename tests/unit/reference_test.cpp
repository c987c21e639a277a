// The reference notation: what is accepted, and what is said of the rest.
#include "template/reference.h"

#include "fixture.h"

namespace {

std::string describe(VariableKind kind, const std::string& namespaceName,
    const std::deque<std::string>& path)
{
    static const char* const KINDS[] = {"root ", "value ", "key ", "missing "};
    return KINDS[static_cast<uint32_t>(kind)] + namespaceName + keys(path);
}

std::string parse(Page& page, const std::string& argument)
{
    return outcome([&] {
        const ParsedArgument parsed = page->parseArgument(argument);
        return describe(parsed.kind, parsed.namespaceName, parsed.path);
    });
}

// The notation once more, by the plainest way there is: the parts first, then
// the rules over them from right to left.
std::string parsePlainly(const std::string& argument)
{
    const std::string quoted = "Bad formated parameter'" + argument + "': ";
    const std::string plain = "Bad formated parameter: ";
    std::deque<std::string> path;
    std::string namespaceName;
    bool star = false, isKey = false, named = false;
    const auto kind = [&] { return isKey ? VariableKind::SECTION_KEY : VariableKind::SECTION_VALUE; };

    long end = static_cast<long>(argument.size()) - 1;
    for (;;) {
        long i = std::min(static_cast<long>(argument.size()) - 2, end);
        while (i >= 0 && !(argument[i] == ':' && argument[i + 1] == ':')) {
            --i;
        }
        if (i < 0) {
            break;
        }
        if (end - i <= 1) {
            return quoted + "too many : in F";
        }
        const std::string part = argument.substr(i + 2, end - i - 1);
        if (part == "*" || part == "[*]") {
            if (star) {
                return quoted + "too many * in F";
            }
            if (part == "[*]" && !path.empty()) {
                return plain + "[*] must be last in F";
            }
            star = true;
            isKey = part == "[*]";
        } else if (named) {
            return quoted + "too many namespaces in F";
        } else if (star) {
            namespaceName = part;
            named = true;
        } else {
            path.push_front(part);
        }
        if (i == 0) {
            return quoted + "too many : in F";
        }
        end = i - 1;
    }

    const std::string prefix = argument.substr(0, end + 1);
    if (prefix == "*" || prefix == ".*" || prefix == "[*]") {
        if (star) {
            return plain + "too many * in F";
        }
        if (prefix == "[*]" && !path.empty()) {
            return plain + "[*] must be last in F";
        }
        isKey = prefix == "[*]";
        return describe(kind(), namespaceName, path);
    }
    if (named) {
        return plain + "too many namespaces in F";
    }
    if (star) {
        return describe(kind(), prefix, path);
    }
    path.push_front(prefix);
    return describe(VariableKind::ROOT_VALUE, "", path);
}

}

TEST(Reference, ShapesAndErrors)
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
        {"a::", "Bad formated parameter'a::': too many : in F"},
        {"::a", "Bad formated parameter'::a': too many : in F"},
        {"a:::b", "Bad formated parameter'a:::b': too many : in F"},
        {"a::*::*", "Bad formated parameter'a::*::*': too many * in F"},
        {"*::*", "Bad formated parameter: too many * in F"},
        {".*::a::*", "Bad formated parameter: too many * in F"},
        {"x::y::*", "Bad formated parameter: too many namespaces in F"},
        {"x::y::z::*", "Bad formated parameter'x::y::z::*': too many namespaces in F"},
        {"row::[*]::a", "Bad formated parameter: [*] must be last in F"},
        {"[*]::a", "Bad formated parameter: [*] must be last in F"},
    };
    for (const auto& [argument, parsed] : cases) {
        EXPECT_EQ(parse(page, argument), parsed) << argument;
        EXPECT_EQ(parsePlainly(argument), parsed) << argument;
    }
}

TEST(Reference, AgreesWithThePlainestParserOnEveryShortText)
{
    Page page("F");
    forEachText("a:*[].", 6, [&](const std::string& argument) {
        ASSERT_EQ(parse(page, argument), parsePlainly(argument)) << argument;
    });
    // Longer ones, made of whole parts.
    const char* const parts[] = {"a", "*", "[*]", ".*", "::", ":"};
    forEachText(std::string_view("\0\1\2\3\4\5", 6), 6, [&](const std::string& choice) {
        std::string argument;
        for (const char part : choice) {
            argument += parts[static_cast<size_t>(part)];
        }
        ASSERT_EQ(parse(page, argument), parsePlainly(argument)) << argument;
    });
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
