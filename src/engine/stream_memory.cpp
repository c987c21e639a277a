#include "engine/stream_memory.h"

#include <algorithm>
#include <utility>

#include "engine/call.h"

#if defined(__GLIBC__) && __GLIBC_PREREQ(2, 33)
#include <malloc.h>
#define TEMPLATE_MALLOC_TELLS
#endif

namespace {

// What a few streams take is within the room that the limit leaves.
constexpr size_t STEP = 1024 * 1024;
constexpr size_t LARGEST_KEPT = 8 * STEP;

size_t inUse()
{
#ifdef TEMPLATE_MALLOC_TELLS
    const struct mallinfo2 all = mallinfo2();
    return all.uordblks + all.hblkhd;
#else
    return 0;
#endif
}

// malloc keeps what was freed below something in use: too much for a worker that
// renders other pages next.
void giveBack()
{
#ifdef TEMPLATE_MALLOC_TELLS
    malloc_trim(0);
#endif
}

}

StreamMemory::~StreamMemory()
{
    if (EXPECTED(!opened_)) {
        return;
    }
    --streams_;
    release();
    if (!EngineCall::current().fatal() && most_ - all_ >= LARGEST_KEPT) {
        giveBack();
        most_ = all_;
    }
}

void StreamMemory::release()
{
    if (held_ != nullptr) {
        efree(std::exchange(held_, nullptr));
    }
    all_ -= std::exchange(size_, 0);
}

void StreamMemory::beforeOpening()
{
    opened_ = true;
    if (streams_++ == 0) {
        before_ = inUse();
    }
}

void StreamMemory::count()
{
    // It can take long to tell. Most is taken at the first reading, and what this one takes
    // later is found out at the next stream's.
    ++reads_;
    if ((reads_ & (reads_ - 1)) != 0) {
        return;
    }
    const size_t taken = inUse();
    // Without PHP's own allocator there is no limit either.
    if (EXPECTED(taken < before_ + all_ + STEP) || !is_zend_mm()) {
        return;
    }
    const size_t size = size_ + (taken - before_ - all_);
    release();
    held_ = EngineCall::current().allocate(size);
    size_ = size;
    all_ += size;
    most_ = std::max(most_, all_);
}

void StreamMemory::afterRequest()
{
    if (most_ != 0) {
        giveBack();
    }
    streams_ = all_ = most_ = 0;
}
