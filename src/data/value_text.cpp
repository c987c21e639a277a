#include "data/value_text.h"

#include <array>

namespace {

constexpr auto PAIRS = [] {
    std::array<char, 200> pairs{};
    for (size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}();

// Writes the digits before `end` and returns where they begin.
char* writeDigits(zend_ulong number, char* end)
{
    for (; number >= 100; number /= 100) {
        end -= 2;
        std::memcpy(end, &PAIRS[2 * (number % 100)], 2);
    }
    if (number >= 10) {
        end -= 2;
        std::memcpy(end, &PAIRS[2 * number], 2);
    } else {
        *--end = static_cast<char>('0' + number);
    }
    return end;
}

}

std::string_view decimal(zend_ulong number, Digits& digits)
{
    return {writeDigits(number, std::end(digits)), std::end(digits)};
}

std::string_view decimal(zend_long number, Digits& digits)
{
    const auto size = static_cast<zend_ulong>(number);
    char* begin = writeDigits(number < 0 ? -size : size, std::end(digits));
    if (number < 0) {
        *--begin = '-';
    }
    return {begin, std::end(digits)};
}

ValueText::ValueText(const zval* value)
{
    if (UNEXPECTED(Z_TYPE_P(value) == IS_INDIRECT)) {
        value = Z_INDIRECT_P(value);
    }
    ZVAL_DEREF(value);
    switch (Z_TYPE_P(value)) {
    case IS_UNDEF:
        exists_ = false;
        break;
    case IS_STRING:
        text_ = stringText(value);
        break;
    case IS_LONG:
        text_ = decimal(Z_LVAL_P(value), digits_);
        break;
    case IS_NULL:
    case IS_FALSE:
        break;
    case IS_TRUE:
        text_ = "1";
        break;
    default:
        convert(value);
    }
}

void ValueText::convert(const zval* value)
{
    converted_ = EngineCall::current().makeString([value] {
        // The user code that runs may drop the value that is being converted.
        zval held;
        ZVAL_COPY(&held, value);
        zend_string* text = zval_get_string(&held);
        zval_ptr_dtor(&held);
        return text;
    });
    text_ = converted_.text();
}
