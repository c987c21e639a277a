// The text that a PHP value prints as.
#ifndef TEMPLATE_DATA_VALUE_TEXT_H
#define TEMPLATE_DATA_VALUE_TEXT_H

#include <cstddef>
#include <cstring>
#include <iterator>
#include <string_view>

#include "engine/bytes.h"
#include "engine/text.h"

// The last sixteen bytes of a string. A shorter one has part of its header before
// its text.
inline Bytes16 lastBytes(const zend_string* string)
{
    static_assert(offsetof(zend_string, val) >= sizeof(Bytes16));
    return load16(reinterpret_cast<const char*>(string) + offsetof(zend_string, val)
        + ZSTR_LEN(string) - sizeof(Bytes16));
}

// Which bytes of a string of up to sixteen bytes were found in lastBytes().
inline unsigned bitsOfShort(const zend_string* string, Bytes16 found)
{
    return bitsOf(found) >> (sizeof(Bytes16) - ZSTR_LEN(string));
}

inline bool isShortWithoutNul(const zend_string* string)
{
    return ZSTR_LEN(string) <= sizeof(Bytes16) && bitsOfShort(string, lastBytes(string) == 0) == 0;
}

// Copies a string of up to sixteen bytes and returns the end of the copy. Up to eight
// bytes behind it are written to. The length, which nobody can foretell, decides no
// branch.
inline char* copyShortString(const zend_string* string, char* to)
{
    const char* const text = reinterpret_cast<const char*>(string) + offsetof(zend_string, val);
    const size_t size = ZSTR_LEN(string);
    uint64_t first, last;
    std::memcpy(&first, text, sizeof first);
    std::memcpy(&last, text + size - sizeof last, sizeof last);
    const bool two = size >= sizeof last;
    last = two ? last : first;
    char* const place = two ? to + size - sizeof last : to;
    std::memcpy(to, &first, sizeof first);
    std::memcpy(place, &last, sizeof last);
    return to + size;
}

// The size of a string up to its first NUL.
inline size_t textSize(const zend_string* string)
{
    const size_t size = ZSTR_LEN(string);
    if (size <= sizeof(Bytes16)) {
        return EXPECTED(isShortWithoutNul(string)) ? size : std::strlen(ZSTR_VAL(string));
    }
    // Two blocks that overlap.
    if (size <= 2 * sizeof(Bytes16)
        && EXPECTED(!anyOf((load16(ZSTR_VAL(string)) == 0) | (lastBytes(string) == 0)))) {
        return size;
    }
    return std::strlen(ZSTR_VAL(string));
}

// The text of a value that is a string, up to its first NUL.
inline std::string_view stringText(const zval* value)
{
    return {Z_STRVAL_P(value), textSize(Z_STR_P(value))};
}

// Holds the decimal text of any integer.
using Digits = char[24];

// The decimal text of a number, in `digits`; two at a time. For each number
// std::to_chars() copies a table of 201 bytes to the stack first.
std::string_view decimal(zend_ulong number, Digits& digits);
std::string_view decimal(zend_long number, Digits& digits);

// The text of a value up to its first NUL. Strings are borrowed from the value,
// so it is to be used up before any user code can run.
class ValueText final {
public:
    // Follows a PHP reference and a declared property's slot; an unset slot has
    // no value. Other types go through PHP's own conversion, which can run user
    // code: throws CallAbandoned when that ends the call.
    explicit ValueText(const zval* value);
    ValueText(const ValueText&) = delete;
    ValueText& operator=(const ValueText&) = delete;

    // No value at all is not the same as an empty text.
    bool exists() const { return exists_; }
    std::string_view view() const { return text_; }

private:
    void convert(const zval* value);

    std::string_view text_;
    bool exists_ = true;
    EngineString converted_;
    Digits digits_;
};

// Appends what a value prints as. False when there turns out to be no value.
inline bool appendValue(Text& text, const zval* value)
{
    // The frequent types are spared the making of a ValueText.
    if (EXPECTED(Z_TYPE_P(value) == IS_STRING)) {
        text.append(stringText(value));
        return true;
    }
    const ValueText valueText(value);
    text.append(valueText.view());
    return valueText.exists();
}

#endif
