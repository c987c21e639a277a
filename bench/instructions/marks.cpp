// Tells callgrind where a measurement begins and ends; called from PHP. Outside of callgrind the requests do nothing.

#include <valgrind/callgrind.h>

extern "C" void begin_count()
{
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_ZERO_STATS;
}

extern "C" void end_count(const char* name)
{
    CALLGRIND_DUMP_STATS_AT(name);
    CALLGRIND_STOP_INSTRUMENTATION;
}
