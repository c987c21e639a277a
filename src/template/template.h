// One call of template(): analysis makes the block tree of a template, and
// rendering turns the tree into text. The members are spread over one source
// file for each kind of tag, in template/ (analysis) and render/ (rendering).
//
// Failures are std::runtime_error with a message for the template's author; a
// pending PHP exception or a fatal error leaves as CallAbandoned.
#ifndef TEMPLATE_TEMPLATE_TEMPLATE_H
#define TEMPLATE_TEMPLATE_TEMPLATE_H

#include <memory>
#include <string>
#include <string_view>

#include "escape/escaping.h"
#include "input/input.h"
#include "module/php_interface.h"
#include "template/block.h"
#include "template/reference.h"
#include "template/section_stack.h"

// What a tag is, and its text behind the keyword.
struct TagMatch {
    String argument;
    Block::BlockType type;
};

class Template final {
public:
    // `fileName` is opened at once, or in string mode is the template's text.
    // The user data is borrowed.
    Template(String fileName, PHPInterface& phpInterface, bool stringMode);
    Template(const Template&) = delete;
    Template& operator=(const Template&) = delete;

    // Builds the tree from the whole input.
    void analyzeTemplate();
    // Renders the tree, once. The text may be taken out of the tree.
    EngineString getResultString();
    std::string getResult();

    // Analysis. Each step appends to `blocks` and to the pending text.

    // Analyses input until its end, or until the closing tag of type `closing`;
    // VARIABLE stands for no section.
    void _analyzeTemplate(Blocks& blocks, PendingText& text, Block::BlockType closing);
    // Reads one tag and acts on it. True for the expected closing tag only.
    bool analyzeTag(Blocks& blocks, PendingText& text, Block::BlockType closing);
    // Moves the pending text, unless empty, to the end of `blocks`.
    void storeTextBlock(Blocks& blocks, PendingText& text) const;

    void analyzeVariableBlock(
        Blocks& blocks, PendingText& pendingText, std::string_view content) const;
    void analyzeAddslashesBlock(Blocks& blocks, PendingText& text, std::string_view argument) const;
    void analyzeHtmlentitiesBlock(
        Blocks& blocks, PendingText& text, std::string_view argument) const;
    void analyzeHtmlspecialcharsBlock(
        Blocks& blocks, PendingText& text, std::string_view argument) const;
    void analyzeRawurlencodeBlock(
        Blocks& blocks, PendingText& text, std::string_view argument) const;
    void analyzeOptionalBlock(
        Blocks& blocks, PendingText& text, std::string_view argument, bool negated);
    void analyzeDynamicBlock(
        Blocks& blocks, PendingText& text, std::string_view argument, bool reversed);
    void analyzeIncludeBlock(
        Blocks& blocks, PendingText& pendingText, std::string_view content) const;

    // The visibility test of a conditional section. A null value never shows.
    bool checkIfOptionalIsVisible(const zval* value, std::string_view compare) const;

    // Rendering. Each step appends to `out`; `data` is the current element of
    // the innermost section, null at the top level.

    void _getResult(Blocks& blocks, Text& output, const zval* data);
    void _getResult(Blocks& blocks, std::string& output, const zval* data);
    // One block, through the dispatch table.
    void renderBlock(Block& block, Text& output, const zval* data);
    void _getResultVariable(MultiVariableBlock& block, Text& out, const zval* data) const;
    void _getResultAddslashes(const AddslashesBlock& block, Text& out, const zval* data) const;
    void _getResultHtmlentities(const HtmlentitiesBlock& block, Text& out, const zval* data) const;
    void _getResultHtmlspecialchars(
        const HtmlspecialcharsBlock& block, Text& out, const zval* data) const;
    void _getResultRawurlencode(const RawurlencodeBlock& block, Text& out, const zval* data) const;
    void _getResultOptional(OptionalBlock& block, Text& out, const zval* data, bool negated);
    void _getResultDynamic(DynamicBlock& block, Text& out, const zval* data, bool reversed);

    // Single steps for whoever works with parts of the engine; see given_members.cpp.

    static TagMatch matchInput(std::string_view tag);
    // The text from `offset` on without blanks around it; a text of blanks only
    // stays as it is.
    static String trim(std::string_view text, size_t offset);
    // Takes a reference apart, or throws what is wrong with it.
    ParsedArgument parseArgument(std::string_view argument) const;
    // The same, and looks a root path up: NOT_FOUND when there is no such value.
    VariableReference analyzeVariable(std::string_view argument) const;
    // The element that `path` leads to from `data`, as stored (borrowed); null
    // when there is none. A null `data` is the root, for a first key that is no
    // index; an empty path leads to `data` itself.
    const zval* findVariable(const Deque<String>& path, const zval* data) const;
    // The text of the value or key that `block` refers to, up to the value's
    // first NUL, released with efree(); empty when there is none.
    std::unique_ptr<char, void (*)(void*)> _getResultVariableStringValue(
        const VariableBlock& block, const zval* data) const;

    // The name of the file being analysed, for messages.
    const String& currentFile() const { return fileNames.back(); }

    // The tree, which it owns.
    Blocks blocks;
    // The dynamic sections open at the moment: those being parsed, later those being
    // rendered.
    mutable SectionStack dynamicStack;
    PHPInterface& phpInterface;
    Input input;
    bool stringMode;
    // The chain of files being analysed. The last is the current file, named in
    // every message; in string mode the first is the template's text itself.
    // Lent to the template of an included file while that is analysed.
    mutable LastingVector<String> fileNames;

private:
    const zval* findRootValue(PathText path) const { return walkPath(phpInterface, path, nullptr); }
    void reserveText(TextBlock& pending);
    bool analyzeReferences(
        Blocks& blocks, PendingText& pendingText, std::string_view content) const;
    template <class EscapedBlock>
    void analyzeEscapingBlock(
        Blocks& blocks, PendingText& text, std::string_view argument, Escaping escaping) const;
    String includedFile(std::string_view content) const;
    const zval* arrayAt(PathText path) const;
};

// The value under "num", which a section iterates in place of the one that holds it;
// else the value itself.
inline const zval* numOf(PHPInterface& data, const zval* value)
{
    const zval* num = data.hashFind("num", value);
    return num != nullptr ? num : value;
}

#endif
