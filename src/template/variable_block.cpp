// The variable tag: alternatives and a quoted default. What the top level of
// the user data decides becomes text at once; the rest becomes a block.
#include <optional>

#include "template/error.h"
#include "template/tag.h"
#include "template/template.h"

namespace {

constexpr std::string_view BAD_PARAMETER = "Variable block bad parameter '";

// The references of a tag, one at a time.
class Words {
public:
    explicit Words(std::string_view text) : rest_(text) {}

    // Empty when there is no more.
    std::string_view next()
    {
        size_t begin = 0;
        while (begin < rest_.size() && isBlank(rest_[begin])) {
            ++begin;
        }
        size_t end = begin;
        while (end < rest_.size() && !isBlank(rest_[end])) {
            ++end;
        }
        const std::string_view word = rest_.substr(begin, end - begin);
        rest_.remove_prefix(end);
        return word;
    }

private:
    std::string_view rest_;
};

struct TagParts {
    std::string_view references;
    std::optional<std::string_view> defaultValue;
};

// The first quote decides: where a word could begin it opens the default, which
// runs to the end of the tag, further quotes included; inside a word it is wrong.
TagParts splitTag(std::string_view content, std::string_view file)
{
    const size_t quote = content.find('\'');
    if (quote == std::string_view::npos) {
        return {content, std::nullopt};
    }
    if (quote > 0 && !isBlank(content[quote - 1])) {
        throwError(BAD_PARAMETER, content, "': ' is forbidden in variable in ", file);
    }
    const size_t last = content.size() - 1;
    if (quote == last || content[last] != '\'') {
        throwError(
            BAD_PARAMETER, content, "': could not find second ' as the last character in ", file);
    }
    return {content.substr(0, quote), content.substr(quote + 1, last - quote - 1)};
}

Owner<Block> makeBlock(const TagParts& tag, std::string_view content)
{
    // The references are put right into the block's list, not copied into it.
    auto block = tag.defaultValue
        ? make<MultiVariableBlock>(Vector<String>(), String(*tag.defaultValue), String(content))
        : make<MultiVariableBlock>(Vector<String>(), String(content));
    Words words(tag.references);
    for (std::string_view word; !(word = words.next()).empty();) {
        block->variables.emplace_back(word);
    }
    return block;
}

}

void Template::analyzeVariableBlock(
    Blocks& blocks, PendingText& pendingText, std::string_view content) const
{
    if (!content.empty() && isPlainKey(content)) {
        if (const zval* value = findStep(phpInterface, content, nullptr)) {
            appendValue(pendingText->text, value);
            return;
        }
    } else if (analyzeReferences(blocks, pendingText, content)) {
        return;
    }
    // An unknown variable shows as it was written, to be found by its author.
    pendingText->text.append('{');
    pendingText->text.append(content);
    pendingText->text.append('}');
}

// A tag of any other form. False when there is no value and no default.
bool Template::analyzeReferences(
    Blocks& blocks, PendingText& pendingText, std::string_view content) const
{
    const TagParts tag = splitTag(content, currentFile());
    Words words(tag.references);
    for (std::string_view word; !(word = words.next()).empty();) {
        const ReferenceText reference = parseReference(word, currentFile());
        if (reference.kind != VariableKind::ROOT_VALUE) {
            storeTextBlock(blocks, pendingText);
            blocks.push_back(makeBlock(tag, content));
            return true;
        }
        if (const zval* value = findRootValue(reference.path)) {
            appendValue(pendingText->text, value);
            return true;
        }
    }
    if (tag.defaultValue) {
        pendingText->text.append(*tag.defaultValue);
    }
    return tag.defaultValue.has_value();
}
