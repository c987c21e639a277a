// The variable tag, while rendering: its references are tried in turn.
#include "template/template.h"

namespace {

// The reference tried last shows in the block's own members.
void remember(MultiVariableBlock& block, const Candidate& candidate)
{
    const bool isKey = candidate.kind == VariableKind::SECTION_KEY;
    block.namespaceName = candidate.namespaceName;
    block.path = candidate.path.keys();
    block.isKey = isKey;
}

}

void Template::_getResultVariable(MultiVariableBlock& block, std::string& out,
    const zval* data) const
{
    for (size_t i = 0; i < block.variables.size(); ++i) {
        // A reference is taken apart when its turn first comes, and not before:
        // what is wrong with one that is never tried does not matter.
        if (i == block.candidates.size()) {
            const ReferenceText reference = parseReference(block.variables[i]);
            block.candidates.emplace_back(reference,
                reference.kind == VariableKind::ROOT_VALUE ? findRootValue(reference.path)
                                                           : nullptr);
        }
        const Candidate& candidate = block.candidates[i];
        if (candidate.kind == VariableKind::ROOT_VALUE) {
            if (candidate.value != nullptr) {
                append(out, ValueText(call(), candidate.value).view());
                return;
            }
            continue;
        }
        remember(block, candidate);
        const ValueText text = sectionText(candidate.namespaceName, block.isKey,
            candidate.compiledPath, data);
        if (text.exists()) {
            append(out, text.view());
            return;
        }
    }
    if (block.hasDefaultValue) {
        append(out, block.defaultValue);
    }
}
