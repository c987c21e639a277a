#include "engine/stack.h"

#include <algorithm>

namespace {

// PHP holds a few paths of full length on the stack while it opens a file.
constexpr size_t TO_OPEN_ANY_FILE = 48 * 1024;
// Each component of a path is one level of recursion, with a copy of the path up to
// it (measured: its length and 350 bytes).
constexpr size_t COMPONENT = 512;

size_t toResolve(std::string_view path, size_t lengthBefore)
{
    size_t bytes = 0;
    for (size_t slash = path.find('/'); slash != std::string_view::npos;
        slash = path.find('/', slash + 1)) {
        bytes += lengthBefore + slash + COMPONENT;
    }
    return bytes + lengthBefore + path.size() + COMPONENT;
}

std::string_view settingOf(const char* value)
{
    return value != nullptr ? value : std::string_view();
}

}

size_t Stack::toOpen(std::string_view name)
{
    // PHP puts a folder before a name that is not from the root: one of the include
    // path, the current one, or that of the program.
    char folder[MAXPATHLEN];
    const std::string_view current = settingOf(VCWD_GETCWD(folder, sizeof folder));
    const std::string_view includePath = settingOf(PG(include_path));
    const size_t before = std::max(current.size() + 1, includePath.size() + 1);
    return TO_OPEN_ANY_FILE + toResolve(name, before)
        + std::max(toResolve(current, 0), toResolve(includePath, current.size()))
        + toResolve(settingOf(PG(open_basedir)), 0);
}
