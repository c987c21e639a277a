#include "engine/memory.h"

#include <algorithm>

CallMemory::~CallMemory()
{
    while (blocks_ != nullptr) {
        efree(std::exchange(blocks_, blocks_->next));
    }
    call_.memory = outer_;
}

// The rest of the block in use is left for smaller ones when this one is large.
void* CallMemory::allocateBlock(size_t size)
{
    if (size >= LARGE) {
        return addBlock(size);
    }
    const size_t room = nextSize_ - sizeof(Block) - READ_BEHIND;
    free_ = static_cast<char*>(addBlock(std::max(size, room)));
    end_ = free_ + std::max(size, room);
    nextSize_ = std::min(2 * nextSize_, LARGEST_SHARED);
    return std::exchange(free_, free_ + size);
}

void* CallMemory::addBlock(size_t size)
{
    auto* block = static_cast<Block*>(call_.allocate(sizeof(Block) + size + READ_BEHIND));
    *block = {&blocks_, blocks_};
    if (blocks_ != nullptr) {
        blocks_->self = &block->next;
    }
    blocks_ = block;
    return block + 1;
}

void CallMemory::deallocateLarge(void* memory) noexcept
{
    Block* block = static_cast<Block*>(memory) - 1;
    *block->self = block->next;
    if (block->next != nullptr) {
        block->next->self = block->self;
    }
    efree(block);
}
