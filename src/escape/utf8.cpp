#include "escape/utf8.h"

#include <cstdint>
#include <cstring>

namespace {

constexpr uint64_t HIGH_BITS = 0x8080808080808080;

// The first byte that is not ASCII, or the end.
const char* skipAscii(const char* from, const char* end)
{
    for (; end - from >= 8; from += 8) {
        uint64_t eight;
        std::memcpy(&eight, from, sizeof eight);
        if ((eight & HIGH_BITS) != 0) {
            break;
        }
    }
    while (from < end && static_cast<unsigned char>(*from) < 0x80) {
        ++from;
    }
    return from;
}

// How many bytes the character has that these begin with, which is not ASCII; 0 when
// there is none.
size_t characterAt(const unsigned char* bytes, size_t left)
{
    const auto follows = [&](size_t at, unsigned char lowest = 0x80, unsigned char highest = 0xbf) {
        return bytes[at] >= lowest && bytes[at] <= highest;
    };
    const unsigned char first = bytes[0];
    if (first >= 0xc2 && first <= 0xdf) {
        return left >= 2 && follows(1) ? 2 : 0;
    }
    if (first >= 0xe0 && first <= 0xef) {
        const bool second
            = left >= 3 && follows(1, first == 0xe0 ? 0xa0 : 0x80, first == 0xed ? 0x9f : 0xbf);
        return second && follows(2) ? 3 : 0;
    }
    if (first >= 0xf0 && first <= 0xf4) {
        const bool second
            = left >= 4 && follows(1, first == 0xf0 ? 0x90 : 0x80, first == 0xf4 ? 0x8f : 0xbf);
        return second && follows(2) && follows(3) ? 4 : 0;
    }
    return 0;
}

}

bool isAscii(std::string_view text)
{
    const char* const end = text.data() + text.size();
    return skipAscii(text.data(), end) == end;
}

bool isValidUtf8(std::string_view text)
{
    const char* const end = text.data() + text.size();
    for (const char* from = text.data(); (from = skipAscii(from, end)) != end;) {
        const size_t size = characterAt(reinterpret_cast<const unsigned char*>(from), end - from);
        if (size == 0) {
            return false;
        }
        from += size;
    }
    return true;
}
