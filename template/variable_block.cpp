// The variable tag: alternatives and a quoted default. What the top level of
// the user data decides becomes text at once; the rest becomes a block.
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
        throwError(BAD_PARAMETER, content,
            "': could not find second ' as the last character in ", file);
    }
    return {content.substr(0, quote), content.substr(quote + 1, last - quote - 1)};
}

std::unique_ptr<Block> makeBlock(const TagParts& tag, std::string_view content)
{
    std::vector<std::string> variables;
    Words words(tag.references);
    for (std::string_view word; !(word = words.next()).empty();) {
        variables.emplace_back(word);
    }
    if (tag.defaultValue) {
        return std::make_unique<MultiVariableBlock>(variables, std::string(*tag.defaultValue),
            std::string(content));
    }
    return std::make_unique<MultiVariableBlock>(variables, std::string(content));
}

}

void Template::analyzeVariableBlock(Blocks& blocks, PendingText& pendingText,
    std::string_view content) const
{
    const TagParts tag = splitTag(content, currentFile());
    Words words(tag.references);
    for (std::string_view word; !(word = words.next()).empty();) {
        const ReferenceText reference = parseReference(word);
        if (reference.kind != VariableKind::ROOT_VALUE) {
            storeTextBlock(blocks, pendingText);
            // The words cost a string and a place each besides the block.
            call().charge(content.size() * (sizeof(std::string) + 1));
            addBlock(blocks, makeBlock(tag, content));
            return;
        }
        if (const zval* value = findRootValue(reference.path)) {
            append(pendingText->text, ValueText(call(), value).view());
            return;
        }
    }
    if (tag.defaultValue) {
        append(pendingText->text, *tag.defaultValue);
        return;
    }
    // An unknown variable shows as it was written, to be found by its author.
    append(pendingText->text, "{");
    append(pendingText->text, content);
    append(pendingText->text, "}");
}
