// Conditional sections, while analysing: what the top level of the user data
// decides is settled here, and a hidden section does not reach the tree. Its
// body is analysed all the same: the input must move past it, and its faults
// are the author's to hear of, hidden today or not.
#include <charconv>

#include "template/template.h"

namespace {

// What is compared with: the text between the outermost quotes, if there are two.
std::string_view unquoted(std::string_view compare)
{
    const size_t first = compare.find('\'');
    const size_t last = compare.rfind('\'');
    return first == last ? compare : compare.substr(first + 1, last - first - 1);
}

// The leading number of `text`; 0 when there is none or it is out of range.
zend_long leadingNumber(std::string_view text)
{
    zend_long number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

bool isTrue(const zval* value)
{
    if (EXPECTED(Z_TYPE_P(value) < IS_OBJECT)) {
        return i_zend_is_true(value);
    }
    // Some internal classes decide for themselves whether they are true.
    bool result = false;
    EngineCall::current().run([&] { result = zend_is_true(value); });
    return result;
}

}

void Template::analyzeOptionalBlock(
    Blocks& blocks, PendingText& text, std::string_view argument, bool negated)
{
    storeTextBlock(blocks, text);
    const size_t space = argument.find(' ');
    const std::string_view variable = argument.substr(0, space);
    String compareValue(space == std::string_view::npos ? "" : argument.substr(space + 1));
    const ReferenceText reference = parseReference(variable, currentFile());

    auto optionalType = OptionalBlock::ANALYZED;
    bool shown = true;
    switch (reference.kind) {
    case VariableKind::ROOT_VALUE:
    case VariableKind::NOT_FOUND:
        // A value that is not there is not visible.
        shown = checkIfOptionalIsVisible(findRootValue(reference.path), compareValue) != negated;
        break;
    case VariableKind::SECTION_VALUE:
        optionalType = OptionalBlock::CURRENT_VALUE;
        break;
    case VariableKind::SECTION_KEY:
        optionalType = OptionalBlock::CURRENT_KEY;
        break;
    }

    if (shown) {
        auto block = make<OptionalBlock>(String(reference.namespaceName), reference.path.keys(),
            optionalType, std::move(compareValue), negated);
        OptionalBlock& section = *block;
        blocks.push_back(std::move(block));
        _analyzeTemplate(section.blocks, text, Block::OPTIONAL_END);
    } else {
        // Nothing of it is kept.
        const CallMemory memory(EngineCall::current());
        Blocks hidden;
        PendingText hiddenText = make<TextBlock>();
        _analyzeTemplate(hidden, hiddenText, Block::OPTIONAL_END);
    }
}

bool Template::checkIfOptionalIsVisible(const zval* value, std::string_view compare) const
{
    if (value == nullptr) {
        return false;
    }
    if (compare.empty()) {
        const zval* visible
            = Z_TYPE_P(value) == IS_ARRAY ? phpInterface.hashFind("visible", value) : nullptr;
        return isTrue(visible != nullptr ? visible : value);
    }
    compare = unquoted(compare);
    switch (Z_TYPE_P(value)) {
    case IS_STRING:
        return compare == Z_STRVAL_P(value);
    case IS_LONG:
        return Z_LVAL_P(value) == leadingNumber(compare);
    case IS_FALSE:
    case IS_TRUE:
        // Reads the payload and not the type, which says whether it is true:
        // templates have come to rely on what their data has left there.
        return (compare == "0") == (Z_LVAL_P(value) == 0);
    default:
        return false;
    }
}
