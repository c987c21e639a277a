// The engine's side of a call of template(): the ways out of it that are not
// C++ exceptions (a pending PHP exception, a fatal error), its limits on time,
// memory and stack, and small owners of engine values.
#ifndef TEMPLATE_MODULE_ENGINE_H
#define TEMPLATE_MODULE_ENGINE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "module/engine_headers.h"

// Thrown when the call is over but has nothing to say of its own: a PHP
// exception is pending, or a fatal error is on its way out. Deliberately no
// std::exception, so that no handler of failures takes it for one.
struct CallAbandoned final {};

// Owns one reference to an engine string; may be empty.
class EngineString final {
public:
    EngineString() = default;
    explicit EngineString(zend_string* owned) : string_(owned) {}
    EngineString(EngineString&& other) noexcept : string_(std::exchange(other.string_, nullptr)) {}
    EngineString& operator=(EngineString&& other) noexcept
    {
        std::swap(string_, other.string_);
        return *this;
    }
    ~EngineString()
    {
        if (string_ != nullptr) {
            zend_string_release(string_);
        }
    }

    zend_string* get() const { return string_; }
    zend_string* release() { return std::exchange(string_, nullptr); }
    // The bytes up to the first NUL: what the system prints of a PHP string.
    std::string_view text() const { return {ZSTR_VAL(string_), std::strlen(ZSTR_VAL(string_))}; }

private:
    zend_string* string_ = nullptr;
};

// Copies up to SHORT_TEXT bytes and returns the end of the copy: most pieces of a
// page are short, and calling memcpy() for each costs more than the copying.
constexpr size_t SHORT_TEXT = 32;
inline char* copyShort(std::string_view piece, char* to)
{
    const char* from = piece.data();
    const size_t size = piece.size();
    // The two halves may overlap: both are read before either is written.
    const auto copyHalves = [&](auto half) {
        auto last = half;
        std::memcpy(&half, from, sizeof half);
        std::memcpy(&last, from + size - sizeof last, sizeof last);
        std::memcpy(to, &half, sizeof half);
        std::memcpy(to + size - sizeof last, &last, sizeof last);
    };
    if (size >= 16) {
        copyHalves(std::array<uint64_t, 2>{});
    } else if (size >= 8) {
        copyHalves(uint64_t{});
    } else if (size >= 4) {
        copyHalves(uint32_t{});
    } else if (size >= 2) {
        copyHalves(uint16_t{});
    } else if (size == 1) {
        *to = *from;
    }
    return to + size;
}

// Runs `body(argument)`, which must be free of C++ objects that a longjmp would
// skip. True when it ended, false when a fatal error (a bailout) cut it off.
bool runGuarded(void (*body)(void*), void* argument) noexcept;

// What one call of template() shares with the engine. One per call, owned by
// the PHPInterface, and lent to everything that runs inside the call.
class EngineCall final {
public:
    EngineCall() = default;
    EngineCall(const EngineCall&) = delete;
    EngineCall& operator=(const EngineCall&) = delete;
    ~EngineCall();

    // Runs engine code that may call user code or allocate without bound.
    // Throws CallAbandoned when a fatal error cut it off, or when it left a PHP
    // exception behind. The body itself must not throw.
    template <class Body>
    void run(Body body)
    {
        attempt(body);
        leaveIfAbandoned();
    }

    // The same for engine code that makes a string.
    template <class Make>
    EngineString makeString(Make make)
    {
        zend_string* made = nullptr;
        attempt([&] { made = make(); });
        EngineString owned(made);
        leaveIfAbandoned();
        return owned;
    }

    // The same for destructors, which must not throw: what happened is kept for
    // the next leaveIfAbandoned().
    template <class Body>
    void attempt(Body body) noexcept
    {
        if (!runGuarded([](void* argument) { (*static_cast<Body*>(argument))(); }, &body)) {
            fatal_ = true;
        }
    }

    // Throws CallAbandoned when a fatal error or a PHP exception is under way.
    void leaveIfAbandoned() const
    {
        if (UNEXPECTED(fatal_ || EG(exception) != nullptr || outOfMemory())) {
            throw CallAbandoned();
        }
    }

    // The memory limit has been passed, and PHP is going to say so when the call
    // is over. (An older engine does not wait: there it is a fatal error at once.)
    static bool outOfMemory()
    {
#ifdef ZEND_HAS_OOM
        return UNEXPECTED(EG(delayed_oom).state == ZEND_OOM_STATE_PENDING);
#else
        return false;
#endif
    }

    // To be called before engine code that will allocate many times what it is
    // given: an engine that lets the memory limit be passed for a while kills the
    // process at twice the limit. Ends in PHP's own fatal error instead.
    void ensureRoom(size_t bytes);

    // A fatal error came up inside the call. Engine values that could run user
    // code when they are released are then left to the end of the request.
    bool fatal() const { return fatal_; }

    // To be called in every loop that a template can make long: ends the call
    // when the engine's time limit has passed.
    void checkTime()
    {
        if (UNEXPECTED(zend_atomic_bool_load_ex(&EG(vm_interrupt)))) {
            interrupted();
        }
    }

    // Appends `piece` to `text`; what the text grows by is charged to PHP's
    // memory limit first. `text` must have been filled through here only.
    void append(std::string& text, std::string_view piece)
    {
        write(text, piece.size(), [piece](char* to) {
            if (piece.size() <= SHORT_TEXT) {
                return copyShort(piece, to);
            }
            std::memcpy(to, piece.data(), piece.size());
            return to + piece.size();
        });
    }

    // Appends what `writer` writes, which gets the place to write to, with room
    // for `most` bytes, and returns the end of what it wrote.
    template <class Writer>
    void write(std::string& text, size_t most, Writer writer)
    {
        makeRoom(text, most);
        const size_t before = text.size();
        // Spares the code and the registers of growing once more.
        ZEND_ASSUME(text.capacity() >= before + most);
        text.resize_and_overwrite(before + most,
            [&](char* begin, size_t) { return writer(begin + before) - begin; });
    }

    // Makes room for `bytes` more at once.
    void reserve(std::string& text, size_t bytes) { makeRoom(text, bytes); }
    // How much may be reserved on a guess: should it be wrong, the memory limit
    // leaves enough for the rest.
    static size_t spareRoom();

    // Charges memory outside the engine's allocator to PHP's memory limit, so
    // that a template cannot outgrow it; ends in PHP's own fatal error.
    void charge(size_t bytes)
    {
        outside_ += bytes;
        if (UNEXPECTED(outside_ > covered_)) {
            cover();
        }
    }
    void discharge(size_t bytes) { outside_ -= bytes < outside_ ? bytes : outside_; }
    size_t charged() const { return outside_; }
    // Takes back what was charged since charged() returned `before`.
    void dischargeTo(size_t before);

private:
    void makeRoom(std::string& text, size_t more)
    {
        if (UNEXPECTED(text.capacity() - text.size() < more)) {
            grow(text, more);
        }
    }

    void interrupted();
    void grow(std::string& text, size_t more);
    void cover();

    // Small calls are not worth an allocation: this much goes uncharged.
    static constexpr size_t FREE_BYTES = 256 * 1024;

    size_t outside_ = 0;
    size_t covered_ = FREE_BYTES;
    // Never written to, so they cost address space and the limit, not memory.
    std::vector<std::pair<void*, size_t>> ballast_;
    bool fatal_ = false;
};

// A text that goes away before the call ends, and gives back what it was charged.
class PassingText final {
public:
    explicit PassingText(EngineCall& call) : call_(call) {}
    PassingText(const PassingText&) = delete;
    PassingText& operator=(const PassingText&) = delete;
    // Growing charges what is more than an empty string has room for.
    ~PassingText() { call_.discharge(text.capacity() - std::string().capacity()); }

    std::string text;

private:
    EngineCall& call_;
};

// One level of nesting: a section's body or an included file, in either phase,
// or a call as a whole, which user code can make inside of another.
class NestingLevel final {
public:
    // Calls count for more than the levels inside of them, as they take more of
    // the stack, PHP's own share included.
    enum Weight : unsigned { NONE = 0, INNER = 1, CALL = 16 };

    explicit NestingLevel(Weight weight = INNER) : counted_(stackLimit() ? NONE : weight)
    {
        depth_ += counted_;
    }
    NestingLevel(const NestingLevel&) = delete;
    NestingLevel& operator=(const NestingLevel&) = delete;
    ~NestingLevel() { depth_ -= counted_; }

    // The engine's own stack limit decides, where it knows one.
    bool tooDeep() const
    {
        return counted_ != NONE ? depth_ > DEPTH_WITHOUT_STACK_LIMIT : stackOverflowed();
    }

    // A call that was made while another was being told that it is too deep.
    bool beyondTooDeep() const
    {
        return counted_ != NONE && depth_ > DEPTH_WITHOUT_STACK_LIMIT + CALL;
    }

private:
#ifdef ZEND_CHECK_STACK_LIMIT
    static bool stackLimit() { return EXPECTED(EG(stack_limit) != nullptr); }
    static bool stackOverflowed() { return zend_call_stack_overflowed(EG(stack_limit)); }
#else
    static bool stackLimit() { return false; }
    static bool stackOverflowed() { return false; }
#endif

    // Of all calls together. Fits a stack of a megabyte.
    static constexpr unsigned DEPTH_WITHOUT_STACK_LIMIT = 1024;
    static inline unsigned depth_ = 0;

    // NONE when the engine has a limit; a fiber has one even if its program has
    // none.
    const Weight counted_;
};

// Keeps an array, or the properties of an object, alive and unchanged while they
// are iterated: user code that writes to the array meanwhile gets a copy, and of
// an object a copy is iterated.
class HeldTable final {
public:
    // `value` is an array or an object; for anything else table() is null.
    HeldTable(EngineCall& call, const zval* value);
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
