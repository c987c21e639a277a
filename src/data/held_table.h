// What is iterated, held while it is: user code can run between two elements.
#ifndef TEMPLATE_DATA_HELD_TABLE_H
#define TEMPLATE_DATA_HELD_TABLE_H

#include "engine/call.h"

// Keeps an array, or the properties of an object, alive and unchanged while they
// are iterated: user code that writes to the array meanwhile gets a copy, and of
// an object a copy is iterated.
class HeldTable final {
public:
    // `value` is an array or an object; for anything else table() is null.
    explicit HeldTable(const zval* value);
    HeldTable(const HeldTable&) = delete;
    HeldTable& operator=(const HeldTable&) = delete;
    ~HeldTable();

    HashTable* table() const { return table_; }

private:
    void holdProperties(zend_object* object);

    EngineCall& call_;
    HashTable* table_ = nullptr;
    zval value_;
    zval properties_;
    zval slots_;
};

#endif
