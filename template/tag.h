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

// Template::matchInput() without a copy: the argument points into the tag.
struct TagText {
    std::string_view argument;
    Block::BlockType type;
};
TagText matchTag(std::string_view tag);

#endif
