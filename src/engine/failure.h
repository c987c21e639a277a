// The failures of a call that have a message for the template's author.
#ifndef TEMPLATE_ENGINE_FAILURE_H
#define TEMPLATE_ENGINE_FAILURE_H

#include <initializer_list>
#include <stdexcept>
#include <string_view>

#include "engine/text.h"

// The message can be as long as the template, so it lies in PHP's memory.
class Failure : public std::runtime_error {
public:
    explicit Failure(std::initializer_list<std::string_view> pieces);
    Failure(const Failure& other) noexcept
        : std::runtime_error(other),
          message_(zend_string_copy(other.message_.get()))
    {
    }

    // Up to its first NUL, which is where the warning ends.
    const char* what() const noexcept override { return ZSTR_VAL(message_.get()); }

private:
    EngineString message_;
};

// The only failure that an including file goes on behind.
class FileNotOpened final : public Failure {
public:
    explicit FileNotOpened(std::string_view name) : Failure({"Could not open file ", name}) {}
};

// Something would need more of the stack than is left. Whoever knows the current file
// makes a message of it.
struct NestingTooDeep final {};

#endif
