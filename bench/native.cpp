// What PHP cannot do without costs of its own, called from it through FFI: system calls without anything around
// them, and the marks between which callgrind counts.

#include <fcntl.h>
#include <unistd.h>

#include <cstring>

#if __has_include(<valgrind/callgrind.h>)
#include <valgrind/callgrind.h>
#else
#define CALLGRIND_START_INSTRUMENTATION
#define CALLGRIND_ZERO_STATS
#define CALLGRIND_DUMP_STATS_AT(name)
#define CALLGRIND_STOP_INSTRUMENTATION
#endif

// Reads files to their ends; each name ends with a NUL.
extern "C" void read_files(const char* names, int count)
{
    static char content[1 << 20];
    for (; count > 0; --count, names += std::strlen(names) + 1) {
        const int file = open(names, O_RDONLY | O_CLOEXEC);
        while (read(file, content, sizeof content) > 0) {
        }
        close(file);
    }
}

extern "C" void begin_count()
{
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_ZERO_STATS;
}

extern "C" void end_count([[maybe_unused]] const char* name)
{
    CALLGRIND_DUMP_STATS_AT(name);
    CALLGRIND_STOP_INSTRUMENTATION;
}
