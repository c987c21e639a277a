// The messages of template errors: every one ends with the name of the file
// that holds the fault.
#ifndef TEMPLATE_TEMPLATE_ERROR_H
#define TEMPLATE_TEMPLATE_ERROR_H

#include "engine/failure.h"

// Throws a failure with `prefix` + `file`.
[[noreturn]] void throwError(std::string_view prefix, std::string_view file);

// Throws a failure with `prefix` + `argument` + `suffix` + `file`. The prefix ends
// and the suffix begins with a quote, so that the offending text stands between
// single quotes.
[[noreturn]] void throwError(std::string_view prefix, std::string_view argument,
    std::string_view suffix, std::string_view file);

// Sections, includes or calls lie so deep inside of each other that the stack ends.
[[noreturn]] void throwTooDeep(std::string_view file);

#endif
