// Tag recognition: the keywords, and the blanks around a tag's text.
#ifndef TEMPLATE_TEMPLATE_TAG_H
#define TEMPLATE_TEMPLATE_TAG_H

#include <string_view>

#include "template/block.h"

// Space, tab, carriage return, line feed, form feed, vertical tab.
inline bool isBlank(char byte)
{
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

// A text without blanks around it. A text of blanks only comes back whole, not empty:
// templates rely on "{ }" and its like being written back as they stand.
std::string_view trimmed(std::string_view text);

// What a tag is, and its text behind the keyword, which points into the tag.
struct TagText {
    std::string_view argument;
    Block::BlockType type;
};
TagText matchTag(std::string_view tag);

#endif
