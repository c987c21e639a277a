// The key of the element that a repeated section is visiting.
#ifndef TEMPLATE_DATA_SECTION_KEY_H
#define TEMPLATE_DATA_SECTION_KEY_H

#include <string_view>

#include "data/value_text.h"

class SectionKey final {
public:
    // `text`, or the number if it is null. The text is borrowed, until hold().
    void assign(zend_string* text, zend_ulong number)
    {
        text_ = text;
        number_ = number;
    }
    // Keeps the text from going away.
    void hold() { held_ = EngineString(text_ != nullptr ? zend_string_copy(text_) : nullptr); }

    // An integer is read as unsigned: key -1 has always come out as
    // 18446744073709551615, and templates compare with it.
    std::string_view view(Digits& digits) const
    {
        return text_ != nullptr ? std::string_view(ZSTR_VAL(text_), ZSTR_LEN(text_))
                                : decimal(number_, digits);
    }

    // What is printed: like any other text, a key ends at its first NUL.
    std::string_view printed(Digits& digits) const
    {
        return text_ != nullptr ? std::string_view(ZSTR_VAL(text_)) : decimal(number_, digits);
    }

private:
    zend_string* text_ = nullptr;
    zend_ulong number_ = 0;
    EngineString held_;
};

#endif
