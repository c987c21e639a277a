// What PHP's streams take from malloc, a decompressor or an encrypted connection. PHP's
// memory limit does not see it. So while such streams are open, as much of PHP's own
// memory is held, untouched, and the limit holds for both together.
#ifndef TEMPLATE_ENGINE_STREAM_MEMORY_H
#define TEMPLATE_ENGINE_STREAM_MEMORY_H

#include <cstddef>

// One for each stream, destroyed after it is closed. Where malloc does not tell how much
// is taken, nothing is held.
class StreamMemory final {
public:
    StreamMemory() = default;
    StreamMemory(const StreamMemory&) = delete;
    StreamMemory& operator=(const StreamMemory&) = delete;
    ~StreamMemory();

    // To be called before the stream is opened.
    void beforeOpening();
    // To be called after each reading. Ends the call where PHP's limit forbids what all
    // streams together have taken.
    void count();

    // To be called when a request is over: streams that a fatal error left are closed.
    static void afterRequest();

private:
    void release();

    bool opened_ = false;
    size_t reads_ = 0;
    void* held_ = nullptr;
    size_t size_ = 0;

    // Those that are open; what malloc had given out before the first of them; what is
    // held for them, and the most since memory went back to the system.
    static inline size_t streams_ = 0;
    static inline size_t before_ = 0;
    static inline size_t all_ = 0;
    static inline size_t most_ = 0;
};

#endif
