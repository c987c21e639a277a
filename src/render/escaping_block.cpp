// The four escaping tags, while rendering. Text is taken for ISO-8859-1 here,
// whatever the charset of the request, so every byte is escaped by itself.
#include "render/steps.h"

void StepMaker::add(const VariableBlock& block, Escaping escaping)
{
    Step* step = addReference(
        block.isKey ? Step::ESCAPED_KEY : Step::ESCAPED_VALUE, block.namespaceName, block.path);
    if (step != nullptr) {
        step->escaper = &byteEscaper(escaping);
    }
}

void Template::_getResultAddslashes(const AddslashesBlock& block, Text& out, const zval* data) const
{
    renderAlone(
        *this, out, data, [&](StepMaker& maker) { maker.add(block, Escaping::ADDSLASHES); });
}

void Template::_getResultHtmlentities(
    const HtmlentitiesBlock& block, Text& out, const zval* data) const
{
    renderAlone(
        *this, out, data, [&](StepMaker& maker) { maker.add(block, Escaping::HTMLENTITIES); });
}

void Template::_getResultHtmlspecialchars(
    const HtmlspecialcharsBlock& block, Text& out, const zval* data) const
{
    renderAlone(
        *this, out, data, [&](StepMaker& maker) { maker.add(block, Escaping::HTMLSPECIALCHARS); });
}

void Template::_getResultRawurlencode(
    const RawurlencodeBlock& block, Text& out, const zval* data) const
{
    renderAlone(
        *this, out, data, [&](StepMaker& maker) { maker.add(block, Escaping::RAWURLENCODE); });
}
