// The stack that a call may use. PHP's own limit decides; where PHP is told not to
// look, the size of the stack does, which PHP knows all the same.
//
// What a template, its data or a file name can make deep, each asked for before it:
// - analysis and rendering, which call themselves for sections and included files;
// - calls of template() inside of each other, through user code;
// - opening a file: PHP resolves a name by recursion, see hasRoomToOpen().
// What else PHP does for a call needs less than the reserve below the limit.
#ifndef TEMPLATE_ENGINE_STACK_H
#define TEMPLATE_ENGINE_STACK_H

#include <cstddef>
#include <string_view>

#include "engine/call.h"

#ifndef ZEND_CHECK_STACK_LIMIT
#error "PHP must know the limit of its stack (ZEND_CHECK_STACK_LIMIT)."
#endif

// What a call uses of a fiber's stack, which is memory beside PHP's: there can be many
// fibers, and what was used stays resident while they wait. So as much of PHP's own is held
// until the call ends, when the stack goes back to the system. One for each call, made right
// after it; nothing is held for one in the main program.
class FiberStack final {
public:
    explicit FiberStack(EngineCall& call);
    FiberStack(const FiberStack&) = delete;
    FiberStack& operator=(const FiberStack&) = delete;
    ~FiberStack();

    // Ends the call where PHP's limit forbids it.
    void payDownTo(uintptr_t depth)
    {
        if (UNEXPECTED(depth < paid_)) {
            pay(depth);
        }
    }

private:
    void pay(uintptr_t depth);
    void release();
    void giveBack() const;

    EngineCall& call_;
    const uintptr_t begin_;
    uintptr_t paid_;
    void* held_ = nullptr;
};

class Stack final {
public:
    // One more level of analysis or rendering, with all that it calls in PHP.
    static constexpr size_t LEVEL = 16 * 1024;
    // A call as a whole.
    static constexpr size_t CALL = 48 * 1024;

    static uintptr_t position() { return reinterpret_cast<uintptr_t>(zend_call_stack_position()); }

    static bool hasRoom(size_t bytes)
    {
        if (UNEXPECTED(position() <= limit() + bytes)) {
            return false;
        }
        payFor(0);
        return true;
    }

    // For PHP to open a file by this name.
    static bool hasRoomToOpen(std::string_view name)
    {
        // The main program has that for any name that PHP looks up at all.
        const bool isPath = name.size() < MAXPATHLEN;
        if (EXPECTED(EG(active_fiber) == nullptr && isPath && hasRoom(ANY_PATH))) {
            return true;
        }
        const size_t path = toResolve(name);
        if (!hasRoom(TO_OPEN_ANY_FILE + path)) {
            return false;
        }
        payFor(path);
        return true;
    }

    // Half of the reserve is used up as well: code that was told of the limit has made
    // further calls.
    static bool reserveIsUsed()
    {
        return UNEXPECTED(EG(stack_limit) == nullptr) && position() < limit() - RESERVE / 2;
    }

private:
    static constexpr size_t ANY_PATH = 6 * 1024 * 1024;
    // PHP holds a few paths of full length on the stack while it opens a file.
    static constexpr size_t TO_OPEN_ANY_FILE = 48 * 1024;
    static size_t toResolve(std::string_view name);

    // Of a stack that PHP does not look at. Fits a stack of a megabyte.
    static constexpr size_t RESERVE = 256 * 1024;

    // For `bytes` more than are used now.
    static void payFor(size_t bytes)
    {
        if (UNEXPECTED(EG(active_fiber) != nullptr)) {
            EngineCall::current().fiberStack->payDownTo(position() - bytes);
        }
    }

    static uintptr_t limit()
    {
        if (EXPECTED(EG(stack_limit) != nullptr)) {
            return reinterpret_cast<uintptr_t>(EG(stack_limit));
        }
        const auto base = reinterpret_cast<uintptr_t>(EG(call_stack).base);
        return base > EG(call_stack).max_size ? base - EG(call_stack).max_size + RESERVE : RESERVE;
    }
};

#endif
