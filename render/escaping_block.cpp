// The four escaping tags, while rendering. Text is taken for ISO-8859-1 here,
// whatever the charset of the request, so every byte is escaped by itself.
#include "render/byte_escaper.h"
#include "template/template.h"

namespace {

zend_string* escapeHtml(std::string_view text, bool allEntities)
{
    return php_escape_html_entities(reinterpret_cast<const unsigned char*>(text.data()),
        text.size(), allEntities, ENT_COMPAT, "ISO-8859-1");
}

zend_string* addslashes(std::string_view text)
{
    zend_string* original = zend_string_init(text.data(), text.size(), false);
    zend_string* escaped = php_addslashes(original);
    zend_string_release(original);
    return escaped;
}

}

const ByteEscaper& htmlentitiesEscaper(EngineCall& call)
{
    static const ByteEscaper escaper(call,
        [](std::string_view text) { return escapeHtml(text, true); });
    return escaper;
}

const ByteEscaper& htmlspecialcharsEscaper(EngineCall& call)
{
    static const ByteEscaper escaper(call,
        [](std::string_view text) { return escapeHtml(text, false); });
    return escaper;
}

// Runs for each value, so all that it calls is compiled into it.
[[gnu::flatten]] void Template::appendEscaped(const VariableBlock& block, std::string& out,
    const zval* data, const ByteEscaper& escaper) const
{
    if (!block.sectionPath) {
        block.sectionPath.emplace(block.path);
    }
    const DynamicBlock* section = sectionOf(block.namespaceName, *block.sectionPath, data);
    if (section == nullptr) {
        return;
    }
    if (block.isKey) {
        escaper.append(call(), out, keyText(*section));
        return;
    }
    const zval* value = walkFrom(*section, block.namespaceName, *block.sectionPath, data);
    if (value == nullptr) {
        return;
    }
    // Most values are strings, and are spared the making of a ValueText.
    if (EXPECTED(Z_TYPE_P(value) == IS_STRING)) {
        escaper.append(call(), out, stringText(value));
        return;
    }
    const ValueText text(call(), value);
    if (text.exists()) {
        escaper.append(call(), out, text.view());
    }
}

void Template::_getResultAddslashes(const AddslashesBlock& block, std::string& out,
    const zval* data) const
{
    static const ByteEscaper escaper(call(), addslashes);
    appendEscaped(block, out, data, escaper);
}

void Template::_getResultHtmlentities(const HtmlentitiesBlock& block, std::string& out,
    const zval* data) const
{
    appendEscaped(block, out, data, htmlentitiesEscaper(call()));
}

void Template::_getResultHtmlspecialchars(const HtmlspecialcharsBlock& block, std::string& out,
    const zval* data) const
{
    appendEscaped(block, out, data, htmlspecialcharsEscaper(call()));
}

void Template::_getResultRawurlencode(const RawurlencodeBlock& block, std::string& out,
    const zval* data) const
{
    static const ByteEscaper escaper(call(), [](std::string_view text) {
        return php_raw_url_encode(text.data(), text.size());
    });
    appendEscaped(block, out, data, escaper);
}
