// Members of Template that render into a string, and the text of a single value. No
// call of template() reaches them: each is a line over what rendering really does.
#include "render/steps.h"

namespace {

template <class Render>
void renderInto(std::string& out, Render render)
{
    Text text;
    render(text);
    out += text.view();
}

}

std::string Template::getResult()
{
    std::string result;
    _getResult(blocks, result, nullptr);
    return result;
}

void Template::_getResult(Blocks& blocks, std::string& output, const zval* data)
{
    renderInto(output, [&](Text& text) { _getResult(blocks, text, data); });
}

std::unique_ptr<char, void (*)(void*)> Template::_getResultVariableStringValue(
    const VariableBlock& block, const zval* data) const
{
    std::unique_ptr<char, void (*)(void*)> copy(nullptr, [](void* text) { efree(text); });
    const SectionReference reference(dynamicStack, block.namespaceName, block.path);
    if (data == nullptr || reference.section == nullptr) {
        return copy;
    }
    const auto copyOf = [&](std::string_view text) {
        EngineCall::current().attempt([&] { copy.reset(estrndup(text.data(), text.size())); });
        EngineCall::current().leaveIfAbandoned();
    };
    if (block.isKey) {
        Digits digits;
        copyOf(reference.section->currentKey.printed(digits));
    } else if (const zval* value = block.namespaceName.empty()
            ? reference.path.walk(phpInterface, data)
            : reference.find(phpInterface)) {
        const ValueText text(value);
        if (text.exists()) {
            copyOf(text.view());
        }
    }
    return copy;
}
