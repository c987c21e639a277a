#include "input/braces.h"

#include <bit>

#include "engine/bytes.h"

const char* findBrace(const char* from, const char* end)
{
    const auto bracesAt = [](const char* at) {
        const Bytes16 block = load16(at);
        return bitsOf((block == allOf('{')) | (block == allOf('}')));
    };
    // Many tags are shorter than this.
    if (end - from >= 16) {
        if (const unsigned found = bracesAt(from); found != 0) {
            return from + std::countr_zero(found);
        }
        from += 16;
    }
    // In ASCII little but braces comes after the letters: long stretches are passed
    // four blocks at a time, with a single comparison for each.
    const auto mayHoldBrace = [](const char* block) { return load16(block) > allOf('{' - 1); };
    while (end - from >= 64
        && !anyOf(mayHoldBrace(from) | mayHoldBrace(from + 16) | mayHoldBrace(from + 32)
            | mayHoldBrace(from + 48))) {
        from += 64;
    }
    for (; end - from >= 16; from += 16) {
        if (const unsigned found = bracesAt(from); found != 0) {
            return from + std::countr_zero(found);
        }
    }
    while (from < end && *from != '{' && *from != '}') {
        ++from;
    }
    return from;
}

const char* findBraceInText(const char* from, const char* end)
{
    const char* brace = findBrace(from, end);
    while (end - brace >= 2 && (*brace == '{' ? isLiteralBehindBrace(brace[1]) : brace[1] != '}')) {
        brace = findBrace(brace + 1, end);
    }
    return brace;
}
