// Variable references: the notation ("a::b", "row::*::name", "row::[*]") and
// what a reference means.
#ifndef TEMPLATE_TEMPLATE_REFERENCE_H
#define TEMPLATE_TEMPLATE_REFERENCE_H

#include <cstdint>
#include <string_view>

#include "data/path.h"

enum class VariableKind : uint32_t {
    ROOT_VALUE = 0,    // a path from the root of the user data
    SECTION_VALUE = 1, // a path from the current element of a dynamic section
    SECTION_KEY = 2,   // the current key of a dynamic section
    NOT_FOUND = 3,     // a root path that the user data does not hold
};

// A reference taken apart, with a copy. The name is empty when the innermost section is meant.
struct ParsedArgument {
    Deque<String> path;
    String namespaceName;
    VariableKind kind;
};

// A reference taken apart and, when it starts at the root, looked up. `value`
// points into the user data (borrowed) for ROOT_VALUE and is null otherwise.
struct VariableReference {
    const zval* value;
    Deque<String> path;
    String namespaceName;
    VariableKind kind;
};

// Whether a text is a single plain key, as most references are: nothing in it
// separates keys, marks a star, or ends a reference inside a variable tag.
bool isPlainKey(std::string_view text);

// A reference taken apart without a copy; the views point into its text.
struct ReferenceText {
    PathText path;
    std::string_view namespaceName;
    VariableKind kind;
};

// Takes a reference apart, or throws what is wrong with it, in `file`.
ReferenceText parseReference(std::string_view argument, std::string_view file);

#endif
