#include "module/php_interface.h"

#include <utility>

PHPInterface::PHPInterface(String fileName, const zval* userData)
    : fileName(std::move(fileName)),
      userData(userData),
      emptyData()
{
    if (userData == nullptr) {
        this->userData = &emptyData;
        EngineCall::current().run([this] { array_init(&emptyData); });
    }
}

const zval* PHPInterface::hashIndexFind(unsigned long index, const zval* array)
{
    if (array == nullptr) {
        return nullptr;
    }
    if (EXPECTED(Z_TYPE_P(array) == IS_ARRAY)) {
        return zend_hash_index_find(Z_ARRVAL_P(array), index);
    }
    if (Z_TYPE_P(array) == IS_OBJECT) {
        // Building the table can run user code: a lazy object is initialised.
        const zval* element = nullptr;
        EngineCall::current().run(
            [&] { element = zend_hash_index_find(Z_OBJPROP_P(array), index); });
        return element;
    }
    return nullptr;
}
