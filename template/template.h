// One call of template(): analysis makes the block tree of a template, and
// rendering turns the tree into text. The members are spread over one source
// file for each kind of tag, in template/ (analysis) and render/ (rendering).
//
// Failures are std::runtime_error with a message for the template's author; a
// pending PHP exception or a fatal error leaves as CallAbandoned.
#ifndef TEMPLATE_TEMPLATE_TEMPLATE_H
#define TEMPLATE_TEMPLATE_TEMPLATE_H

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "input/input.h"
#include "module/php_interface.h"
#include "render/value_text.h"
#include "template/block.h"
#include "template/reference.h"

// The list of blocks being filled.
using Blocks = std::vector<std::unique_ptr<Block>>;
// Literal text, and text that analysis folded in, read since the last block.
using PendingText = std::unique_ptr<TextBlock>;

class ByteEscaper;

// What a tag is, and its text behind the keyword.
struct TagMatch {
    std::string argument;
    Block::BlockType type;
};

class Template final {
public:
    // `fileName` is opened at once, or in string mode is the template's text.
    // The user data is borrowed.
    Template(std::string fileName, PHPInterface& phpInterface, bool stringMode);
    Template(const Template&) = delete;
    Template& operator=(const Template&) = delete;

    // Builds the tree from the whole input.
    void analyzeTemplate();
    // Renders the tree. One caller at a time: rendering writes into the tree.
    std::string getResult();
    // The same as a new string of the engine's.
    EngineString getResultString();

    // Analysis. Each step appends to `blocks` and to the pending text.

    // Analyses input until its end, or until the closing tag of type `closing`;
    // VARIABLE stands for no section.
    void _analyzeTemplate(Blocks& blocks, PendingText& text, Block::BlockType closing);
    // Reads one tag and acts on it. True for the expected closing tag only.
    bool analyzeTag(Blocks& blocks, PendingText& text, Block::BlockType closing);
    static TagMatch matchInput(std::string_view tag);
    // The text from `offset` on without blanks around it; a text of blanks only
    // stays as it is.
    static std::string trim(std::string_view text, size_t offset);
    // Moves the pending text, unless empty, to the end of `blocks`.
    void storeTextBlock(Blocks& blocks, PendingText& text) const;

    void analyzeVariableBlock(Blocks& blocks, PendingText& pendingText,
        std::string_view content) const;
    void analyzeAddslashesBlock(Blocks& blocks, PendingText& text, std::string_view argument) const;
    void analyzeHtmlentitiesBlock(Blocks& blocks, PendingText& text,
        std::string_view argument) const;
    void analyzeHtmlspecialcharsBlock(Blocks& blocks, PendingText& text,
        std::string_view argument) const;
    void analyzeRawurlencodeBlock(Blocks& blocks, PendingText& text,
        std::string_view argument) const;
    void analyzeOptionalBlock(Blocks& blocks, PendingText& text, std::string_view argument,
        bool negated);
    void analyzeDynamicBlock(Blocks& blocks, PendingText& text, std::string_view argument,
        bool reversed);
    void analyzeIncludeBlock(Blocks& blocks, PendingText& pendingText,
        std::string_view content) const;

    // Takes a reference apart, or throws what is wrong with it.
    ParsedArgument parseArgument(std::string_view argument) const;
    // The same, and looks a root path up: NOT_FOUND when there is no such value.
    VariableReference analyzeVariable(std::string_view argument) const;

    // The visibility test of a conditional section. A null value never shows.
    bool checkIfOptionalIsVisible(const zval* value, std::string_view compare) const;

    // The element that `path` leads to from `data`, as stored (borrowed); null
    // when there is none. A null `data` is the root, for a first key that is no
    // index; an empty path leads to `data` itself.
    const zval* findVariable(const std::deque<std::string>& path, const zval* data) const;

    // Rendering. Each step appends to `out`; `data` is the current element of
    // the innermost section, null at the top level.

    void _getResult(Blocks& blocks, std::string& output, const zval* data);
    void _getResultVariable(MultiVariableBlock& block, std::string& out, const zval* data) const;
    void _getResultAddslashes(const AddslashesBlock& block, std::string& out,
        const zval* data) const;
    void _getResultHtmlentities(const HtmlentitiesBlock& block, std::string& out,
        const zval* data) const;
    void _getResultHtmlspecialchars(const HtmlspecialcharsBlock& block, std::string& out,
        const zval* data) const;
    void _getResultRawurlencode(const RawurlencodeBlock& block, std::string& out,
        const zval* data) const;
    void _getResultOptional(OptionalBlock& block, std::string& out, const zval* data, bool negated);
    void _getResultDynamic(DynamicBlock& block, std::string& out, const zval* data, bool reversed);

    // The text of the value or key that `block` refers to, up to the value's
    // first NUL, released with efree(); empty when there is none.
    std::unique_ptr<char, void (*)(void*)> _getResultVariableStringValue(
        const VariableBlock& block, const zval* data) const;

    // The tree, which it owns.
    Blocks blocks;
    // The dynamic sections open at the moment, outermost first, not owned:
    // those being parsed, later those being rendered.
    std::vector<const DynamicBlock*> dynamicStack;
    PHPInterface& phpInterface;
    Input input;
    bool stringMode;
    // The chain of files being analysed. The last is the current file, named in
    // every message; in string mode the first is the template's text itself.
    // Lent to the template of an included file while that is analysed.
    mutable std::vector<std::string> fileNames;

private:
    using EscapingFunction = zend_string* (*)(zend_string*);
    // For a function that, where the text allows it, comes to the same byte by byte.
    using BytesEscaper = const ByteEscaper& (*)(EngineCall&);

    EngineCall& call() const { return phpInterface.engineCall; }
    const std::string& currentFile() const { return fileNames.back(); }
    void checkDepth(const NestingLevel& level) const
    {
        if (UNEXPECTED(level.tooDeep())) {
            throwTooDeep();
        }
    }
    [[noreturn]] void throwTooDeep() const;
    void append(std::string& text, std::string_view piece) const { call().append(text, piece); }
    // What comes behind a text that is stored.
    enum Afterwards { AFTERWARDS_TEXT, AFTERWARDS_END };
    void store(Blocks& blocks, PendingText& text, Afterwards afterwards) const;
    void addBlock(Blocks& blocks, std::unique_ptr<Block> block) const;
    void reserveText(TextBlock& pending);

    // parseArgument() without copies, and the lookup that goes with it.
    ReferenceText parseReference(std::string_view argument) const;
    const zval* findRootValue(PathText path) const;
    const zval* findStep(std::string_view key, const zval* from) const;
    const zval* findNum(const zval* from) const;
    const zval* arrayAt(PathText path) const;

    bool analyzeReferences(Blocks& blocks, PendingText& pendingText,
        std::string_view content) const;
    template <class EscapedBlock>
    void analyzeEscapingBlock(Blocks& blocks, PendingText& text, std::string_view argument,
        EscapingFunction escape, BytesEscaper escapeBytes) const;
    std::string includedFile(std::string_view content) const;
    void analyzeIncludedFile(Blocks& blocks, PendingText& pendingText, std::string fileName) const;

    void openSection(const DynamicBlock& section);
    void closeSection();
    const DynamicBlock* findSection(std::string_view namespaceName) const;
    // The same, remembered in `path`; null also at the top level.
    const DynamicBlock* sectionOf(std::string_view namespaceName, SectionPath& path,
        const zval* data) const
    {
        if (UNEXPECTED(path.section == nullptr)) {
            path.section = findSection(namespaceName);
        }
        return data != nullptr ? path.section : nullptr;
    }
    const zval* walkFrom(const DynamicBlock& section, std::string_view namespaceName,
        const SectionPath& path, const zval* data) const
    {
        return path.path.walk(phpInterface, namespaceName.empty() ? data : section.currentData);
    }
    // Like any other text, a key ends at its first NUL.
    static std::string_view keyText(const DynamicBlock& section)
    {
        return section.currentKey.c_str();
    }
    void takeApartNext(MultiVariableBlock& block) const;
    void appendFirstOf(MultiVariableBlock& block, size_t next, std::string& out,
        const zval* data) const;
    bool appendCandidate(Candidate& candidate, std::string& out, const zval* data) const;
    bool appendValue(std::string& out, const zval* value) const;
    void appendEscaped(const VariableBlock& block, std::string& out, const zval* data,
        const ByteEscaper& escaper) const;
    void renderElements(DynamicBlock& block, std::string& out, HashTable* table, bool reversed);
    const zval* valueToIterate(DynamicBlock& block, const zval* data) const;

    // Of the first `registered_` sections of dynamicStack, the outermost of each
    // name; filled when many are open. The names are the sections' own.
    mutable std::unordered_map<std::string_view, const DynamicBlock*> outermost_;
    mutable size_t registered_ = 0;
};

#endif
