#include "module/php_interface.h"

#include <utility>

PHPInterface::PHPInterface(std::string fileName, const zval* userData)
    : fileName(std::move(fileName)), userData(userData), emptyData()
{
    if (userData == nullptr) {
        array_init(&emptyData);
        this->userData = &emptyData;
    }
}

const zval* PHPInterface::hashIndexFind(unsigned long index, const zval* array)
{
    if (array == nullptr) {
        return nullptr;
    }
    if (Z_TYPE_P(array) == IS_ARRAY) {
        return zend_hash_index_find(Z_ARRVAL_P(array), index);
    }
    if (Z_TYPE_P(array) == IS_OBJECT) {
        // Building the table can run user code: a lazy object is initialised.
        const zval* element = nullptr;
        engineCall.run([&] { element = zend_hash_index_find(Z_OBJPROP_P(array), index); });
        return element;
    }
    return nullptr;
}
