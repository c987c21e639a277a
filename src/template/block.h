// The block tree: what analysis makes of a template and rendering works from. Plain
// data in the memory of the call; the only virtual operation is the destructor, and
// what a block does is chosen by its type. Pointers to PHP values point into the
// caller's user data, which outlives the tree, and are never released here.
#ifndef TEMPLATE_TEMPLATE_BLOCK_H
#define TEMPLATE_TEMPLATE_BLOCK_H

#include <cstdint>
#include <utility>

#include "data/section_key.h"
#include "engine/memory.h"
#include "engine/text.h"

class Block {
public:
    enum BlockType : uint32_t {
        VARIABLE = 0, // no block's type; to the parser: no closing tag is expected
        MULTI_VARIABLE = 1,
        TEXT = 2,
        INCLUDE = 3, // no block: the included blocks take its place
        OPTIONAL = 4,
        NOT_OPTIONAL = 5,
        DYNAMIC = 6,
        RDYNAMIC = 7,
        OPTIONAL_END = 8, // the closing tags end a section and leave no block
        DYNAMIC_END = 9,
        RDYNAMIC_END = 10,
        ADDSLASHES = 11,
        HTMLENTITIES = 12,
        HTMLSPECIALCHARS = 13,
        RAWURLENCODE = 14,
    };

    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;
    virtual ~Block() = default;

    const BlockType type;

protected:
    explicit Block(BlockType type) : type(type) {}
};

// A section's body as rendering has worked it out.
class Steps;

// The list of blocks being filled, or a section's body.
using Blocks = Vector<Owner<Block>>;

// Literal text, written to the output as it is. Never empty in a tree.
class TextBlock final : public Block {
public:
    TextBlock() : Block(TEXT) {}
    explicit TextBlock(Text&& text) : Block(TEXT), text(std::move(text)) {}

    Text text;
};

// Literal text, and text that analysis folded in, read since the last block.
using PendingText = Owner<TextBlock>;

// Base of the blocks that print one value of a dynamic section.
class VariableBlock : public Block {
public:
    // Name of the section that the reference starts from; empty: the innermost.
    String namespaceName;
    // The keys to follow from the section's element; empty: the element itself.
    Deque<String> path;
    // The section's current key is meant, not a value.
    bool isKey = false;

protected:
    explicit VariableBlock(BlockType type) : Block(type) {}
    VariableBlock(BlockType type, String&& namespaceName, Deque<String>&& path, bool isKey)
        : Block(type),
          namespaceName(std::move(namespaceName)),
          path(std::move(path)),
          isKey(isKey)
    {
    }
};

// A variable tag that depends on a section: the first of its references that
// yields a value is printed. The inherited members are working fields, in which
// rendering works the references out, each in its turn.
class MultiVariableBlock final : public VariableBlock {
public:
    // A tag with a default.
    MultiVariableBlock(const Vector<String>& variables, String&& defaultValue, String&& tagContent)
        : VariableBlock(MULTI_VARIABLE),
          variables(variables),
          defaultValue(std::move(defaultValue)),
          tagContent(std::move(tagContent)),
          hasDefaultValue(true)
    {
    }
    // A tag without one.
    MultiVariableBlock(const Vector<String>& variables, String&& tagContent)
        : MultiVariableBlock(variables, {}, std::move(tagContent))
    {
        hasDefaultValue = false;
    }

    // The references as written, in the order in which they are tried.
    Vector<String> variables;
    String defaultValue;
    // The whole content of the tag, as written.
    String tagContent;
    bool hasDefaultValue;
};

// The escaping tags differ in nothing but their type.
template <Block::BlockType TYPE>
class EscapingBlock final : public VariableBlock {
public:
    EscapingBlock(String&& namespaceName, Deque<String>&& path, bool isKey)
        : VariableBlock(TYPE, std::move(namespaceName), std::move(path), isKey)
    {
    }
};

using AddslashesBlock = EscapingBlock<Block::ADDSLASHES>;
using HtmlentitiesBlock = EscapingBlock<Block::HTMLENTITIES>;
using HtmlspecialcharsBlock = EscapingBlock<Block::HTMLSPECIALCHARS>;
using RawurlencodeBlock = EscapingBlock<Block::RAWURLENCODE>;

// Base of the two kinds of section.
class SubBlock : public Block {
public:
    // The section's body, owned.
    Blocks blocks;
    // The section's own variable, as in VariableBlock.
    String namespaceName;
    Deque<String> path;
    // In a dynamic section: the value found while analysing, borrowed; null when
    // the reference is resolved while rendering.
    const zval* data = nullptr;

protected:
    SubBlock(BlockType type, String&& namespaceName, Deque<String>&& path)
        : Block(type),
          namespaceName(std::move(namespaceName)),
          path(std::move(path))
    {
    }
};

class OptionalBlock final : public SubBlock {
public:
    // What decides whether the section shows.
    enum OPTIONAL_TYPE : uint32_t {
        ANALYZED = 0,      // decided while analysing: it shows
        CURRENT_VALUE = 1, // a value of a dynamic section's current element
        CURRENT_KEY = 2,   // a dynamic section's current key
    };

    OptionalBlock(String&& namespaceName, Deque<String>&& path, OPTIONAL_TYPE& optionalType,
        String&& compareValue, bool& negated)
        : SubBlock(static_cast<BlockType>(OPTIONAL + negated), std::move(namespaceName),
              std::move(path)),
          optionalType(optionalType),
          compareValue(std::move(compareValue))
    {
    }

    OPTIONAL_TYPE optionalType;
    // What the value or key is compared with; empty: it is tested for truth.
    String compareValue;
};

class DynamicBlock final : public SubBlock {
public:
    DynamicBlock(String&& name, String&& namespaceName, Deque<String>&& path, bool& reversed)
        : SubBlock(static_cast<BlockType>(DYNAMIC + reversed), std::move(namespaceName),
              std::move(path)),
          name(std::move(name))
    {
    }

    // What references in the body call this section; may be empty.
    String name;
    // The element being rendered: its key, and the element (borrowed).
    SectionKey currentKey;
    const zval* currentData = nullptr;
    // False: the variable was not found while analysing, nothing is rendered.
    bool isActive = true;
    // The body as rendering goes through it for each element, worked out when the
    // section is first rendered; in the memory of the call.
    const Steps* steps = nullptr;
};

#endif
