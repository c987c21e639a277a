// The four escaping tags, while analysing. A string at the top level of the user data
// is escaped once, here; what depends on a section becomes a block.
#include "template/template.h"

template <class EscapedBlock>
void Template::analyzeEscapingBlock(
    Blocks& blocks, PendingText& text, std::string_view argument, Escaping escaping) const
{
    const ReferenceText reference = parseReference(argument, currentFile());
    if (reference.kind != VariableKind::ROOT_VALUE) {
        storeTextBlock(blocks, text);
        blocks.push_back(make<EscapedBlock>(String(reference.namespaceName), reference.path.keys(),
            reference.kind == VariableKind::SECTION_KEY));
        return;
    }
    // Unlike the variable tag, these tags print strings only.
    const zval* value = findRootValue(reference.path);
    if (value != nullptr && Z_TYPE_P(value) == IS_STRING) {
        appendEscaped(text->text, Z_STR_P(value), escaping);
    }
}

void Template::analyzeAddslashesBlock(
    Blocks& blocks, PendingText& text, std::string_view argument) const
{
    analyzeEscapingBlock<AddslashesBlock>(blocks, text, argument, Escaping::ADDSLASHES);
}

void Template::analyzeHtmlentitiesBlock(
    Blocks& blocks, PendingText& text, std::string_view argument) const
{
    analyzeEscapingBlock<HtmlentitiesBlock>(blocks, text, argument, Escaping::HTMLENTITIES);
}

void Template::analyzeHtmlspecialcharsBlock(
    Blocks& blocks, PendingText& text, std::string_view argument) const
{
    analyzeEscapingBlock<HtmlspecialcharsBlock>(blocks, text, argument, Escaping::HTMLSPECIALCHARS);
}

void Template::analyzeRawurlencodeBlock(
    Blocks& blocks, PendingText& text, std::string_view argument) const
{
    analyzeEscapingBlock<RawurlencodeBlock>(blocks, text, argument, Escaping::RAWURLENCODE);
}
