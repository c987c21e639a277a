// The analysis driver: alternates between literal text and tags. Sections and
// included files recurse into it, so its depth is the template's nesting.
#include "template/template.h"

#include <utility>

#include "template/error.h"
#include "template/tag.h"

namespace {

// What a block costs outside the engine's allocator, roughly: two strings and a
// deque, which allocates also when it is empty.
constexpr size_t BLOCK_BYTES = 1024;
constexpr size_t TEXT_BLOCK_BYTES = 96;

// Most lists hold several blocks.
void add(Blocks& blocks, std::unique_ptr<Block> block)
{
    constexpr size_t SEVERAL = 8;
    if (blocks.capacity() == 0) {
        blocks.reserve(SEVERAL);
    }
    blocks.push_back(std::move(block));
}

// Names the tag that was met, not the one that was due.
std::string_view unexpectedClosing(Block::BlockType type)
{
    switch (type) {
    case Block::OPTIONAL_END:
        return "Unexpected closing optional tag in ";
    case Block::DYNAMIC_END:
        return "Unexpected closing dynamic tag in ";
    default:
        return "Unexpected closing rdynamic tag in ";
    }
}

}

Template::Template(std::string fileName, PHPInterface& phpInterface, bool stringMode)
    : phpInterface(phpInterface),
      input(fileName, stringMode, phpInterface.engineCall),
      stringMode(stringMode)
{
    fileNames.push_back(std::move(fileName));
}

void Template::analyzeTemplate()
{
    auto pending = std::make_unique<TextBlock>();
    reserveText(*pending);
    _analyzeTemplate(blocks, pending, Block::VARIABLE);
}

// Mostly the values that are folded in are hardly longer than their tags.
void Template::reserveText(TextBlock& pending)
{
    const size_t expected = input.expectedSize();
    call().reserve(pending.text, expected + expected / 8);
}

void Template::_analyzeTemplate(Blocks& blocks, PendingText& text, Block::BlockType closing)
{
    const NestingLevel level;
    checkDepth(level);
    while (!input.exhausted()) {
        call().checkTime();
        if (input.fillBufferTillMark(text->text, '{') && analyzeTag(blocks, text, closing)) {
            storeTextBlock(blocks, text);
            return;
        }
    }
    store(blocks, text, AFTERWARDS_END);
    if (closing != Block::VARIABLE) {
        throwError("Missing closing tag in ", currentFile());
    }
}

bool Template::analyzeTag(Blocks& blocks, PendingText& text, Block::BlockType closing)
{
    // A tag that the input's end cuts off is taken as it is.
    PassingText storage(call());
    const auto [argument, type] = matchTag(input.readTag(storage.text));
    switch (type) {
    case Block::MULTI_VARIABLE:
        analyzeVariableBlock(blocks, text, argument);
        return false;
    case Block::INCLUDE:
        analyzeIncludeBlock(blocks, text, argument);
        return false;
    case Block::OPTIONAL:
    case Block::NOT_OPTIONAL:
        analyzeOptionalBlock(blocks, text, argument, type == Block::NOT_OPTIONAL);
        return false;
    case Block::DYNAMIC:
    case Block::RDYNAMIC:
        analyzeDynamicBlock(blocks, text, argument, type == Block::RDYNAMIC);
        return false;
    case Block::ADDSLASHES:
        analyzeAddslashesBlock(blocks, text, argument);
        return false;
    case Block::HTMLENTITIES:
        analyzeHtmlentitiesBlock(blocks, text, argument);
        return false;
    case Block::HTMLSPECIALCHARS:
        analyzeHtmlspecialcharsBlock(blocks, text, argument);
        return false;
    case Block::RAWURLENCODE:
        analyzeRawurlencodeBlock(blocks, text, argument);
        return false;
    case Block::OPTIONAL_END:
    case Block::DYNAMIC_END:
    case Block::RDYNAMIC_END:
        if (closing != type) {
            throwError(unexpectedClosing(type), currentFile());
        }
        return true;
    default:
        return false;
    }
}

void Template::storeTextBlock(Blocks& blocks, PendingText& text) const
{
    store(blocks, text, AFTERWARDS_TEXT);
}

void Template::store(Blocks& blocks, PendingText& text, Afterwards afterwards) const
{
    constexpr size_t SHORT = 8 * 1024;
    const size_t size = text->text.size();
    if (size == 0) {
        return;
    }
    call().charge(TEXT_BLOCK_BYTES);
    auto fresh = std::make_unique<TextBlock>();
    if (afterwards == AFTERWARDS_TEXT && size <= SHORT) {
        // The tree gets a text of its own size, and the room that this one has
        // grown in goes to the next.
        call().charge(size);
        fresh->text.assign(text->text);
        fresh->text.swap(text->text);
        fresh->text.clear();
    }
    add(blocks, std::move(text));
    text = std::move(fresh);
}

void Template::addBlock(Blocks& blocks, std::unique_ptr<Block> block) const
{
    call().charge(BLOCK_BYTES);
    add(blocks, std::move(block));
}

void Template::throwTooDeep() const
{
    throwError("Template nesting is too deep in ", currentFile());
}
