#include "engine/text.h"

#include <algorithm>
#include <stdexcept>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace {

size_t blockSize(size_t capacity)
{
    return ZEND_MM_ALIGNED_SIZE(_ZSTR_STRUCT_SIZE(capacity));
}

// A text of many megabytes is written once, on pages that are all fresh: large
// pages spare most of what the system does for that.
void preferLargePages([[maybe_unused]] void* block, [[maybe_unused]] size_t size)
{
#ifdef MADV_HUGEPAGE
    constexpr uintptr_t LARGE_PAGE = 2 * 1024 * 1024;
    const uintptr_t begin = (reinterpret_cast<uintptr_t>(block) + LARGE_PAGE - 1) & -LARGE_PAGE;
    const uintptr_t end = (reinterpret_cast<uintptr_t>(block) + size) & -LARGE_PAGE;
    if (end > begin) {
        madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
    }
#endif
}

}

void Text::grow(size_t more)
{
    // Doubling copies least; a large text grows by half, so that the old and
    // the new one together stay below three times what is in them.
    constexpr size_t SMALL = 256;
    constexpr size_t LARGE = 1024 * 1024;
    const size_t held = limit_ != nullptr ? limit_ - begin_ : 0;
    const size_t grown = held < LARGE ? held * 2 : held + held / 2;
    if (UNEXPECTED(more > ZSTR_MAX_LEN - size())) {
        throw std::length_error("basic_string::append");
    }
    const size_t block = blockSize(std::max({size() + more, grown, SMALL}));
    auto* string = static_cast<zend_string*>(EngineCall::current().allocate(block));
    if (block > 2 * LARGE) {
        preferLargePages(string, block);
    }
    if (!empty()) {
        std::memcpy(ZSTR_VAL(string), begin_, size());
    }
    Text larger;
    larger.begin_ = ZSTR_VAL(string);
    larger.end_ = larger.begin_ + size();
    larger.limit_ = reinterpret_cast<char*>(string) + block - 1;
    *this = std::move(larger);
}

size_t Text::spareRoom()
{
    constexpr size_t MOST = 64 * 1024 * 1024;
    const auto limit = static_cast<size_t>(PG(memory_limit));
    const size_t used = zend_memory_usage(true);
    return std::min(MOST, limit > used ? (limit - used) / 4 : 0);
}

// Gives back room that is worth it.
void Text::cut()
{
    if (static_cast<size_t>(limit_ - end_) <= size() / 8 + 64) {
        return;
    }
    const size_t used = end_ - begin_;
    const size_t block = blockSize(used);
    EngineCall& call = EngineCall::current();
    call.attempt([&] {
        auto* string = static_cast<zend_string*>(erealloc(this->string(), block));
        begin_ = ZSTR_VAL(string);
        end_ = begin_ + used;
        limit_ = reinterpret_cast<char*>(string) + block - 1;
    });
    if (UNEXPECTED(call.fatal() || EngineCall::outOfMemory())) {
        throw CallAbandoned();
    }
}

EngineString Text::release()
{
    if (limit_ == nullptr) {
        grow(0);
    }
    cut();
    zend_string* result = string();
    GC_SET_REFCOUNT(result, 1);
    GC_TYPE_INFO(result) = GC_STRING;
    ZSTR_H(result) = 0;
    ZSTR_LEN(result) = size();
    *end_ = '\0';
    begin_ = end_ = limit_ = nullptr;
    return EngineString(result);
}
