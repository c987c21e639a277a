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

void Template::openSection(const DynamicBlock& section)
{
    dynamicStack.push_back(&section);
}

void Template::closeSection()
{
    const DynamicBlock* closed = dynamicStack.back();
    dynamicStack.pop_back();
    if (UNEXPECTED(registered_ > dynamicStack.size())) {
        --registered_;
        const auto found = outermost_.find(closed->name);
        if (found != outermost_.end() && found->second == closed) {
            outermost_.erase(found);
        }
    }
}

// The named section, the outermost of that name, or else the innermost one;
// null for a name that is not open and outside of sections.
const DynamicBlock* Template::findSection(std::string_view namespaceName) const
{
    if (namespaceName.empty()) {
        return dynamicStack.empty() ? nullptr : dynamicStack.back();
    }
    // Few sections are compared faster than looked up.
    constexpr size_t FEW = 16;
    if (EXPECTED(dynamicStack.size() <= FEW)) {
        for (const DynamicBlock* section : dynamicStack) {
            if (section->name == namespaceName) {
                return section;
            }
        }
        return nullptr;
    }
    for (; registered_ < dynamicStack.size(); ++registered_) {
        const DynamicBlock* section = dynamicStack[registered_];
        outermost_.try_emplace(section->name, section);
    }
    const auto found = outermost_.find(namespaceName);
    return found != outermost_.end() ? found->second : nullptr;
}

std::unique_ptr<char, void (*)(void*)> Template::_getResultVariableStringValue(
    const VariableBlock& block, const zval* data) const
{
    std::unique_ptr<char, void (*)(void*)> copy(nullptr, [](void* text) { efree(text); });
    const auto copyText = [&](std::string_view text) {
        call().attempt([&] { copy.reset(estrndup(text.data(), text.size())); });
        call().leaveIfAbandoned();
    };
    SectionPath path(block.path);
    const DynamicBlock* section = sectionOf(block.namespaceName, path, data);
    if (section == nullptr) {
        return copy;
    }
    if (block.isKey) {
        copyText(keyText(*section));
    } else if (const zval* value = walkFrom(*section, block.namespaceName, path, data)) {
        const ValueText text(call(), value);
        if (text.exists()) {
            copyText(text.view());
        }
    }
    return copy;
}
