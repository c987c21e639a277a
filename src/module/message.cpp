#include "module/message.h"

#include <algorithm>

namespace {

// How far the formatter may widen a message. Wider than that is an accident of
// the text, or an attempt to fill the memory. The same goes for precisions: the
// formatter reads past the byte behind a number that overflows it.
constexpr size_t LARGEST_NUMBER = 99;
constexpr size_t WIDEST_MESSAGE = 64 * 1024;

// A conversion as the engine's formatter reads it.
struct Conversion {
    size_t length = 0; // of the text behind its '%', conversion byte included
    size_t width = 0;
    size_t precision = 0;
    bool fetchesArgument = false;
};

bool isOneOf(char byte, std::string_view set)
{
    return set.find(byte) != std::string_view::npos;
}

// Reads conversions from the text behind a '%', in the formatter's own order.
class ConversionScanner {
public:
    explicit ConversionScanner(std::string_view text) : text_(text) {}

    Conversion scan()
    {
        // Anything but a lower-case letter or a byte above ASCII may begin the
        // flags, width and precision.
        const auto first = static_cast<unsigned char>(peek());
        if (first < 'a' || (first > 'z' && first < 0x80)) {
            while (isOneOf(peek(), "-+# 0")) {
                ++at_;
            }
            conversion_.width = number();
            if (peek() == '.') {
                ++at_;
                conversion_.precision = number();
            }
        }
        skipModifier();
        if (at_ < text_.size()) {
            conversion_.fetchesArgument |= isOneOf(text_[at_], "diouxXsSZcfFeEgGkHpn");
            ++at_;
        }
        conversion_.length = at_;
        return conversion_;
    }

private:
    // The end of the text is told by a NUL, as it is to the formatter.
    char peek() const { return at_ < text_.size() ? text_[at_] : '\0'; }

    size_t number()
    {
        if (peek() == '*') {
            conversion_.fetchesArgument = true;
            ++at_;
            return 0;
        }
        size_t value = 0;
        for (; peek() >= '0' && peek() <= '9'; ++at_) {
            value = std::min(value * 10 + static_cast<size_t>(peek() - '0'), WIDEST_MESSAGE);
        }
        return value;
    }

    void skipModifier()
    {
        const char modifier = peek();
        if (isOneOf(modifier, "Llzjth") && modifier != '\0') {
            ++at_;
            if ((modifier == 'l' || modifier == 'h') && peek() == modifier) {
                ++at_;
            }
        }
    }

    std::string_view text_;
    size_t at_ = 0;
    Conversion conversion_;
};

}

EngineString disarmFormat(std::string_view message)
{
    Text result;
    result.reserve(message.size() + message.size() / 8);
    size_t padding = 0;
    size_t position = 0;
    for (size_t percent; (percent = message.find('%', position)) != std::string_view::npos;) {
        EngineCall::current().checkTime();
        result.append(message.substr(position, percent - position));
        const Conversion conversion = ConversionScanner(message.substr(percent + 1)).scan();
        const bool tooLarge = std::max(conversion.width, conversion.precision) > LARGEST_NUMBER
            || padding + conversion.width > WIDEST_MESSAGE;
        if (conversion.fetchesArgument || tooLarge) {
            // What stood behind the '%' is plain text now and may hold another.
            result.append("%%");
            position = percent + 1;
        } else {
            padding += conversion.width;
            position = percent + 1 + conversion.length;
            result.append(message.substr(percent, position - percent));
        }
    }
    result.append(message.substr(position));
    return result.release();
}
