#include "engine/fiber_guard.h"

namespace {

// Ends a suspended fiber as a fatal error inside of it would: no user code runs.
void bailOutOf(zend_fiber* fiber)
{
    zend_fiber* const active = EG(active_fiber);
    fiber->caller = EG(current_fiber_context);
    EG(active_fiber) = fiber;
    zend_fiber_transfer transfer = {};
    transfer.context = fiber->previous;
    transfer.flags = ZEND_FIBER_TRANSFER_FLAG_BAILOUT;
    ZVAL_NULL(&transfer.value);
    zend_fiber_switch_context(&transfer);
    EG(active_fiber) = active;
}

// The handlers of fibers in which a call is going on.
struct FiberHandlers {
    explicit FiberHandlers(const zend_object_handlers* original)
        : original(original),
          guarded(*original)
    {
        guarded.free_obj = freeFiber;
    }

    static void freeFiber(zend_object* object);

    const zend_object_handlers* const original;
    zend_object_handlers guarded;
};

const FiberHandlers& fiberHandlers(const zend_fiber* fiber)
{
    static const FiberHandlers handlers(fiber->std.handlers);
    return handlers;
}

void FiberHandlers::freeFiber(zend_object* object)
{
    auto* fiber = reinterpret_cast<zend_fiber*>(object);
    if (fiber->context.status == ZEND_FIBER_STATUS_SUSPENDED) {
        bailOutOf(fiber);
    }
    fiberHandlers(fiber).original->free_obj(object);
}

}

void FiberGuard::enter()
{
    handlers_ = fiber_->std.handlers;
    fiber_->std.handlers = &fiberHandlers(fiber_).guarded;
}
