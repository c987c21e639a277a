// The memory of a call: all that it builds lies in a few blocks of PHP's memory and
// goes away with it. So PHP's memory limit holds for it, and nobody has to count.
#ifndef TEMPLATE_ENGINE_MEMORY_H
#define TEMPLATE_ENGINE_MEMORY_H

#include <cstddef>
#include <deque>
#include <limits>
#include <memory>
#include <new>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "engine/call.h"

// The memory of a call, made right after its EngineCall. What is thrown away before the
// call ends can have another one, which is used for as long as it exists.
class CallMemory final {
public:
    // `first` is what it begins with.
    explicit CallMemory(EngineCall& call, std::span<char> first = {})
        : call_(call),
          outer_(std::exchange(call.memory, this)),
          free_(first.data()),
          end_(first.empty() ? first.data() : first.data() + first.size() - READ_BEHIND)
    {
    }
    CallMemory(const CallMemory&) = delete;
    CallMemory& operator=(const CallMemory&) = delete;
    ~CallMemory();

    // Memory for as long as this exists. Ends the call where PHP's limit forbids it.
    void* allocate(size_t size)
    {
        size = rounded(size);
        if (UNEXPECTED(size > static_cast<size_t>(end_ - free_) || size >= LARGE)) {
            return allocateBlock(size);
        }
        return std::exchange(free_, free_ + size);
    }

    // What was allocated last, or is large, can be used again; anything else is
    // kept until the end. It may come from the memory around this one.
    void deallocate(void* memory, size_t size) noexcept
    {
        size = rounded(size);
        if (UNEXPECTED(size >= LARGE)) {
            deallocateLarge(memory);
        } else if (static_cast<char*>(memory) + size == free_) {
            free_ = static_cast<char*>(memory);
        }
    }

private:
    // Before what a block of PHP's memory holds. `self` is the pointer to it.
    struct Block {
        Block** self;
        Block* next;
    };

    static size_t rounded(size_t size) { return (size + 7) & ~size_t{7}; }
    void* allocateBlock(size_t size);
    void* addBlock(size_t size);
    static void deallocateLarge(void* memory) noexcept;

    // Short texts are copied in whole blocks, from behind their end too.
    static constexpr size_t READ_BEHIND = 32;
    // From this size on an allocation has a block of its own.
    static constexpr size_t LARGE = 32 * 1024;
    static constexpr size_t LARGEST_SHARED = 256 * 1024;

    EngineCall& call_;
    CallMemory* const outer_;
    Block* blocks_ = nullptr;
    size_t nextSize_ = 8 * 1024;
    char* free_;
    char* end_;
};

// Gives the containers of a call their memory: that of the call whose code is
// running.
template <class T>
class CallAllocator {
public:
    using value_type = T;

    CallAllocator() = default;
    template <class Other>
    CallAllocator(const CallAllocator<Other>&)
    {
    }

    T* allocate(size_t count)
    {
        if (UNEXPECTED(count > std::numeric_limits<ptrdiff_t>::max() / sizeof(T))) {
            throw std::bad_array_new_length();
        }
        return static_cast<T*>(EngineCall::current().memory->allocate(count * sizeof(T)));
    }
    void deallocate(T* memory, size_t count) noexcept
    {
        EngineCall::current().memory->deallocate(memory, count * sizeof(T));
    }

    template <class Other>
    bool operator==(const CallAllocator<Other>&) const
    {
        return true;
    }
};

// Gives a container that outlives others a block of PHP's memory of its own. The bytes
// of a buffer are not cleared.
template <class T>
class BlockAllocator {
public:
    using value_type = T;

    BlockAllocator() = default;
    template <class Other>
    BlockAllocator(const BlockAllocator<Other>&)
    {
    }

    T* allocate(size_t count)
    {
        if (UNEXPECTED(count > std::numeric_limits<ptrdiff_t>::max() / sizeof(T))) {
            throw std::bad_array_new_length();
        }
        return static_cast<T*>(EngineCall::current().allocate(count * sizeof(T)));
    }
    void deallocate(T* memory, size_t) noexcept { efree(memory); }

    template <class Element>
    void construct(Element* place)
    {
        ::new (static_cast<void*>(place)) Element;
    }
    template <class Element, class... Arguments>
    void construct(Element* place, Arguments&&... arguments)
    {
        ::new (static_cast<void*>(place)) Element(std::forward<Arguments>(arguments)...);
    }

    template <class Other>
    bool operator==(const BlockAllocator<Other>&) const
    {
        return true;
    }
};

using String = std::basic_string<char, std::char_traits<char>, CallAllocator<char>>;
template <class T>
using Vector = std::vector<T, CallAllocator<T>>;
template <class T>
using LastingVector = std::vector<T, BlockAllocator<T>>;
using Buffer = LastingVector<char>;
template <class T>
using Deque = std::deque<T, CallAllocator<T>>;

// Destroys an object, and leaves its place to the memory of the call.
struct Destroy final {
    template <class T>
    void operator()(T* object) const
    {
        object->~T();
    }
};
template <class T>
using Owner = std::unique_ptr<T, Destroy>;

template <class T, class... Arguments>
Owner<T> make(Arguments&&... arguments)
{
    void* place = EngineCall::current().memory->allocate(sizeof(T));
    return Owner<T>(::new (place) T(std::forward<Arguments>(arguments)...));
}

#endif
