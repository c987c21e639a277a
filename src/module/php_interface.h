// The user data of one call of template(), and the single-step lookups from
// which every variable reference is resolved.
#ifndef TEMPLATE_MODULE_PHP_INTERFACE_H
#define TEMPLATE_MODULE_PHP_INTERFACE_H

#include <string_view>

#include "engine/memory.h"

class PHPInterface final {
public:
    // `userData` is borrowed and must outlive the object; null stands for an
    // empty array. `fileName` is the first argument of template(), NULs kept.
    PHPInterface(String fileName, const zval* userData);
    PHPInterface(const PHPInterface&) = delete;
    PHPInterface& operator=(const PHPInterface&) = delete;
    ~PHPInterface() { zval_ptr_dtor(&emptyData); }

    // The element of `array` under the string `key` (whole length, NULs
    // included), as stored; null when there is none or `array` is no array.
    // A null `array` means the user data.
    const zval* hashFind(std::string_view key, const zval* array) const
    {
        const zval* searched = array != nullptr ? array : userData;
        // A list has no such keys.
        if (Z_TYPE_P(searched) != IS_ARRAY || HT_IS_PACKED(Z_ARRVAL_P(searched))) {
            return nullptr;
        }
        return zend_hash_str_find(Z_ARRVAL_P(searched), key.data(), key.size());
    }

    // The element of an array, or of an object's property table, under the
    // integer `index`, as stored; null when there is none. Unlike hashFind(), a
    // null `array` finds nothing: a path from the top cannot begin with an index.
    const zval* hashIndexFind(unsigned long index, const zval* array);

    String fileName;
    const zval* userData;
    zval emptyData;
};

#endif
