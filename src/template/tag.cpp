#include "template/tag.h"

#include <array>
#include <bit>
#include <iterator>

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

// The rows of KEYWORDS that begin with a byte, a bit for each: most tags are
// variables, and most of those are told by this alone.
constexpr auto ROWS_BY_FIRST_BYTE = [] {
    std::array<uint16_t, 256> rows{};
    for (size_t row = 0; row < std::size(KEYWORDS); ++row) {
        rows[static_cast<unsigned char>(KEYWORDS[row].text.front())] |= 1U << row;
    }
    return rows;
}();

}

std::string_view trimmed(std::string_view text)
{
    // Most tags have no blanks around them.
    if (text.empty() || (!isBlank(text.front()) && !isBlank(text.back()))) {
        return text;
    }
    size_t first = 0;
    size_t last = text.size();
    while (first < last && isBlank(text[first])) {
        ++first;
    }
    if (first == last) {
        return text;
    }
    while (isBlank(text[last - 1])) {
        --last;
    }
    return text.substr(first, last - first);
}

TagText matchTag(std::string_view tag)
{
    if (tag.empty()) {
        return {tag, Block::MULTI_VARIABLE};
    }
    unsigned rows = ROWS_BY_FIRST_BYTE[static_cast<unsigned char>(tag.front())];
    for (; rows != 0; rows &= rows - 1) {
        const Keyword& keyword = KEYWORDS[std::countr_zero(rows)];
        if (tag.starts_with(keyword.text)) {
            return {trimmed(tag.substr(keyword.text.size())), keyword.type};
        }
    }
    return {trimmed(tag), Block::MULTI_VARIABLE};
}
