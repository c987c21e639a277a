#include "module/engine.h"

#include <algorithm>

#ifdef __GLIBC__
#include <malloc.h>
#endif

bool runGuarded(void (*body)(void*), void* argument) noexcept
{
    // The only local that is written between setjmp and longjmp.
    volatile bool ended = true;
    zend_try {
        body(argument);
    } zend_catch {
        ended = false;
    } zend_end_try();
    return ended;
}

namespace {

// A call that has taken this much gives it back to the system when it ends.
constexpr size_t LARGE_CALL = 8 * 1024 * 1024;

// Once it has seen large blocks, the C library keeps tens of megabytes of freed
// ones for later, beside what PHP's limit knows of.
void giveBackToSystem()
{
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

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

EngineCall::~EngineCall()
{
    for (const auto& [block, size] : ballast_) {
        efree(block);
    }
    if (UNEXPECTED(covered_ > LARGE_CALL)) {
        giveBackToSystem();
    }
}

void EngineCall::interrupted()
{
    if (zend_atomic_bool_load_ex(&EG(timed_out))) {
        run([] { zend_timeout(); });
    }
    leaveIfAbandoned();
}

void EngineCall::grow(std::string& text, size_t more)
{
    // Doubling copies least; a large text grows by half, so that the old and
    // the new one together stay below three times what is in them.
    constexpr size_t SMALL = 256;
    constexpr size_t LARGE = 1024 * 1024;
    const size_t held = text.capacity();
    const size_t grown = held < LARGE ? held * 2 : held + held / 2;
    const size_t capacity = std::max({text.size() + more, grown, SMALL});
    charge(capacity);
    {
        // reserve() on the text itself would round up to a doubling.
        std::string larger;
        larger.reserve(capacity);
        larger.append(text);
        text.swap(larger);
    }
    discharge(held);
    if (UNEXPECTED(held > LARGE_CALL / 2)) {
        giveBackToSystem();
    }
}

size_t EngineCall::spareRoom()
{
    constexpr size_t MOST = 64 * 1024 * 1024;
    const auto limit = static_cast<size_t>(PG(memory_limit));
    const size_t used = zend_memory_usage(true);
    return std::min(MOST, limit > used ? (limit - used) / 4 : 0);
}

void EngineCall::cover()
{
    const size_t size = std::max(outside_ - covered_, FREE_BYTES);
    ballast_.reserve(ballast_.size() + 1);
    void* block = nullptr;
    attempt([&] { block = allocateWithinLimit(size); });
    leaveIfAbandoned();
    if (block == nullptr) {
        // The limit has been passed and its error is out already: this is what
        // runs at shutdown. How much more is too much, PHP must say.
        attempt([&] { block = emalloc(size); });
    }
    if (block != nullptr) {
        ballast_.emplace_back(block, size);
        covered_ += size;
    }
    leaveIfAbandoned();
}

void EngineCall::ensureRoom(size_t bytes)
{
#ifdef ZEND_HAS_OOM
    if (bytes > FREE_BYTES) {
        run([&] {
            if (void* block = allocateWithinLimit(bytes)) {
                efree(block);
            }
        });
    }
#else
    (void) bytes;
#endif
}

void EngineCall::dischargeTo(size_t before)
{
    outside_ = std::min(outside_, before);
    while (!ballast_.empty() && covered_ - ballast_.back().second >= outside_ + FREE_BYTES) {
        covered_ -= ballast_.back().second;
        efree(ballast_.back().first);
        ballast_.pop_back();
    }
}

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
    } ZEND_HASH_FOREACH_END();
    return copy;
}

}

HeldTable::HeldTable(EngineCall& call, const zval* value) : call_(call)
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
    // Releasing can run destructors, which a fatal error has put an end to.
    if (!call_.fatal()) {
        call_.attempt([&] {
            zval_ptr_dtor(&properties_);
            zval_ptr_dtor(&slots_);
            zval_ptr_dtor(&value_);
        });
    }
}
