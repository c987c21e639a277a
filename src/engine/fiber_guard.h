// A call that waits in a fiber when a fatal error ends the request.
#ifndef TEMPLATE_ENGINE_FIBER_GUARD_H
#define TEMPLATE_ENGINE_FIBER_GUARD_H

#include "engine/headers.h"

// For the length of a call: if it is made in a fiber, sees to its end there.
// After a fatal error PHP frees a suspended fiber without unwinding its stack,
// and what the call owns would stay in the process for good.
class FiberGuard final {
public:
    FiberGuard() : fiber_(EG(active_fiber))
    {
        if (UNEXPECTED(fiber_ != nullptr)) {
            enter();
        }
    }
    FiberGuard(const FiberGuard&) = delete;
    FiberGuard& operator=(const FiberGuard&) = delete;
    ~FiberGuard()
    {
        if (UNEXPECTED(fiber_ != nullptr)) {
            fiber_->std.handlers = handlers_;
        }
    }

private:
    void enter();

    zend_fiber* const fiber_;
    const zend_object_handlers* handlers_ = nullptr;
};

#endif
