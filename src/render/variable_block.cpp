// The variable tag, while rendering: its references are tried in turn, and the first
// that yields a value is printed.
#include <optional>

#include "engine/failure.h"
#include "render/steps.h"

namespace {

// The working fields show the reference that was taken apart last.
void remember(MultiVariableBlock& block, const ReferenceText& reference)
{
    block.namespaceName = reference.namespaceName;
    block.path = reference.path.keys();
    block.isKey = reference.kind == VariableKind::SECTION_KEY;
}

// What is wrong with a reference does not matter until its turn comes.
std::optional<ReferenceText> takeApart(std::string_view reference, std::string_view file)
{
    try {
        return parseReference(reference, file);
    } catch (const Failure&) {
        return std::nullopt;
    }
}

// Adds the step of one reference. False where none can come behind it.
bool addCandidate(StepMaker& maker, MultiVariableBlock& block, std::string_view text)
{
    EngineCall::current().checkTime();
    const auto reference = takeApart(text, maker.page().currentFile());
    if (!reference) {
        maker.addStep(Step::FAULT).argument = text;
        return false;
    }
    if (reference->kind != VariableKind::ROOT_VALUE) {
        remember(block, *reference);
        const bool isKey = reference->kind == VariableKind::SECTION_KEY;
        const Step* step = maker.addReference(
            isKey ? Step::KEY : Step::VALUE, reference->namespaceName, reference->path);
        return step == nullptr || !isKey;
    }
    const zval* value = walkPath(maker.page().phpInterface, reference->path, nullptr);
    if (value == nullptr) {
        return true;
    }
    maker.addStep(Step::ROOT_VALUE).value = value;
    return false;
}

}

void StepMaker::add(MultiVariableBlock& block)
{
    const uint32_t first = position();
    bool mayBeMissing = true;
    for (size_t i = 0; mayBeMissing && i < block.variables.size(); ++i) {
        mayBeMissing = addCandidate(*this, block, block.variables[i]);
    }
    if (mayBeMissing && block.hasDefaultValue) {
        addText(block.defaultValue);
        flushText();
    }
    for (uint32_t step = first; step < position(); ++step) {
        if (at(step).kind != Step::TEXT) {
            at(step).next = position();
        }
    }
}

void Template::_getResultVariable(MultiVariableBlock& block, Text& out, const zval* data) const
{
    renderAlone(*this, out, data, [&](StepMaker& maker) { maker.add(block); });
}
