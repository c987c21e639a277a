// Repeated sections, while rendering. User code can run between two elements
// (printing an object does), so what is iterated is held meanwhile.
#include "template/template.h"

namespace {

// A key as text: `text`, or the number if there is none. An integer is read as
// unsigned: key -1 has always come out as 18446744073709551615, and templates
// compare with it.
void assignKey(std::string& key, const zend_string* text, zend_ulong number)
{
    if (text != nullptr) {
        key.assign(ZSTR_VAL(text), ZSTR_LEN(text));
        return;
    }
    Digits digits;
    key.assign(decimal(number, digits));
}

// When so many elements have been rendered, room is made for all, as if they went
// on alike: a text that grows step by step is copied, and its memory is given back
// to the system and fetched again, at each call.
constexpr size_t SAMPLE = 8;

void foresee(EngineCall& call, std::string& out, size_t before, size_t elements)
{
    const size_t average = (out.size() - before) / SAMPLE;
    const size_t expected = average + average / 8;
    const size_t spare = call.spareRoom();
    const size_t left = elements - SAMPLE;
    if (left > 0) {
        call.reserve(out, expected < spare / left ? expected * left : spare);
    }
}

}

void Template::_getResultDynamic(DynamicBlock& block, std::string& out, const zval* data,
    bool reversed)
{
    const zval* value = block.isActive ? valueToIterate(block, data) : nullptr;
    if (value == nullptr) {
        return;
    }
    {
        const HeldTable held(call(), value);
        call().leaveIfAbandoned();
        if (held.table() != nullptr) {
            openSection(block);
            renderElements(block, out, held.table(), reversed);
            closeSection();
        }
    }
    // Letting go of the table can run destructors.
    call().leaveIfAbandoned();
}

// The array, or through "num" the object, that the section is about; null when
// there is none.
const zval* Template::valueToIterate(DynamicBlock& block, const zval* data) const
{
    if (block.data != nullptr) {
        // Reached through a PHP reference, it may have become something else.
        return Z_TYPE_P(block.data) == IS_ARRAY ? block.data : nullptr;
    }
    if (!block.sectionPath) {
        block.sectionPath.emplace(block.path);
    }
    const DynamicBlock* section = sectionOf(block.namespaceName, *block.sectionPath, data);
    if (section == nullptr) {
        return nullptr;
    }
    const zval* value = walkFrom(*section, block.namespaceName, *block.sectionPath, data);
    if (value == nullptr || Z_TYPE_P(value) != IS_ARRAY) {
        return nullptr;
    }
    const zval* num = findNum(value);
    return num != nullptr ? num : value;
}

void Template::renderElements(DynamicBlock& block, std::string& out, HashTable* table,
    bool reversed)
{
    const size_t before = out.size();
    size_t rendered = 0;
    const auto render = [&](zend_ulong number, const zend_string* text, const zval* element) {
        call().checkTime();
        assignKey(block.currentKey, text, number);
        block.currentData = element;
        _getResult(block.blocks, out, element);
        if (++rendered == SAMPLE) {
            foresee(call(), out, before, zend_hash_num_elements(table));
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
        } ZEND_HASH_FOREACH_END();
    } else {
        ZEND_HASH_FOREACH_KEY_VAL(table, number, text, element) {
            render(number, text, element);
        } ZEND_HASH_FOREACH_END();
    }
}
