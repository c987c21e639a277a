// The text that a PHP value prints as.
#ifndef TEMPLATE_RENDER_VALUE_TEXT_H
#define TEMPLATE_RENDER_VALUE_TEXT_H

#include <iterator>
#include <string_view>

#include "module/engine.h"

// The text of a value that is a string.
inline std::string_view stringText(const zval* value)
{
    return {Z_STRVAL_P(value), std::strlen(Z_STRVAL_P(value))};
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
