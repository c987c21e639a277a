// Members of Template that no call of template() reaches: each is a line over what
// analysis really does.
#include "template/tag.h"
#include "template/template.h"

TagMatch Template::matchInput(std::string_view tag)
{
    const auto [argument, type] = matchTag(tag);
    return {String(argument), type};
}

String Template::trim(std::string_view text, size_t offset)
{
    return text.empty() ? String() : String(trimmed(text.substr(offset)));
}

ParsedArgument Template::parseArgument(std::string_view argument) const
{
    const ReferenceText reference = parseReference(argument, currentFile());
    return {reference.path.keys(), String(reference.namespaceName), reference.kind};
}

VariableReference Template::analyzeVariable(std::string_view argument) const
{
    ParsedArgument parsed = parseArgument(argument);
    const zval* value = nullptr;
    if (parsed.kind == VariableKind::ROOT_VALUE) {
        value = findVariable(parsed.path, nullptr);
        if (value == nullptr) {
            parsed.kind = VariableKind::NOT_FOUND;
        }
    }
    return {value, std::move(parsed.path), std::move(parsed.namespaceName), parsed.kind};
}

const zval* Template::findVariable(const Deque<String>& path, const zval* data) const
{
    auto key = path.begin();
    return walkPath(
        data, [&] { return key != path.end(); },
        [&](const zval* from) { return findStep(phpInterface, *key++, from); });
}
