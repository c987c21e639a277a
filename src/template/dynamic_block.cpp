// Repeated sections, while analysing: what they iterate is fixed here, unless it
// depends on the element of another section.
#include "template/error.h"
#include "template/template.h"

namespace {

constexpr std::string_view BAD_PARAMETER = "Dynamic block bad parameter '";

}

void Template::analyzeDynamicBlock(
    Blocks& blocks, PendingText& text, std::string_view argument, bool reversed)
{
    storeTextBlock(blocks, text);
    const size_t comma = argument.find(',');
    const bool named = comma != std::string_view::npos;
    String name(named ? argument.substr(0, comma) : "");
    const std::string_view variable = named ? argument.substr(comma + 1) : argument;
    if (!name.empty() && dynamicStack.find(name) != nullptr) {
        throwError(BAD_PARAMETER, variable, "': namespace is used already in ", currentFile());
    }
    const ReferenceText reference = parseReference(variable, currentFile());
    if (reference.kind == VariableKind::SECTION_KEY) {
        throwError(BAD_PARAMETER, variable, "': [*] is forbidden in ", currentFile());
    }
    Owner<DynamicBlock> block;
    if (reference.kind == VariableKind::SECTION_VALUE) {
        block = make<DynamicBlock>(
            std::move(name), String(reference.namespaceName), reference.path.keys(), reversed);
    } else {
        const zval* array = arrayAt(reference.path);
        if (array == nullptr && variable.empty()) {
            throwError(BAD_PARAMETER, variable, "': no parameter found in ", currentFile());
        }
        // A section that will render nothing does not take its name either.
        block = make<DynamicBlock>(
            array != nullptr ? std::move(name) : String(), String(), Deque<String>(), reversed);
        block->data = array;
        block->isActive = array != nullptr;
    }

    DynamicBlock& section = *block;
    blocks.push_back(std::move(block));
    const SectionStack::Opened opened(dynamicStack, section);
    _analyzeTemplate(
        section.blocks, text, static_cast<Block::BlockType>(Block::DYNAMIC_END + reversed));
}

// The array that a section over the path from the root iterates; null when there
// is none. PHP references to arrays are followed here, though not while rendering.
const zval* Template::arrayAt(PathText path) const
{
    const zval* value = findRootValue(path);
    if (value == nullptr) {
        return nullptr;
    }
    value = numOf(phpInterface, value);
    ZVAL_DEREF(value);
    return Z_TYPE_P(value) == IS_ARRAY ? value : nullptr;
}
