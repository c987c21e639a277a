#include "data/held_table.h"

namespace {

// The slot of an unset property.
zval unsetSlot = {};

// A copy of a property table. Declared properties stay slots, so that no path
// leads through them, but slots of the copy's own, in `slots`: the object's can
// go away with a lazy object's instance.
HashTable* snapshot(const HashTable* properties, HashTable* slots)
{
    HashTable* copy = zend_new_array(zend_hash_num_elements(properties));
    zend_ulong index;
    zend_string* key;
    zval* value;
    ZEND_HASH_FOREACH_KEY_VAL(properties, index, key, value) {
        zval held;
        if (Z_TYPE_P(value) != IS_INDIRECT) {
            ZVAL_COPY(&held, value);
        } else if (Z_TYPE_P(Z_INDIRECT_P(value)) == IS_UNDEF) {
            ZVAL_INDIRECT(&held, &unsetSlot);
        } else {
            Z_TRY_ADDREF_P(Z_INDIRECT_P(value));
            // Made large enough before, the table of slots does not move.
            ZVAL_INDIRECT(&held, zend_hash_next_index_insert_new(slots, Z_INDIRECT_P(value)));
        }
        if (key != nullptr) {
            zend_hash_add_new(copy, key, &held);
        } else {
            zend_hash_index_add_new(copy, index, &held);
        }
    }
    ZEND_HASH_FOREACH_END();
    return copy;
}

}

HeldTable::HeldTable(const zval* value) : call_(EngineCall::current())
{
    ZVAL_UNDEF(&value_);
    ZVAL_UNDEF(&properties_);
    ZVAL_UNDEF(&slots_);
    if (EXPECTED(Z_TYPE_P(value) == IS_ARRAY)) {
        ZVAL_COPY(&value_, value);
        table_ = Z_ARRVAL_P(value);
    } else if (Z_TYPE_P(value) == IS_OBJECT) {
        ZVAL_COPY(&value_, value);
        call_.attempt([&] { holdProperties(Z_OBJ(value_)); });
    }
}

// Holding the table itself would not do: an object that is written to meanwhile
// would go on with a copy of it, and a copy is cut off from the declared
// properties, for good.
void HeldTable::holdProperties(zend_object* object)
{
    const HashTable* properties = object->handlers->get_properties(object);
    ZVAL_ARR(&slots_, zend_new_array(zend_hash_num_elements(properties)));
    ZVAL_ARR(&properties_, snapshot(properties, Z_ARRVAL(slots_)));
    table_ = Z_ARRVAL(properties_);
}

HeldTable::~HeldTable()
{
    // Mostly others hold the array as well, as they did before.
    if (EXPECTED(Z_TYPE(properties_) == IS_UNDEF && Z_TYPE(value_) != IS_UNDEF
            && (!Z_REFCOUNTED(value_) || Z_REFCOUNT(value_) > 1))) {
        Z_TRY_DELREF(value_);
        return;
    }
    // Releasing can run destructors, which a fatal error has put an end to.
    if (!call_.fatal()) {
        call_.attempt([&] {
            zval_ptr_dtor(&properties_);
            zval_ptr_dtor(&slots_);
            zval_ptr_dtor(&value_);
        });
    }
}
