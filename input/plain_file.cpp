#include "input/plain_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>

namespace {

// PHP's own, as it was when the module was loaded. There are extensions that put
// theirs in its place, to read files in another way.
const php_stream_wrapper_ops* const PLAIN_FILES = php_plain_files_wrapper.wops;

int openToRead(const char* path)
{
    return ::open(path, O_RDONLY | O_CLOEXEC);
}

// No wrapper, neither one of PHP's nor of the program's, is asked for this name,
// unless one stands in the include path.
bool isPlainName(const std::string& name)
{
    return !name.empty() && name.size() < MAXPATHLEN && name.find(':') == std::string::npos
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
// opening takes inside of this process. -1 where PHP has to decide.
int openAlongIncludePath(const std::string& name)
{
    std::string_view folders = PG(include_path) != nullptr ? PG(include_path) : "";
    if (folders.empty() || isFromRootOrHere(name)) {
        return openToRead(name.c_str());
    }
    char path[MAXPATHLEN];
    while (!folders.empty()) {
        const std::string_view folder = folders.substr(0, folders.find(DEFAULT_DIR_SEPARATOR));
        folders.remove_prefix(folder.size());
        if (folders.starts_with("://") || folder.size() + 1 + name.size() >= sizeof path) {
            return -1;
        }
        folders.remove_prefix(std::min<size_t>(1, folders.size()));
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
int openWherePhpFinds(const std::string& name, EngineCall& call)
{
    const EngineString path = call.makeString(
        [&] { return php_resolve_path(name.data(), name.size(), PG(include_path)); });
    // The include path may have led into an archive.
    if (path.get() == nullptr || ZSTR_VAL(path.get())[0] != '/') {
        return -1;
    }
    bool allowed = false;
    call.run([&] { allowed = php_check_open_basedir_ex(ZSTR_VAL(path.get()), false) == 0; });
    return allowed ? openToRead(ZSTR_VAL(path.get())) : -1;
}

}

PlainFile::~PlainFile()
{
    if (isOpen()) {
        close(descriptor_);
    }
}

bool PlainFile::open(const std::string& name, EngineCall& call)
{
    if (!isPlainName(name)) {
        return false;
    }
    const bool restricted = PG(open_basedir) != nullptr && *PG(open_basedir) != '\0';
    if (!restricted) {
        descriptor_ = openAlongIncludePath(name);
    }
    // Where the program has wrappers of its own, PHP may ask one of them, and it is
    // not to be asked twice: the stream asks as well.
    if (!isOpen() && FG(stream_wrappers) == nullptr) {
        descriptor_ = openWherePhpFinds(name, call);
    }
    return isOpen();
}

size_t PlainFile::read(char* to, size_t size, EngineCall& call)
{
    size_t total = 0;
    while (total < size) {
        const ssize_t count = ::read(descriptor_, to + total, size - total);
        if (count <= 0) {
            // A signal may have brought the time limit: the reader looks at that.
            atEnd_ = count == 0 || errno != EINTR;
            if (count < 0 && atEnd_) {
                notice(size, call);
            }
            break;
        }
        total += count;
    }
    return total;
}

// What PHP's streams say of a file that cannot be read, such as a folder.
void PlainFile::notice(size_t size, EngineCall& call)
{
    const int error = errno;
    call.run([&] {
        php_error_docref(nullptr, E_NOTICE, "Read of %zu bytes failed with errno=%d %s", size, error,
            std::strerror(error));
    });
}

size_t PlainFile::size() const
{
    struct stat status {};
    return fstat(descriptor_, &status) == 0 ? status.st_size : 0;
}
