// The walker: takes a list of blocks in order and hands each to the renderer of
// its type. Sections call it again for their bodies.
#include <algorithm>
#include <array>
#include <functional>
#include <typeinfo>
#include <utility>

#include "template/template.h"

namespace {

using Handler = std::function<void(Template&, Block&, std::string&, const zval*)>;

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

// The dispatch table, sorted by type, and for each type up to the last one the
// row at which a binary search for it would end.
class RenderTable {
public:
    explicit RenderTable(std::vector<std::pair<Block::BlockType, Handler>> handlers)
        : rows_(std::move(handlers))
    {
        std::sort(rows_.begin(), rows_.end(),
            [](const auto& left, const auto& right) { return left.first < right.first; });
        for (size_t type = 0; type < found_.size(); ++type) {
            found_[type] = &std::lower_bound(rows_.begin(), rows_.end(), type,
                [](const auto& row, size_t wanted) { return row.first < wanted; })->second;
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
    return RenderTable({
        {Block::TEXT,
            [](Template& self, Block& block, std::string& out, const zval*) {
                self.phpInterface.engineCall.append(out, castTo<TextBlock>(block).text);
            }},
        {Block::OPTIONAL,
            [](Template& self, Block& block, std::string& out, const zval* data) {
                self._getResultOptional(castTo<OptionalBlock>(block), out, data, false);
            }},
        {Block::NOT_OPTIONAL,
            [](Template& self, Block& block, std::string& out, const zval* data) {
                self._getResultOptional(castTo<OptionalBlock>(block), out, data, true);
            }},
        {Block::DYNAMIC,
            [](Template& self, Block& block, std::string& out, const zval* data) {
                self._getResultDynamic(castTo<DynamicBlock>(block), out, data, false);
            }},
        {Block::RDYNAMIC,
            [](Template& self, Block& block, std::string& out, const zval* data) {
                self._getResultDynamic(castTo<DynamicBlock>(block), out, data, true);
            }},
        {Block::MULTI_VARIABLE,
            [](Template& self, Block& block, std::string& out, const zval* data) {
                self._getResultVariable(castTo<MultiVariableBlock>(block), out, data);
            }},
        {Block::ADDSLASHES,
            [](Template& self, Block& block, std::string& out, const zval* data) {
                self._getResultAddslashes(castTo<AddslashesBlock>(block), out, data);
            }},
        {Block::HTMLENTITIES,
            [](Template& self, Block& block, std::string& out, const zval* data) {
                self._getResultHtmlentities(castTo<HtmlentitiesBlock>(block), out, data);
            }},
        {Block::HTMLSPECIALCHARS,
            [](Template& self, Block& block, std::string& out, const zval* data) {
                self._getResultHtmlspecialchars(castTo<HtmlspecialcharsBlock>(block), out, data);
            }},
        {Block::RAWURLENCODE,
            [](Template& self, Block& block, std::string& out, const zval* data) {
                self._getResultRawurlencode(castTo<RawurlencodeBlock>(block), out, data);
            }},
    });
}

}

std::string Template::getResult()
{
    size_t textSize = 0;
    for (const std::unique_ptr<Block>& block : blocks) {
        if (block->type == Block::TEXT) {
            textSize += castTo<TextBlock>(*block).text.size();
        }
    }
    std::string result;
    call().reserve(result, textSize + textSize / 4);
    _getResult(blocks, result, nullptr);
    return result;
}

EngineString Template::getResultString()
{
    const auto copy = [this](std::string_view text) {
        call().ensureRoom(text.size());
        return call().makeString(
            [text] { return zend_string_init(text.data(), text.size(), false); });
    };
    // Without sections analysis has done all there is to do.
    if (blocks.size() == 1 && blocks.front()->type == Block::TEXT) {
        return copy(castTo<TextBlock>(*blocks.front()).text);
    }
    return copy(getResult());
}

void Template::_getResult(Blocks& blocks, std::string& output, const zval* data)
{
    static const RenderTable table = buildRenderTable();
    const NestingLevel level;
    checkDepth(level);
    // Rendered once only, a long body may still take long: a block may compare a
    // large value. Asking at each block would be 2 % of a table's instructions.
    constexpr ptrdiff_t BETWEEN_CHECKS = 32;
    for (auto block = blocks.begin(); block != blocks.end();) {
        call().checkTime();
        const auto pause = block + std::min(BETWEEN_CHECKS, blocks.end() - block);
        for (; block != pause; ++block) {
            if (const Handler* handler = table.find((*block)->type)) {
                (*handler)(*this, **block, output, data);
            }
        }
    }
}
