// What an escaping function of PHP's makes of each byte, for text that is
// escaped byte by byte: its exact output in one pass.
#ifndef TEMPLATE_RENDER_BYTE_ESCAPER_H
#define TEMPLATE_RENDER_BYTE_ESCAPER_H

#include <array>
#include <string>
#include <string_view>

#include "module/engine.h"

class ByteEscaper final {
public:
    // Asks `escape` for its output on each byte of its own; it takes a text and
    // returns a new engine string. Throws CallAbandoned on a fatal error.
    template <class Escape>
    ByteEscaper(EngineCall& call, Escape escape)
    {
        for (size_t byte = 1; byte < replacements_.size(); ++byte) {
            const char text = static_cast<char>(byte);
            zend_string* result = nullptr;
            call.run([&] { result = escape(std::string_view(&text, 1)); });
            const EngineString escaped(result);
            if (escaped.text() != std::string_view(&text, 1)) {
                replacements_[byte] = escaped.text();
            }
        }
    }

    // Appends `text`, which must hold no NUL, escaped.
    void append(EngineCall& call, std::string& out, std::string_view text) const
    {
        size_t clean = 0;
        for (size_t i = 0; i < text.size(); ++i) {
            const std::string& replacement = replacements_[static_cast<unsigned char>(text[i])];
            if (UNEXPECTED(!replacement.empty())) {
                call.append(out, text.substr(clean, i - clean));
                call.append(out, replacement);
                clean = i + 1;
            }
        }
        call.append(out, text.substr(clean));
    }

private:
    // Empty for a byte that stays as it is.
    std::array<std::string, 256> replacements_;
};

#endif
