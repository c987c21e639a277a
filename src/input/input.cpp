#include "input/input.h"

#include <algorithm>
#include <utility>

#include "engine/failure.h"
#include "engine/stack.h"
#include "input/braces.h"

namespace {

// What streams have always been asked for at once.
constexpr size_t STREAM_CHUNK = 4092;
// Of a plain file, where nobody sees how much is asked for: most templates fit
// into the first chunk, the others are long.
constexpr size_t FIRST_FILE_CHUNK = 8192;
constexpr size_t LARGEST_FILE_CHUNK = 256 * 1024;
// What a file says of its size is no promise.
constexpr size_t LARGEST_EXPECTED_FILE = 1024 * 1024;

}

Input::Input(const String& source, bool stringMode) : stringMode(stringMode)
{
    if (stringMode) {
        assignBuffer(source);
        return;
    }
    open(source);
    if (stream == nullptr && !file_.isOpened()) {
        throw FileNotOpened(source);
    }
}

void Input::open(const String& source)
{
    // The engine would open the name up to its first NUL, another file.
    if (source.find('\0') != String::npos) {
        return;
    }
    if (UNEXPECTED(!Stack::hasRoomToOpen(source))) {
        throw NestingTooDeep();
    }
    switch (file_.open(source)) {
    case PlainFile::Opening::OPENED:
        break;
    case PlainFile::Opening::LEFT_TO_STREAM:
        openStream(source);
        break;
    case PlainFile::Opening::INTERRUPTED:
        EngineCall::current().checkTime();
        break;
    }
}

void Input::openStream(const String& source)
{
    EngineCall& call = EngineCall::current();
    streamMemory_.beforeOpening();
    call.attempt([&] {
        stream = php_stream_open_wrapper_ex(source.c_str(), "rb", USE_PATH, nullptr, nullptr);
    });
    if (call.fatal()) {
        throw CallAbandoned();
    }
}

Input::~Input()
{
    // After a fatal error the stream is left to the end of the request: closing
    // it could run user code.
    EngineCall& call = EngineCall::current();
    if (stream != nullptr && !call.fatal()) {
        call.attempt([this] { php_stream_free(stream, PHP_STREAM_FREE_CLOSE); });
    }
}

std::string_view Input::readTag(Text& storage)
{
    if (refill()) {
        const char* const begin = buffer.data() + position;
        const char* const end = buffer.data() + buffer.size();
        const char* const brace = findBrace(begin, end);
        if (brace != end && *brace == '}') {
            position = brace + 1 - buffer.data();
            return {begin, brace};
        }
    }
    fillBufferTillMark(storage, '}');
    return storage;
}

bool Input::fillBufferTillMark(Text& out, char mark)
{
    while (refill()) {
        EngineCall::current().checkTime();
        const char* const begin = buffer.data() + position;
        const char* const end = buffer.data() + buffer.size();
        const char* const brace = mark == '{' ? findBraceInText(begin, end) : findBrace(begin, end);
        out.append({begin, brace});
        position = brace - buffer.data();
        if (brace == end) {
            continue;
        }
        ++position;
        if (*brace == '}') {
            if (mark == '}') {
                return true;
            }
            // Escaped or alone, a closing brace in the text is one brace.
            out.append('}');
            if (refill() && buffer[position] == '}') {
                ++position;
            }
        } else if (mark == '}') {
            swallowRest(out);
            return false;
        } else if (resolveOpenBrace(out) == AfterOpen::TAG) {
            return true;
        }
    }
    return false;
}

// What a '{' in the text turns out to be, now that it has been consumed.
Input::AfterOpen Input::resolveOpenBrace(Text& out)
{
    if (!refill()) {
        out.append('{');
        return AfterOpen::TEXT;
    }
    const bool escaped = buffer[position] == '{';
    if (!escaped && !isLiteralBehindBrace(buffer[position])) {
        return AfterOpen::TAG;
    }
    position += escaped;
    out.append('{');
    return AfterOpen::TEXT;
}

// A '{' inside a tag takes the rest of the template into the tag, each byte of
// it, and the brace itself, turned into a '{'. Templates with this mistake keep
// the outcome that they have always had.
void Input::swallowRest(Text& out)
{
    do {
        out.append(buffer.size() - position, '{');
        position = buffer.size();
    } while (fetchNonEmpty());
    out.append('{');
}

bool Input::fetchNonEmpty()
{
    // A stream may deliver nothing for a while without being at its end.
    while (fetchStream()) {
        EngineCall::current().checkTime();
        if (!buffer.empty()) {
            return true;
        }
    }
    return false;
}

bool Input::fetchStream()
{
    position = 0;
    if (stringMode || atEndOfStream()) {
        ended = stringMode;
        buffer.clear();
        return false;
    }
    if (!file_.isOpened()) {
        readChunk<STREAM_CHUNK>();
    } else if (!std::exchange(started_, true)) {
        readChunk<FIRST_FILE_CHUNK>();
    } else {
        // One byte more than is left, to meet the end at once.
        buffer.resize(std::clamp(file_.sizeLeft() + 1, FIRST_FILE_CHUNK, LARGEST_FILE_CHUNK));
        buffer.resize(read(buffer.data(), buffer.size()));
    }
    return true;
}

// By way of the stack, so that a file held open while it includes others holds no
// more than its own size.
template <size_t SIZE>
void Input::readChunk()
{
    char chunk[SIZE];
    assignBuffer({chunk, read(chunk, SIZE)});
}

// At once: assign() would do it byte by byte.
void Input::assignBuffer(std::string_view bytes)
{
    buffer.resize(bytes.size());
    bytes.copy(buffer.data(), bytes.size());
}

// How much was read. What cannot be read counts as nothing.
size_t Input::read(char* to, size_t size)
{
    if (file_.isOpened()) {
        return file_.read(to, size);
    }
    ssize_t count = 0;
    EngineCall::current().run([&] { count = php_stream_read(stream, to, size); });
    streamMemory_.count();
    return std::max<ssize_t>(count, 0);
}

bool Input::exhausted()
{
    return stringMode ? ended : position == buffer.size() && atEndOfStream();
}

size_t Input::readAhead()
{
    if (stringMode) {
        return buffer.size();
    }
    if (!file_.isOpened()) {
        return STREAM_CHUNK;
    }
    if (!started_) {
        fetchStream();
    }
    return std::clamp(buffer.size() + file_.sizeLeft(), buffer.size(), LARGEST_EXPECTED_FILE);
}

bool Input::atEndOfStream()
{
    if (file_.isOpened()) {
        return file_.atEnd();
    }
    bool atEnd = false;
    EngineCall::current().run([&] { atEnd = php_stream_eof(stream); });
    return atEnd;
}
