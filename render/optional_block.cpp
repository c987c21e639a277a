// Conditional sections, while rendering: decided anew for each element of the
// section that they refer to.
#include "template/template.h"

void Template::_getResultOptional(OptionalBlock& block, std::string& out, const zval* data,
    bool negated)
{
    if (block.optionalType == OptionalBlock::ANALYZED) {
        _getResult(block.blocks, out, data);
        return;
    }
    // Without a section to ask, nothing shows, negated or not.
    const auto start = findSection(block.namespaceName, data);
    if (!start) {
        return;
    }
    bool visible;
    if (block.optionalType == OptionalBlock::CURRENT_KEY) {
        // Quotes around the comparison text are part of it here.
        visible = start->section->currentKey == block.compareValue;
    } else {
        if (!block.compiledPath) {
            block.compiledPath.emplace(block.path);
        }
        visible = checkIfOptionalIsVisible(block.compiledPath->walk(phpInterface, start->data),
            block.compareValue);
    }
    if (visible != negated) {
        _getResult(block.blocks, out, data);
    }
}
