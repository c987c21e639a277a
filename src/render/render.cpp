// The walker: takes a list of blocks in order and hands each to the renderer of
// its type.
#include <algorithm>
#include <array>
#include <functional>
#include <typeinfo>
#include <utility>
#include <vector>

#include "engine/stack.h"
#include "template/error.h"
#include "template/template.h"

namespace {

using Handler = std::function<void(Template&, Block&, Text&, const zval*)>;

// A checked cast to the very class, for classes that have none below them; much
// cheaper than the runtime's general one.
template <class Kind>
Kind& castTo(Block& block)
{
    if (typeid(block) != typeid(Kind)) {
        throw std::bad_cast();
    }
    return static_cast<Kind&>(block);
}

// The handler of a type: a member that renders blocks of a class.
template <class Kind, auto RENDER, auto... FLAG>
Handler handler()
{
    return [](Template& self, Block& block, Text& out, const zval* data) {
        (self.*RENDER)(castTo<Kind>(block), out, data, FLAG...);
    };
}

// The dispatch table, sorted by type, and for each type up to the last one the
// row at which a binary search for it would end.
class RenderTable final {
public:
    explicit RenderTable(std::vector<std::pair<Block::BlockType, Handler>> handlers)
        : rows_(std::move(handlers))
    {
        std::sort(rows_.begin(), rows_.end(),
            [](const auto& left, const auto& right) { return left.first < right.first; });
        for (size_t type = 0; type < found_.size(); ++type) {
            found_[type] = &std::lower_bound(
                rows_.begin(), rows_.end(), type, [](const auto& row, size_t wanted) {
                    return row.first < wanted;
                })->second;
        }
    }

    // The handler of the first row whose type is not less than `type`; null when
    // there is none. A type without a row thus gets the next one's handler, whose
    // checked cast refuses the block: a block of a foreign type is an error,
    // never silently nothing.
    const Handler* find(Block::BlockType type) const
    {
        return type < found_.size() ? found_[type] : nullptr;
    }

private:
    std::vector<std::pair<Block::BlockType, Handler>> rows_;
    std::array<const Handler*, Block::RAWURLENCODE + 1> found_;
};

RenderTable buildRenderTable()
{
    using T = Template;
    return RenderTable({
        {Block::TEXT,
            [](Template&, Block& block, Text& out, const zval*) {
                out.append(castTo<TextBlock>(block).text);
            }},
        {Block::OPTIONAL, handler<OptionalBlock, &T::_getResultOptional, false>()},
        {Block::NOT_OPTIONAL, handler<OptionalBlock, &T::_getResultOptional, true>()},
        {Block::DYNAMIC, handler<DynamicBlock, &T::_getResultDynamic, false>()},
        {Block::RDYNAMIC, handler<DynamicBlock, &T::_getResultDynamic, true>()},
        {Block::MULTI_VARIABLE, handler<MultiVariableBlock, &T::_getResultVariable>()},
        {Block::ADDSLASHES, handler<AddslashesBlock, &T::_getResultAddslashes>()},
        {Block::HTMLENTITIES, handler<HtmlentitiesBlock, &T::_getResultHtmlentities>()},
        {Block::HTMLSPECIALCHARS, handler<HtmlspecialcharsBlock, &T::_getResultHtmlspecialchars>()},
        {Block::RAWURLENCODE, handler<RawurlencodeBlock, &T::_getResultRawurlencode>()},
    });
}

}

EngineString Template::getResultString()
{
    // Without sections analysis has done all there is to do.
    if (blocks.size() == 1 && blocks.front()->type == Block::TEXT) {
        return castTo<TextBlock>(*blocks.front()).text.release();
    }
    size_t textSize = 0;
    for (const Owner<Block>& block : blocks) {
        if (block->type == Block::TEXT) {
            textSize += castTo<TextBlock>(*block).text.size();
        }
    }
    Text result;
    result.reserve(textSize + textSize / 4);
    _getResult(blocks, result, nullptr);
    return result.release();
}

void Template::_getResult(Blocks& blocks, Text& output, const zval* data)
{
    if (UNEXPECTED(!Stack::hasRoom(Stack::LEVEL))) {
        throwTooDeep(currentFile());
    }
    for (const Owner<Block>& block : blocks) {
        EngineCall::current().checkTime();
        renderBlock(*block, output, data);
    }
}

void Template::renderBlock(Block& block, Text& output, const zval* data)
{
    static const RenderTable table = buildRenderTable();
    if (const Handler* handler = table.find(block.type)) {
        (*handler)(*this, block, output, data);
    }
}
