// Whether a text is valid in the charset that most pages have.
#ifndef TEMPLATE_ESCAPE_UTF8_H
#define TEMPLATE_ESCAPE_UTF8_H

#include <string_view>

// Every byte below 0x80.
bool isAscii(std::string_view text);

// By the rules that PHP escapes HTML by: the shortest form only, no surrogates,
// nothing above U+10FFFF.
bool isValidUtf8(std::string_view text);

#endif
