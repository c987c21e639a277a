// Repeated sections, while rendering. User code can run between two elements
// (printing an object does), so what is iterated is held meanwhile.
#include "data/held_table.h"
#include "data/rows_ahead.h"
#include "engine/stack.h"
#include "render/steps.h"
#include "template/error.h"

namespace {

// When so many elements have been rendered, room is made for all, as if they went
// on alike: a text that grows step by step is copied at each step.
constexpr size_t SAMPLE = 8;

void reserveForRest(Text& out, size_t before, size_t elements)
{
    const size_t average = (out.size() - before) / SAMPLE;
    const size_t expected = average + average / 8;
    const size_t spare = Text::spareRoom();
    const size_t left = elements - SAMPLE;
    if (left > 0) {
        out.reserve(expected < spare / left ? expected * left : spare);
    }
}

const Steps& stepsOf(Template& page, DynamicBlock& block)
{
    if (block.steps == nullptr) {
        Steps* steps = make<Steps>().release();
        // Not for each body within: that would move the list each time.
        steps->list.reserve(block.blocks.size() + 1);
        StepMaker(page, *steps).addBody(block.blocks);
        block.steps = steps;
    }
    return *block.steps;
}

void renderElements(Template& page, DynamicBlock& block, Text& out, HashTable* table, bool reversed)
{
    const Steps& steps = stepsOf(page, block);
    const RowsAhead ahead(table, reversed);
    const size_t before = out.size();
    size_t rendered = 0;
    const auto render = [&](zend_ulong number, zend_string* text, const zval* element) {
        EngineCall::current().checkTime();
        ahead.fetch(element);
        block.currentKey.assign(text, number);
        block.currentData = element;
        steps.render(page, out, element);
        if (UNEXPECTED(++rendered == SAMPLE)) {
            reserveForRest(out, before, zend_hash_num_elements(table));
        }
    };
    // The engine's loops are compiled in here, and need a table that stays as it
    // is, which a held one does.
    zend_ulong number;
    zend_string* text;
    zval* element;
    if (reversed) {
        ZEND_HASH_REVERSE_FOREACH_KEY_VAL(table, number, text, element) {
            render(number, text, element);
        }
        ZEND_HASH_FOREACH_END();
    } else {
        ZEND_HASH_FOREACH_KEY_VAL(table, number, text, element) {
            render(number, text, element);
        }
        ZEND_HASH_FOREACH_END();
    }
    if (rendered > 0) {
        block.currentKey.hold();
    }
}

}

void renderSection(Template& page, DynamicBlock& block, Text& out, const zval* value, bool reversed)
{
    // Reached through a PHP reference, an array found while analysing may have become
    // something else.
    if (value == nullptr || (block.data != nullptr && Z_TYPE_P(value) != IS_ARRAY)) {
        return;
    }
    if (UNEXPECTED(!Stack::hasRoom(Stack::LEVEL))) {
        throwTooDeep(page.currentFile());
    }
    {
        const HeldTable held(value);
        if (held.table() != nullptr && zend_hash_num_elements(held.table()) > 0) {
            const SectionStack::Opened opened(page.dynamicStack, block);
            renderElements(page, block, out, held.table(), reversed);
        }
    }
    // Getting at the table can run user code, and letting go of it destructors.
    EngineCall::current().leaveIfAbandoned();
}

void StepMaker::add(DynamicBlock& block)
{
    if (!block.isActive) {
        return;
    }
    Step* step = block.data != nullptr
        ? &addStep(Step::SECTION)
        : addReference(Step::SECTION, block.namespaceName, block.path);
    if (step != nullptr) {
        step->block = &block;
    }
}

void Template::_getResultDynamic(DynamicBlock& block, Text& out, const zval* data, bool)
{
    renderAlone(*this, out, data, [&](StepMaker& maker) { maker.add(block); });
}
