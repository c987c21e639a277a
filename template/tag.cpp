#include "template/tag.h"

#include <algorithm>
#include <array>

#include "template/template.h"

namespace {

struct Keyword {
    std::string_view text;
    Block::BlockType type;
};

// Searched in this order; a tag that begins with a keyword is of its type, also
// when no blank follows ("optionalname" is an optional section on "name").
constexpr Keyword KEYWORDS[] = {
    {"include", Block::INCLUDE},
    {"optional", Block::OPTIONAL},
    {"!optional", Block::NOT_OPTIONAL},
    {"/optional", Block::OPTIONAL_END},
    {"dynamic", Block::DYNAMIC},
    {"rdynamic", Block::RDYNAMIC},
    {"/dynamic", Block::DYNAMIC_END},
    {"/rdynamic", Block::RDYNAMIC_END},
    {"addslashes", Block::ADDSLASHES},
    {"htmlentities", Block::HTMLENTITIES},
    {"htmlspecialchars", Block::HTMLSPECIALCHARS},
    {"rawurlencode", Block::RAWURLENCODE},
};

// Whether any keyword begins with a byte: most tags are variables, and most of
// those are told by this alone.
constexpr auto BEGINS_KEYWORD = [] {
    std::array<bool, 256> begins{};
    for (const Keyword& keyword : KEYWORDS) {
        begins[static_cast<unsigned char>(keyword.text.front())] = true;
    }
    return begins;
}();

// A text of blanks only comes back whole, not empty: templates rely on "{ }"
// and its like being written back as they stand.
std::string_view trimmed(std::string_view text)
{
    const auto first = std::find_if_not(text.begin(), text.end(), isBlank);
    const auto last = std::find_if_not(text.rbegin(), text.rend(), isBlank).base();
    return first == text.end() ? text : std::string_view(first, last);
}

}

TagText matchTag(std::string_view tag)
{
    if (!tag.empty() && BEGINS_KEYWORD[static_cast<unsigned char>(tag.front())]) {
        for (const Keyword& keyword : KEYWORDS) {
            if (tag.front() == keyword.text.front() && tag.starts_with(keyword.text)) {
                return {trimmed(tag.substr(keyword.text.size())), keyword.type};
            }
        }
    }
    return {trimmed(tag), Block::MULTI_VARIABLE};
}

TagMatch Template::matchInput(std::string_view tag)
{
    const auto [argument, type] = matchTag(tag);
    return {std::string(argument), type};
}

std::string Template::trim(std::string_view text, size_t offset)
{
    return text.empty() ? std::string() : std::string(trimmed(text.substr(offset)));
}
