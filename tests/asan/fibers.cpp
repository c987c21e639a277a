// An extension that tells AddressSanitizer of fibers, loaded by `./dev test --asan`.

#include "fibers.h"

namespace {

zend_result start(int, int)
{
    fibers::watch();
    return SUCCESS;
}

zend_module_entry module = {STANDARD_MODULE_HEADER, "fibers", nullptr, start, nullptr, nullptr, nullptr, nullptr, "1",
    STANDARD_MODULE_PROPERTIES};

}

extern "C" ZEND_DLEXPORT zend_module_entry* get_module()
{
    return &module;
}
