// An extension for a PHP that runs under AddressSanitizer or valgrind, loaded by tools/lib/checked.sh.

#include <cstdlib>

extern "C" {
#include <php.h>
#include <Zend/zend_constants.h>
}

#ifdef WITH_SANITIZER
#include "fibers.h"
#endif

namespace {

// Objects that hold each other are left lying at the end of a request, and would be taken for a leak;
// only a debug build of PHP collects them. It does so before what is left is torn apart, a moment that no
// extension is told of, but the object that was made last: it is the first to go.
zend_object last;
zend_object_handlers lastHandlers;

void collect(zend_object* object)
{
    zend_object_std_dtor(object);
    if (!CG(unclean_shutdown))
        zend_gc_collect_cycles();
}

zend_result end(int, int)
{
    EG(flags) |= EG_FLAGS_OBJECT_STORE_NO_REUSE;
    last = {};
    zend_object_std_init(&last, zend_standard_class_def);
    last.handlers = &lastHandlers;
    return SUCCESS;
}

// Valgrind cannot deliver the signal of a time limit to a stack that has just grown: it grows here.
[[maybe_unused, gnu::noinline]] char growStack(int pages)
{
    volatile char page[4096];
    page[0] = pages > 0 ? growStack(pages - 1) : 0;
    return page[0];
}

zend_result start(int, int)
{
    lastHandlers = std_object_handlers;
    lastHandlers.free_obj = collect;

    // What PHP starts as PHP_BINARY is to be checked too; what else it starts is not to be sanitized.
    auto* binary = static_cast<zend_constant*>(zend_hash_str_find_ptr(EG(zend_constants), ZEND_STRL("PHP_BINARY")));
    ZVAL_STR(&binary->value, zend_string_init_interned(ZEND_STRL(CHECKED_PHP), true));
    unsetenv("LD_PRELOAD");
#ifdef WITH_SANITIZER
    fibers::watch();
#else
    growStack(1500);
#endif
    return SUCCESS;
}

zend_module_entry module = {STANDARD_MODULE_HEADER, "checked", nullptr, start, nullptr, nullptr, end, nullptr, "1",
    STANDARD_MODULE_PROPERTIES};

}

extern "C" ZEND_DLEXPORT zend_module_entry* get_module()
{
    return &module;
}
