#include "engine/call.h"

bool runGuarded(void (*body)(void*), void* argument) noexcept
{
    // The only local that is written between setjmp and longjmp.
    volatile bool ended = true;
    zend_try
    {
        body(argument);
    }
    zend_catch
    {
        ended = false;
    }
    zend_end_try();
    return ended;
}

namespace {

// Null, or a fatal error, when the memory limit forbids it.
void* allocateWithinLimit(size_t size)
{
#ifdef ZEND_HAS_OOM
    return femalloc(size, true);
#else
    return emalloc(size);
#endif
}

}

void* EngineCall::allocate(size_t size)
{
    void* block = nullptr;
    attempt([&] { block = allocateWithinLimit(size); });
    if (UNEXPECTED(block == nullptr) && !fatal_ && !outOfMemory()) {
        // The limit has been passed and its error is out already: this is what
        // runs at shutdown. How much more is too much, PHP must say.
        attempt([&] { block = emalloc(size); });
    }
    if (UNEXPECTED(fatal_ || block == nullptr || outOfMemory())) {
        if (block != nullptr) {
            efree(block);
        }
        throw CallAbandoned();
    }
    return block;
}

void EngineCall::ensureRoom(size_t bytes)
{
#ifdef ZEND_HAS_OOM
    // What is smaller cannot reach twice the limit.
    constexpr size_t SMALL = 256 * 1024;
    if (bytes > SMALL) {
        efree(allocate(bytes));
    }
#else
    (void) bytes;
#endif
}

void EngineCall::interrupted()
{
    if (zend_atomic_bool_load_ex(&EG(timed_out))) {
        run([] { zend_timeout(); });
    }
    leaveIfAbandoned();
}
