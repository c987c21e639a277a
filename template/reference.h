// Variable references: the notation ("a::b", "row::*::name", "row::[*]") and
// what a reference means. Parsed by Template::parseArgument().
#ifndef TEMPLATE_TEMPLATE_REFERENCE_H
#define TEMPLATE_TEMPLATE_REFERENCE_H

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <utility>

#include "module/engine.h"

enum class VariableKind : uint32_t {
    ROOT_VALUE = 0,    // a path from the root of the user data
    SECTION_VALUE = 1, // a path from the current element of a dynamic section
    SECTION_KEY = 2,   // the current key of a dynamic section
    NOT_FOUND = 3,     // a root path that the user data does not hold
};

// A reference taken apart. The name is empty when the innermost section is meant.
struct ParsedArgument {
    std::deque<std::string> path;
    std::string namespaceName;
    VariableKind kind;
};

// A reference taken apart and, when it starts at the root, looked up. `value`
// points into the user data (borrowed) for ROOT_VALUE and is null otherwise.
struct VariableReference {
    const zval* value;
    std::deque<std::string> path;
    std::string namespaceName;
    VariableKind kind;
};

// Whether a text is a single plain key, as most references are: nothing in it
// separates keys, marks a star, or ends a reference inside a variable tag.
bool isPlainKey(std::string_view text);

// The keys of a path as they are written, "a::b::c", first to last. A path is
// always a whole tail of its reference, so nothing needs to be copied.
class PathText final {
public:
    PathText() = default;
    explicit PathText(std::string_view text) : text_(text), atEnd_(false) {}

    bool empty() const { return atEnd_; }

    // Takes the first key off the path, which must not be empty.
    std::string_view next()
    {
        const size_t separator = text_.find("::");
        const std::string_view key = text_.substr(0, separator);
        atEnd_ = separator == std::string_view::npos;
        text_.remove_prefix(atEnd_ ? text_.size() : separator + 2);
        return key;
    }

    // To be moved from at once: the next call fills the same deque. An empty deque
    // takes memory too, and so does one that was moved from, which thus costs as
    // much as the one that it became, but not twice as much.
    std::deque<std::string>&& keys() const
    {
        static std::deque<std::string> keys;
        keys.clear();
        appendTo(keys);
        return std::move(keys);
    }

    void appendTo(std::deque<std::string>& keys) const
    {
        for (PathText rest = *this; !rest.empty();) {
            keys.emplace_back(rest.next());
        }
    }

private:
    std::string_view text_;
    // An empty path has no key, an empty text is a path of one empty key.
    bool atEnd_ = true;
};

// A reference taken apart without a copy; the views point into its text.
struct ReferenceText {
    PathText path;
    std::string_view namespaceName;
    VariableKind kind;
};

#endif
