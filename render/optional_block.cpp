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
    if (!block.sectionPath) {
        block.sectionPath.emplace(block.path);
    }
    // Without a section to ask, nothing shows, negated or not.
    const DynamicBlock* section = sectionOf(block.namespaceName, *block.sectionPath, data);
    if (section == nullptr) {
        return;
    }
    // Quotes around the comparison text are part of it when a key is compared.
    const bool visible = block.optionalType == OptionalBlock::CURRENT_KEY
        ? section->currentKey == block.compareValue
        : checkIfOptionalIsVisible(
              walkFrom(*section, block.namespaceName, *block.sectionPath, data),
              block.compareValue);
    if (visible != negated) {
        _getResult(block.blocks, out, data);
    }
}
