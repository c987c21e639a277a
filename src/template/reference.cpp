// The reference notation, read from right to left: path parts until a star,
// behind it at most one name. Which of two messages a fault gets depends on
// whether it is met on the way or in the leftmost part; template authors'
// tooling matches these messages, so both stay.
#include "template/reference.h"

#include <algorithm>
#include <array>

#include "template/error.h"

namespace {

constexpr std::string_view BAD_ARGUMENT = "Bad formated parameter'";

// The bytes that mean something in a reference or between references.
constexpr auto HAS_MEANING = [] {
    std::array<bool, 256> meaning{};
    for (const char byte : std::string_view(" \t\r\n\f\v':*")) {
        meaning[static_cast<unsigned char>(byte)] = true;
    }
    return meaning;
}();

// The state of the walk from right to left.
class ReferenceParser {
public:
    ReferenceParser(std::string_view argument, std::string_view file)
        : argument_(argument),
          file_(file)
    {
    }

    ReferenceText parse()
    {
        std::string_view rest = argument_;
        for (size_t separator; (separator = lastSeparator(rest)) != std::string_view::npos;) {
            // Holds for a trailing "::" and for any run of three colons.
            if (separator + 2 >= rest.size()) {
                fail("': too many : in ");
            }
            readPart(rest.substr(separator + 2), separator + 2);
            if (separator == 0) {
                fail("': too many : in ");
            }
            rest = rest.substr(0, separator);
        }
        readPrefix(rest);
        return result_;
    }

private:
    // May begin at the last byte of `rest`, when that and the next one, already
    // read as part of a separator, are both colons.
    size_t lastSeparator(std::string_view rest) const
    {
        // rfind() would call memcmp() at each byte.
        for (size_t i = std::min(rest.size(), argument_.size() - 1); i-- > 0;) {
            if (argument_[i] == ':' && argument_[i + 1] == ':') {
                return i;
            }
        }
        return std::string_view::npos;
    }

    void readPart(std::string_view part, size_t offset)
    {
        if (part == "*" || part == "[*]") {
            if (star_) {
                fail("': too many * in ");
            }
            readStar(part);
        } else if (namespaceSet_) {
            fail("': too many namespaces in ");
        } else if (star_) {
            result_.namespaceName = part;
            namespaceSet_ = true;
        } else {
            result_.path = PathText(argument_.substr(offset));
        }
    }

    void readPrefix(std::string_view prefix)
    {
        if (prefix == "*" || prefix == ".*" || prefix == "[*]") {
            if (star_) {
                throwError("Bad formated parameter: too many * in ", file_);
            }
            readStar(prefix);
        } else if (namespaceSet_) {
            throwError("Bad formated parameter: too many namespaces in ", file_);
        } else if (star_) {
            result_.namespaceName = prefix;
        } else {
            result_.path = PathText(argument_);
        }
    }

    void readStar(std::string_view star)
    {
        star_ = true;
        result_.kind = VariableKind::SECTION_VALUE;
        if (star == "[*]") {
            if (!result_.path.empty()) {
                throwError("Bad formated parameter: [*] must be last in ", file_);
            }
            result_.kind = VariableKind::SECTION_KEY;
        }
    }

    [[noreturn]] void fail(std::string_view suffix) const
    {
        throwError(BAD_ARGUMENT, argument_, suffix, file_);
    }

    std::string_view argument_;
    std::string_view file_;
    bool star_ = false;
    bool namespaceSet_ = false;
    ReferenceText result_{{}, {}, VariableKind::ROOT_VALUE};
};

}

bool isPlainKey(std::string_view text)
{
    for (const unsigned char byte : text) {
        if (HAS_MEANING[byte]) {
            return false;
        }
    }
    return true;
}

ReferenceText parseReference(std::string_view argument, std::string_view file)
{
    if (isPlainKey(argument)) {
        return {PathText(argument), {}, VariableKind::ROOT_VALUE};
    }
    return ReferenceParser(argument, file).parse();
}
