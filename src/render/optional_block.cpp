// Conditional sections, while rendering: decided anew for each element of the
// section that they refer to. What analysis decided shows, whatever else.
#include "render/steps.h"

void StepMaker::add(OptionalBlock& block)
{
    if (block.optionalType == OptionalBlock::ANALYZED) {
        addBody(block.blocks);
        return;
    }
    const bool comparesKey = block.optionalType == OptionalBlock::CURRENT_KEY;
    Step* step = addReference(
        comparesKey ? Step::KEY_CONDITION : Step::VALUE_CONDITION, block.namespaceName, block.path);
    // Without a section to ask, nothing shows, negated or not.
    if (step == nullptr) {
        return;
    }
    step->argument = block.compareValue;
    step->negated = block.type == Block::NOT_OPTIONAL;
    const uint32_t condition = position() - 1;
    addBody(block.blocks);
    at(condition).next = position();
}

void Template::_getResultOptional(OptionalBlock& block, Text& out, const zval* data, bool)
{
    if (block.optionalType == OptionalBlock::ANALYZED) {
        _getResult(block.blocks, out, data);
        return;
    }
    renderAlone(*this, out, data, [&](StepMaker& maker) { maker.add(block); });
}
