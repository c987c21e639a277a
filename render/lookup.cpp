// Variable lookup: the walk along a path of keys, and where a reference that is
// relative to a dynamic section starts from.
#include "template/template.h"

namespace {

// The walk goes on from arrays only: neither objects nor PHP references are
// looked into, wherever they are met.
bool leadsOn(const zval* value)
{
    return value != nullptr && Z_TYPE_P(value) == IS_ARRAY;
}

}

const zval* Template::findStep(std::string_view key, const zval* from) const
{
    if (const auto index = indexOf(key)) {
        return phpInterface.hashIndexFind(*index, from);
    }
    return phpInterface.hashFind(key, from);
}

const zval* Template::findNum(const zval* from) const
{
    return phpInterface.hashFind("num", from);
}

const zval* Template::findVariable(const std::deque<std::string>& path, const zval* data) const
{
    const zval* current = data;
    for (size_t i = 0; i < path.size(); ++i) {
        if (i > 0 && !leadsOn(current)) {
            return nullptr;
        }
        current = findStep(path[i], current);
    }
    return current;
}

// findVariable() from the root, for a path that is still text.
const zval* Template::findRootValue(PathText path) const
{
    const zval* current = findStep(path.next(), nullptr);
    while (!path.empty()) {
        if (!leadsOn(current)) {
            return nullptr;
        }
        current = findStep(path.next(), current);
    }
    return current;
}

// The named section, the outermost of that name, or else the innermost one;
// null for a name that is not open and outside of sections.
const DynamicBlock* Template::findSection(std::string_view namespaceName) const
{
    if (namespaceName.empty()) {
        return dynamicStack.empty() ? nullptr : dynamicStack.back();
    }
    // One tag may name sections a million times, thousands of levels deep.
    call().checkTime();
    for (const DynamicBlock* section : dynamicStack) {
        if (section->name == namespaceName) {
            return section;
        }
    }
    return nullptr;
}

ValueText Template::sectionText(std::string_view namespaceName, bool isKey, SectionPath& path,
    const zval* data) const
{
    const DynamicBlock* section = sectionOf(namespaceName, path, data);
    if (section == nullptr) {
        return ValueText();
    }
    if (isKey) {
        return ValueText(keyText(*section));
    }
    const zval* value = walkFrom(*section, namespaceName, path, data);
    return value != nullptr ? ValueText(call(), value) : ValueText();
}

std::unique_ptr<char, void (*)(void*)> Template::_getResultVariableStringValue(
    const VariableBlock& block, const zval* data) const
{
    std::unique_ptr<char, void (*)(void*)> copy(nullptr, [](void* text) { efree(text); });
    SectionPath path(block.path);
    const ValueText text = sectionText(block.namespaceName, block.isKey, path, data);
    if (text.exists()) {
        call().attempt([&] { copy.reset(estrndup(text.view().data(), text.view().size())); });
        call().leaveIfAbandoned();
    }
    return copy;
}
