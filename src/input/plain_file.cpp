#include "input/plain_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <utility>

namespace {

// PHP's own, as it was when the module was loaded. There are extensions that put
// theirs in its place, to read files in another way.
const php_stream_wrapper_ops* const PLAIN_FILES = php_plain_files_wrapper.wops;

int openToRead(const char* path)
{
    return ::open(path, O_RDONLY | O_CLOEXEC);
}

std::string_view includePath()
{
    return PG(include_path) != nullptr ? PG(include_path) : "";
}

// No wrapper, neither one of PHP's nor of the program's, is asked for this name.
bool isPlainName(const String& name)
{
    return !name.empty() && name.size() < MAXPATHLEN && name.find(':') == String::npos
        && includePath().find("://") == std::string_view::npos
        && (FG(stream_wrappers) == nullptr
            || php_stream_locate_url_wrapper(name.c_str(), nullptr, 0) == &php_plain_files_wrapper)
        && php_plain_files_wrapper.wops == PLAIN_FILES;
}

// The include path plays no part.
bool isFromRootOrHere(std::string_view name)
{
    return name.starts_with('/') || name.starts_with("./") || name.starts_with("../");
}

// Opens the file in the first folder of the include path that has it, as PHP does,
// but without working out its real path first, which takes longer than all that
// opening takes inside of this process. -1, with errno, where there is none.
int openAlongIncludePath(const String& name)
{
    std::string_view folders = includePath();
    if (folders.empty() || isFromRootOrHere(name)) {
        return openToRead(name.c_str());
    }
    char path[MAXPATHLEN];
    while (!folders.empty()) {
        const std::string_view folder = folders.substr(0, folders.find(DEFAULT_DIR_SEPARATOR));
        folders.remove_prefix(std::min(folder.size() + 1, folders.size()));
        if (folder.size() + 1 + name.size() >= sizeof path) {
            errno = ENAMETOOLONG;
            return -1;
        }
        char* end = std::copy(folder.begin(), folder.end(), path);
        *end++ = '/';
        *std::copy(name.begin(), name.end(), end) = '\0';
        const int descriptor = openToRead(path);
        if (descriptor >= 0 || (errno != ENOENT && errno != ENOTDIR)) {
            return descriptor;
        }
    }
    return -1;
}

// Opens what PHP finds by the name, if that is a file that may be opened. It also
// looks beside the program, and holds the real path against open_basedir.
int openWherePhpFinds(const String& name)
{
    EngineCall& call = EngineCall::current();
    errno = 0;
    const EngineString path = call.makeString(
        [&] { return php_resolve_path(name.data(), name.size(), PG(include_path)); });
    // An archive that the program runs in has a say, too.
    if (path.get() == nullptr || ZSTR_VAL(path.get())[0] != '/') {
        return -1;
    }
    bool allowed = false;
    call.run([&] { allowed = php_check_open_basedir_ex(ZSTR_VAL(path.get()), false) == 0; });
    errno = 0;
    return allowed ? openToRead(ZSTR_VAL(path.get())) : -1;
}

}

PlainFile::Opening PlainFile::open(const String& name)
{
    if (!isPlainName(name)) {
        return Opening::LEFT_TO_STREAM;
    }
    const bool restricted = PG(open_basedir) != nullptr && *PG(open_basedir) != '\0';
    int error = 0;
    if (!restricted) {
        descriptor_ = openAlongIncludePath(name);
        error = errno;
    }
    // Where the program has wrappers of its own, PHP may ask one of them, and it is
    // not to be asked twice: the stream asks as well.
    if (descriptor_ < 0 && error != EINTR && FG(stream_wrappers) == nullptr) {
        descriptor_ = openWherePhpFinds(name);
        error = errno;
    }
    opened_ = descriptor_ >= 0;
    if (opened_) {
        return Opening::OPENED;
    }
    return error == EINTR ? Opening::INTERRUPTED : Opening::LEFT_TO_STREAM;
}

void PlainFile::close()
{
    if (descriptor_ >= 0) {
        ::close(std::exchange(descriptor_, -1));
    }
}

// Of an ordinary file the position tells, at less cost than reading nothing.
bool PlainFile::isWhollyRead()
{
    const off_t size = lseek(descriptor_, 0, SEEK_END);
    if (size == static_cast<off_t>(position_) && size != 0) {
        return true;
    }
    if (size >= 0) {
        lseek(descriptor_, static_cast<off_t>(position_), SEEK_SET);
    }
    return false;
}

size_t PlainFile::read(char* to, size_t size)
{
    size_t total = 0;
    while (total < size) {
        const ssize_t count = ::read(descriptor_, to + total, size - total);
        if (count < 0 && errno == EINTR) {
            // It may have brought the time limit: the reader looks at that.
            break;
        }
        if (count < 0) {
            notice(size);
        }
        total += std::max<ssize_t>(count, 0);
        position_ += std::max<ssize_t>(count, 0);
        if (count <= 0 || (total < size && isWhollyRead())) {
            close();
            break;
        }
    }
    return total;
}

// What PHP's streams say of a file that cannot be read, such as a folder.
void PlainFile::notice(size_t size)
{
    const int error = errno;
    EngineCall::current().run([&] {
        php_error_docref(nullptr, E_NOTICE, "Read of %zu bytes failed with errno=%d %s", size,
            error, std::strerror(error));
    });
}

size_t PlainFile::sizeLeft() const
{
    struct stat status{};
    if (descriptor_ < 0 || fstat(descriptor_, &status) != 0) {
        return 0;
    }
    return std::max<off_t>(status.st_size - static_cast<off_t>(position_), 0);
}
