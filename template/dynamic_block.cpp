// Repeated sections, while analysing: what they iterate is fixed here, unless it
// depends on the element of another section.
#include "template/error.h"
#include "template/template.h"

namespace {

constexpr std::string_view BAD_PARAMETER = "Dynamic block bad parameter '";

// The array that a section over `value` iterates; null when there is none.
const zval* arrayOf(const zval* value)
{
    ZVAL_DEREF(value);
    return Z_TYPE_P(value) == IS_ARRAY ? value : nullptr;
}

}

void Template::analyzeDynamicBlock(Blocks& blocks, PendingText& text, std::string_view argument,
    bool reversed)
{
    storeTextBlock(blocks, text);
    const size_t comma = argument.find(',');
    const bool named = comma != argument.npos;
    std::string name(named ? argument.substr(0, comma) : "");
    const std::string_view variable = named ? argument.substr(comma + 1) : argument;
    if (!name.empty()) {
        for (const DynamicBlock* open : dynamicStack) {
            if (open->name == name) {
                throwError(BAD_PARAMETER, variable, "': namespace is used already in ",
                    currentFile());
            }
        }
    }

    VariableReference reference = analyzeVariable(variable);
    if (reference.kind == VariableKind::SECTION_KEY) {
        throwError(BAD_PARAMETER, variable, "': [*] is forbidden in ", currentFile());
    }
    std::unique_ptr<DynamicBlock> block;
    if (reference.kind == VariableKind::SECTION_VALUE) {
        block = std::make_unique<DynamicBlock>(std::move(name), std::move(reference.namespaceName),
            std::move(reference.path), reversed);
    } else {
        const zval* array = nullptr;
        if (reference.kind == VariableKind::ROOT_VALUE) {
            const zval* num = findNum(reference.value);
            array = arrayOf(num != nullptr ? num : reference.value);
        }
        if (array == nullptr && variable.empty()) {
            throwError(BAD_PARAMETER, variable, "': no parameter found in ", currentFile());
        }
        // A section that will render nothing does not take its name either.
        block = std::make_unique<DynamicBlock>(array != nullptr ? std::move(name) : std::string(),
            std::string(), std::deque<std::string>(), reversed);
        block->data = array;
        block->isActive = array != nullptr;
    }

    DynamicBlock& section = *block;
    addBlock(blocks, std::move(block));
    dynamicStack.push_back(&section);
    _analyzeTemplate(section.blocks, text,
        static_cast<Block::BlockType>(Block::DYNAMIC_END + reversed));
    dynamicStack.pop_back();
}
