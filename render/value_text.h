// The text that a PHP value prints as.
#ifndef TEMPLATE_RENDER_VALUE_TEXT_H
#define TEMPLATE_RENDER_VALUE_TEXT_H

#include <cstddef>
#include <cstring>
#include <iterator>
#include <string_view>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include "module/engine.h"

// Whether the first NUL of a string is the one behind its end. False also for long
// strings, which are not looked at.
inline bool isShortWithoutNul(const zend_string* string)
{
#ifdef __SSE2__
    const size_t size = ZSTR_LEN(string);
    const auto nulsAt = [](const char* from) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
        return static_cast<unsigned>(
            _mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_setzero_si128())));
    };
    // The last fifteen bytes and the NUL: of a shorter string they begin in its
    // header.
    static_assert(offsetof(zend_string, val) >= 15);
    const char* const text = reinterpret_cast<const char*>(string) + offsetof(zend_string, val);
    if (size < 32) {
        const unsigned nuls = nulsAt(text + size - 15);
        return size < 16 ? nuls >> (15 - size) == 1U << size
                         : nuls == 1U << 15 && nulsAt(text) == 0;
    }
#else
    (void) string;
#endif
    return false;
}

// The text of a value that is a string, up to its first NUL. Mostly its size is it,
// so that nothing has to wait until the text has been looked through.
inline std::string_view stringText(const zval* value)
{
    const zend_string* const string = Z_STR_P(value);
    return {ZSTR_VAL(string),
        EXPECTED(isShortWithoutNul(string)) ? ZSTR_LEN(string) : std::strlen(ZSTR_VAL(string))};
}

// Holds the decimal text of any integer.
using Digits = char[24];

// The decimal text of a number, in `digits`. For each number std::to_chars() copies
// a table of 201 bytes to the stack first.
inline std::string_view decimal(zend_ulong number, Digits& digits)
{
    char* const end = std::end(digits) - 1;
    return {zend_print_ulong_to_buf(end, number), end};
}

inline std::string_view decimal(zend_long number, Digits& digits)
{
    char* const end = std::end(digits) - 1;
    return {zend_print_long_to_buf(end, number), end};
}

// The text of a value up to its first NUL. Strings are borrowed from the value,
// so it is to be used up before any user code can run.
class ValueText final {
public:
    // No value at all, which is not the same as an empty text.
    ValueText() = default;
    // Follows a PHP reference and a declared property's slot; an unset slot has
    // no value. Other types go through PHP's own conversion, which can run user
    // code: throws CallAbandoned when that ends the call.
    ValueText(EngineCall& call, const zval* value);
    ValueText(const ValueText&) = delete;
    ValueText& operator=(const ValueText&) = delete;

    bool exists() const { return exists_; }
    std::string_view view() const { return text_; }

private:
    void convert(EngineCall& call, const zval* value);

    std::string_view text_;
    bool exists_ = false;
    EngineString converted_;
    Digits digits_;
};

#endif
