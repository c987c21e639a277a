#pragma once

// Tells AddressSanitizer which stack a fiber runs on; PHP does so itself only when it was built with it.
// Without, what an exception or a fatal error jumps over in a fiber stays forbidden ground, and the next
// use of that stack looks like an error.

#include <cstddef>

#include <sanitizer/common_interface_defs.h>

extern "C" {
#include <php.h>
#include <Zend/zend_extensions.h>
#include <Zend/zend_fibers.h>
#include <Zend/zend_observer.h>
}

namespace fibers {

inline int fakeStack; // the place in a context that is ours
inline const void* mainBottom;
inline size_t mainSize;

// Called before each switch. PHP's own code between here and the other stack is not watched, so that
// the end of the switch may be announced together with its start. Not watched itself: the sanitizer's
// second stack, where the variables of what is watched live, goes away in here when a fiber ends.
[[gnu::no_sanitize_address]] inline void announce(zend_fiber_context* from, zend_fiber_context* to)
{
    const void* bottom = mainBottom;
    size_t size = mainSize;
    if (to != EG(main_fiber_context)) {
        size = EG(fiber_stack_size);
        bottom = static_cast<char*>(zend_fiber_stack_base(to->stack)) - size;
    }
    const bool ends = from->status == ZEND_FIBER_STATUS_DEAD;
    __sanitizer_start_switch_fiber(ends ? nullptr : &from->reserved[fakeStack], bottom, size);

    const void* leftBottom;
    size_t leftSize;
    __sanitizer_finish_switch_fiber(to->reserved[fakeStack], &leftBottom, &leftSize);
    to->reserved[fakeStack] = nullptr;
    if (from == EG(main_fiber_context)) {
        mainBottom = leftBottom;
        mainSize = leftSize;
    }
}

// Once, when PHP starts.
inline void watch()
{
    fakeStack = zend_get_resource_handle("fibers");
    zend_observer_fiber_switch_register(announce);
}

}
