// The four escaping tags. A string at the top level of the user data is escaped
// once, here, in the charset of the request; what depends on a section becomes a
// block and is escaped byte by byte when it is rendered. The two differ for
// non-ASCII text, and pages depend on either, so neither may follow the other.
#include <algorithm>
#include <cstring>
#include <strings.h>

#include "render/byte_escaper.h"
#include "template/template.h"

namespace {

bool isAscii(std::string_view text)
{
    const char* from = text.data();
    const char* const end = from + text.size();
    uint64_t bits = 0;
    for (; end - from >= 8; from += 8) {
        uint64_t eight;
        std::memcpy(&eight, from, sizeof eight);
        bits |= eight;
    }
    for (; from < end; ++from) {
        bits |= static_cast<unsigned char>(*from);
    }
    return (bits & 0x8080808080808080) == 0;
}

// ASCII is escaped alike in every charset that PHP knows, and much faster byte by
// byte: PHP looks each character up. A charset that it does not know makes PHP
// warn, so only the usual one is taken for known here.
bool isEscapedByByte(std::string_view text)
{
    return isAscii(text) && strcasecmp(php_get_internal_encoding(), "UTF-8") == 0;
}

// From this size on a text that is to be escaped is held against the limit first.
constexpr size_t LARGE_TEXT = 64 * 1024;

zend_string* addslashes(zend_string* text)
{
    return php_addslashes(text);
}

zend_string* escapeHtml(zend_string* text, bool allEntities)
{
    return php_escape_html_entities(reinterpret_cast<const unsigned char*>(ZSTR_VAL(text)),
        ZSTR_LEN(text), allEntities, ENT_COMPAT, nullptr);
}

zend_string* htmlentities(zend_string* text)
{
    return escapeHtml(text, true);
}

zend_string* htmlspecialchars(zend_string* text)
{
    return escapeHtml(text, false);
}

zend_string* rawurlencode(zend_string* text)
{
    return php_raw_url_encode(ZSTR_VAL(text), ZSTR_LEN(text));
}

// What PHP may need to escape a text, at most: it sets out with two or three
// times its size, and a special character becomes eight ("&Yacute;").
size_t roomToEscape(std::string_view text)
{
    const auto special = std::count_if(text.begin(), text.end(),
        [](unsigned char byte) { return byte >= 0x80 || std::strchr("&<>\"", byte) != nullptr; });
    return 3 * text.size() + 8 * static_cast<size_t>(special);
}

}

template <class EscapedBlock>
void Template::analyzeEscapingBlock(Blocks& blocks, PendingText& text, std::string_view argument,
    EscapingFunction escape, BytesEscaper escapeBytes) const
{
    const ReferenceText reference = parseReference(argument);
    if (reference.kind != VariableKind::ROOT_VALUE) {
        storeTextBlock(blocks, text);
        addBlock(blocks,
            std::make_unique<EscapedBlock>(std::string(reference.namespaceName),
                reference.path.keys(), reference.kind == VariableKind::SECTION_KEY));
        return;
    }
    const zval* value = findRootValue(reference.path);
    // Unlike the variable tag, these tags print strings only.
    if (value == nullptr || Z_TYPE_P(value) != IS_STRING) {
        return;
    }
    const std::string_view whole(Z_STRVAL_P(value), Z_STRLEN_P(value));
    if (escapeBytes != nullptr && isEscapedByByte(whole)) {
        escapeBytes(call()).append(call(), text->text, whole.substr(0, whole.find('\0')));
        return;
    }
    // Held, because a charset that PHP warns about runs the user's error handler.
    const EngineString original(zend_string_copy(Z_STR_P(value)));
    if (whole.size() > LARGE_TEXT) {
        call().ensureRoom(roomToEscape(whole));
    }
    const EngineString escaped = call().makeString([&] { return escape(original.get()); });
    append(text->text, escaped.text());
}

void Template::analyzeAddslashesBlock(Blocks& blocks, PendingText& text,
    std::string_view argument) const
{
    analyzeEscapingBlock<AddslashesBlock>(blocks, text, argument, addslashes, nullptr);
}

void Template::analyzeHtmlentitiesBlock(Blocks& blocks, PendingText& text,
    std::string_view argument) const
{
    analyzeEscapingBlock<HtmlentitiesBlock>(blocks, text, argument, htmlentities,
        htmlentitiesEscaper);
}

void Template::analyzeHtmlspecialcharsBlock(Blocks& blocks, PendingText& text,
    std::string_view argument) const
{
    analyzeEscapingBlock<HtmlspecialcharsBlock>(blocks, text, argument, htmlspecialchars,
        htmlspecialcharsEscaper);
}

void Template::analyzeRawurlencodeBlock(Blocks& blocks, PendingText& text,
    std::string_view argument) const
{
    analyzeEscapingBlock<RawurlencodeBlock>(blocks, text, argument, rawurlencode, nullptr);
}
