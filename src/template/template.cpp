// The analysis driver: alternates between literal text and tags. Sections and
// included files recurse into it, so its depth is the template's nesting.
#include "template/template.h"

#include <utility>

#include "engine/stack.h"
#include "template/error.h"
#include "template/tag.h"

namespace {

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

Template::Template(String fileName, PHPInterface& phpInterface, bool stringMode)
    : phpInterface(phpInterface),
      input(fileName, stringMode),
      stringMode(stringMode)
{
    fileNames.push_back(std::move(fileName));
}

void Template::analyzeTemplate()
{
    PendingText pending = make<TextBlock>();
    reserveText(*pending);
    _analyzeTemplate(blocks, pending, Block::VARIABLE);
}

// Mostly the values that are folded in are hardly longer than their tags.
void Template::reserveText(TextBlock& pending)
{
    const size_t expected = input.readAhead();
    pending.text.reserve(expected + expected / 8);
}

void Template::_analyzeTemplate(Blocks& blocks, PendingText& text, Block::BlockType closing)
{
    if (UNEXPECTED(!Stack::hasRoom(Stack::LEVEL))) {
        throwTooDeep(currentFile());
    }
    while (!input.exhausted()) {
        EngineCall::current().checkTime();
        if (input.fillBufferTillMark(text->text, '{') && analyzeTag(blocks, text, closing)) {
            storeTextBlock(blocks, text);
            return;
        }
    }
    storeTextBlock(blocks, text);
    if (closing != Block::VARIABLE) {
        throwError("Missing closing tag in ", currentFile());
    }
}

bool Template::analyzeTag(Blocks& blocks, PendingText& text, Block::BlockType closing)
{
    // A tag that the input's end cuts off is taken as it is.
    Text storage;
    const auto [argument, type] = matchTag(input.readTag(storage));
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

// Mostly the tree gets a copy of its own size, and the room that the text has grown
// in goes to the next one. What is long is moved, and so is what nothing follows: the
// text of a page without sections becomes its result.
void Template::storeTextBlock(Blocks& blocks, PendingText& text) const
{
    constexpr size_t LONG = 8 * 1024;
    const std::string_view piece = text->text;
    if (piece.empty()) {
        return;
    }
    if (piece.size() > LONG || (fileNames.size() == 1 && input.atEnd())) {
        blocks.push_back(std::move(text));
        text = make<TextBlock>();
        return;
    }
    auto* copy = static_cast<char*>(EngineCall::current().memory->allocate(piece.size()));
    blocks.push_back(make<TextBlock>(Text({copy, piece.copy(copy, piece.size())})));
    text->text.clear();
}
