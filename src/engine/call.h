// The ways out of a call of template() that are not C++ exceptions: a fatal error
// of PHP's, which is a longjmp, and a pending PHP exception. And the two things that
// every part of a call asks of PHP: memory within its limit, and the time.
#ifndef TEMPLATE_ENGINE_CALL_H
#define TEMPLATE_ENGINE_CALL_H

#include <utility>

#include "engine/engine_string.h"
#include "engine/headers.h"

class CallMemory;
class FiberStack;

// Thrown when the call is over but has nothing to say of its own: a PHP
// exception is pending, or a fatal error is on its way out. Deliberately no
// std::exception, so that no handler of failures takes it for one.
struct CallAbandoned final {};

// Runs `body(argument)`, which must be free of C++ objects that a longjmp would
// skip. True when it ended, false when a fatal error (a bailout) cut it off.
bool runGuarded(void (*body)(void*), void* argument) noexcept;

// One call of template(), made before and destroyed after everything else of it.
// Calls lie inside of each other and wait in fibers: the current one is that whose
// code is running.
class EngineCall final {
public:
    EngineCall() { current_ = this; }
    EngineCall(const EngineCall&) = delete;
    EngineCall& operator=(const EngineCall&) = delete;
    // The call around this one, if any, is made current when it goes on.
    ~EngineCall() { current_ = nullptr; }

    static EngineCall& current() { return *current_; }

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
        // Other calls may have been made meanwhile.
        current_ = this;
    }

    // Throws CallAbandoned when a fatal error or a PHP exception is under way.
    void leaveIfAbandoned() const
    {
        if (UNEXPECTED(fatal_ || EG(exception) != nullptr || outOfMemory())) {
            throw CallAbandoned();
        }
    }

    // A fatal error came up inside the call. Engine values that could run user
    // code when they are released are then left to the end of the request.
    bool fatal() const { return fatal_; }

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

    // A block of PHP's memory, for efree(). Where the memory limit forbids it, the
    // call ends in PHP's own fatal error.
    void* allocate(size_t size);

    // To be called before engine code that will allocate many times what it is
    // given: an engine that lets the memory limit be passed for a while kills the
    // process at twice the limit.
    void ensureRoom(size_t bytes);

    // To be called in every loop that a template, its data or a file can make long:
    // ends the call when PHP's time limit has passed.
    void checkTime()
    {
        // The engine's own way to read it is a full fence with some compilers.
        if (UNEXPECTED(__atomic_load_n(
                reinterpret_cast<const bool*>(&EG(vm_interrupt)), __ATOMIC_RELAXED))) {
            interrupted();
        }
    }

    // Where the call's small allocations come from; null before it has any.
    CallMemory* memory = nullptr;
    // What it holds for the stack that it uses.
    FiberStack* fiberStack = nullptr;

private:
    void interrupted();

    static inline EngineCall* current_ = nullptr;
    bool fatal_ = false;
};

#endif
