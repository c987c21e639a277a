// The owner of one reference to a PHP string.
#ifndef TEMPLATE_ENGINE_ENGINE_STRING_H
#define TEMPLATE_ENGINE_ENGINE_STRING_H

#include <string_view>
#include <utility>

#include "engine/headers.h"

// May be empty.
class EngineString final {
public:
    EngineString() = default;
    explicit EngineString(zend_string* owned) : string_(owned) {}
    EngineString(EngineString&& other) noexcept : string_(std::exchange(other.string_, nullptr)) {}
    EngineString& operator=(EngineString&& other) noexcept
    {
        std::swap(string_, other.string_);
        return *this;
    }
    ~EngineString()
    {
        if (string_ != nullptr) {
            zend_string_release(string_);
        }
    }

    zend_string* get() const { return string_; }
    zend_string* release() { return std::exchange(string_, nullptr); }
    // The bytes up to the first NUL: what the system prints of a PHP string.
    std::string_view text() const { return {ZSTR_VAL(string_), std::strlen(ZSTR_VAL(string_))}; }

private:
    zend_string* string_ = nullptr;
};

#endif
