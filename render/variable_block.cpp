// The variable tag, while rendering: its references are tried in turn.
#include "template/template.h"

namespace {

// The reference tried last shows in the block's own members. Mostly that is the
// one that was tried last at the previous element.
void remember(MultiVariableBlock& block, size_t tried)
{
    const Candidate& candidate = block.candidates[tried];
    if (UNEXPECTED(block.remembered != tried && candidate.kind != VariableKind::ROOT_VALUE)) {
        block.namespaceName = candidate.namespaceName;
        block.path.clear();
        candidate.path.appendTo(block.path);
        block.isKey = candidate.kind == VariableKind::SECTION_KEY;
        block.remembered = tried;
    }
}

}

// False when there turns out to be no value: the slot of an unset property.
bool Template::appendValue(std::string& out, const zval* value) const
{
    // The frequent types are spared the making of a ValueText.
    if (EXPECTED(Z_TYPE_P(value) == IS_STRING)) {
        append(out, stringText(value));
        return true;
    }
    if (Z_TYPE_P(value) == IS_LONG) {
        Digits digits;
        append(out, decimal(Z_LVAL_P(value), digits));
        return true;
    }
    const ValueText text(call(), value);
    append(out, text.view());
    return text.exists();
}

// A reference is taken apart when its turn first comes, and not before: what is
// wrong with one that is never tried does not matter.
[[gnu::noinline]] void Template::takeApartNext(MultiVariableBlock& block) const
{
    const ReferenceText reference = parseReference(block.variables[block.candidates.size()]);
    block.candidates.emplace_back(reference,
        reference.kind == VariableKind::ROOT_VALUE ? findRootValue(reference.path) : nullptr);
}

inline bool Template::appendCandidate(Candidate& candidate, std::string& out,
    const zval* data) const
{
    if (candidate.kind == VariableKind::ROOT_VALUE) {
        if (candidate.value != nullptr) {
            appendValue(out, candidate.value);
        }
        return candidate.value != nullptr;
    }
    const DynamicBlock* section = sectionOf(candidate.namespaceName, candidate.sectionPath, data);
    if (section == nullptr) {
        return false;
    }
    if (candidate.kind == VariableKind::SECTION_KEY) {
        append(out, keyText(*section));
        return true;
    }
    const zval* value = walkFrom(*section, candidate.namespaceName, candidate.sectionPath, data);
    return value != nullptr && appendValue(out, value);
}

// Runs for each value, so all that it calls is compiled into it.
[[gnu::flatten]] void Template::_getResultVariable(MultiVariableBlock& block, std::string& out,
    const zval* data) const
{
    // Mostly the first reference yields the value, and did so for the element before.
    const bool knowsFirst = block.remembered == 0;
    if (EXPECTED(knowsFirst) && EXPECTED(appendCandidate(block.candidates.front(), out, data))) {
        return;
    }
    appendFirstOf(block, knowsFirst ? 1 : 0, out, data);
}

// Of the references from `next` on, the first that yields a value, or the default.
[[gnu::noinline]] void Template::appendFirstOf(MultiVariableBlock& block, size_t next,
    std::string& out, const zval* data) const
{
    for (size_t i = next; i < block.variables.size(); ++i) {
        if (UNEXPECTED(i == block.candidates.size())) {
            takeApartNext(block);
        }
        remember(block, i);
        if (appendCandidate(block.candidates[i], out, data)) {
            return;
        }
    }
    if (block.hasDefaultValue) {
        append(out, block.defaultValue);
    }
}
