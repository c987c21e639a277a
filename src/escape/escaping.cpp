#include "escape/escaping.h"

#include <optional>
#include <strings.h>

#include "escape/utf8.h"

namespace {

zend_string* escapeHtml(std::string_view text, bool allEntities, const char* charset)
{
    return php_escape_html_entities(reinterpret_cast<const unsigned char*>(text.data()),
        text.size(), allEntities, ENT_COMPAT, charset);
}

zend_string* addslashes(std::string_view text)
{
    zend_string* original = zend_string_init(text.data(), text.size(), false);
    zend_string* escaped = php_addslashes(original);
    zend_string_release(original);
    return escaped;
}

// PHP's own function. A null charset means that of the request.
zend_string* escape(std::string_view text, Escaping escaping, const char* charset)
{
    switch (escaping) {
    case Escaping::ADDSLASHES:
        return addslashes(text);
    case Escaping::HTMLENTITIES:
        return escapeHtml(text, true, charset);
    case Escaping::HTMLSPECIALCHARS:
        return escapeHtml(text, false, charset);
    case Escaping::RAWURLENCODE:
        break;
    }
    return php_raw_url_encode(text.data(), text.size());
}

// A charset that PHP does not know makes it warn, so only the usual one is taken for
// known here.
bool charsetIsUtf8()
{
    return strcasecmp(php_get_internal_encoding(), "UTF-8") == 0;
}

// Whether PHP comes to the same, which takes much longer: it looks each character up.
bool isEscapedByByte(std::string_view text, Escaping escaping)
{
    switch (escaping) {
    case Escaping::HTMLENTITIES:
        return charsetIsUtf8() && isAscii(text);
    case Escaping::HTMLSPECIALCHARS:
        return charsetIsUtf8() && isValidUtf8(text);
    default:
        return text.find('\0') == std::string_view::npos;
    }
}

// What PHP may need to escape a text, at most: it sets out with two or three
// times its size, and a special character becomes eight ("&Yacute;").
size_t roomToEscape(std::string_view text)
{
    const auto special = std::count_if(text.begin(), text.end(), [](unsigned char byte) {
        return byte >= 0x80 || std::strchr("&<>\"'\\", byte) != nullptr;
    });
    return 3 * text.size() + 8 * static_cast<size_t>(special);
}

}

void appendEscaped(Text& out, zend_string* text, Escaping escaping)
{
    const std::string_view whole(ZSTR_VAL(text), ZSTR_LEN(text));
    if (isEscapedByByte(whole, escaping)) {
        byteEscaper(escaping).append(out, whole.substr(0, whole.find('\0')));
        return;
    }
    // From this size on a text is held against the memory limit first.
    constexpr size_t LARGE_TEXT = 64 * 1024;
    EngineCall& call = EngineCall::current();
    if (whole.size() > LARGE_TEXT) {
        call.ensureRoom(roomToEscape(whole));
    }
    // Held, because a charset that PHP warns about runs the user's error handler.
    const EngineString held(zend_string_copy(text));
    out.append(call.makeString([&] { return escape(whole, escaping, nullptr); }).text());
}

const ByteEscaper& byteEscaper(Escaping escaping)
{
    static std::array<std::optional<ByteEscaper>, 4> escapers;
    std::optional<ByteEscaper>& escaper = escapers[static_cast<size_t>(escaping)];
    if (UNEXPECTED(!escaper)) {
        // Asking PHP may fail for want of memory, and what that runs may get here again.
        const ByteEscaper made(
            [escaping](std::string_view text) { return escape(text, escaping, "ISO-8859-1"); });
        escaper.emplace(made);
    }
    return *escaper;
}
