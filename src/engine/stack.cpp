#include "engine/stack.h"

#include <algorithm>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace {

// What any call uses, and in what steps more is paid.
constexpr size_t PORTION = 16 * 1024;
// So much used stack is not worth the way to the system.
constexpr size_t LARGEST_KEPT = 64 * 1024;
constexpr uintptr_t PAGE = 4096;

// Each component of a path is one level of recursion, with a copy of the path up to
// it (measured: its length and 350 bytes).
constexpr size_t COMPONENT = 512;

size_t toResolveBehind(size_t lengthBefore, std::string_view path)
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

FiberStack::FiberStack(EngineCall& call)
    : call_(call),
      begin_(Stack::position()),
      paid_(begin_ - PORTION)
{
    call.fiberStack = this;
}

FiberStack::~FiberStack()
{
    if (UNEXPECTED(begin_ - paid_ > LARGEST_KEPT)) {
        giveBack();
    }
    release();
}

void FiberStack::pay(uintptr_t depth)
{
    const size_t size = (begin_ - depth + PORTION - 1) / PORTION * PORTION;
    release();
    held_ = call_.allocate(size);
    paid_ = begin_ - size;
}

void FiberStack::release()
{
    if (held_ != nullptr) {
        efree(held_);
        held_ = nullptr;
    }
}

// All that lies below what this function and the system's use.
void FiberStack::giveBack() const
{
#ifdef __linux__
    const uintptr_t end = (Stack::position() - PAGE) & -PAGE;
    const auto limit = reinterpret_cast<uintptr_t>(EG(stack_limit));
    const uintptr_t begin = ((limit != 0 ? limit : paid_) + PAGE - 1) & -PAGE;
    if (begin < end) {
        madvise(reinterpret_cast<void*>(begin), end - begin, MADV_DONTNEED);
    }
#endif
}

size_t Stack::toResolve(std::string_view name)
{
    // PHP puts a folder before a name that is not from the root: one of the include
    // path, the current one, or that of the program.
    char folder[MAXPATHLEN];
    const std::string_view current = settingOf(VCWD_GETCWD(folder, sizeof folder));
    const std::string_view includePath = settingOf(PG(include_path));
    const size_t before = std::max(current.size() + 1, includePath.size() + 1);
    return toResolveBehind(before, name)
        + std::max(toResolveBehind(0, current), toResolveBehind(current.size(), includePath))
        + toResolveBehind(0, settingOf(PG(open_basedir)));
}
