#include "input/input.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <stdexcept>

namespace {

constexpr size_t CHUNK_SIZE = 4092;

// The first brace of either kind in [from, end), or `end`. Eight bytes at a
// time: plain text is most of a template, and this is all that is done to it.
const char* findBrace(const char* from, const char* end)
{
    constexpr uint64_t ONES = 0x0101010101010101;
    constexpr uint64_t HIGHS = 0x8080808080808080;
    if constexpr (std::endian::native == std::endian::little) {
        for (; end - from >= 8; from += 8) {
            uint64_t word;
            std::memcpy(&word, from, sizeof word);
            // A byte that becomes zero sets its own high bit, and perhaps those of
            // bytes above it: only the lowest one counts.
            const uint64_t open = word ^ (ONES * '{');
            const uint64_t close = word ^ (ONES * '}');
            const uint64_t found
                = (((open - ONES) & ~open) | ((close - ONES) & ~close)) & HIGHS;
            if (found != 0) {
                return from + std::countr_zero(found) / 8;
            }
        }
    }
    while (from < end && *from != '{' && *from != '}') {
        ++from;
    }
    return from;
}

}

Input::Input(const std::string& source, bool stringMode, EngineCall& call)
    : stringMode(stringMode), call_(call)
{
    if (stringMode) {
        buffer.assign(source.begin(), source.end());
        return;
    }
    // The engine would open the name up to its first NUL, another file.
    if (source.find('\0') == std::string::npos) {
        call_.attempt([&] {
            stream = php_stream_open_wrapper_ex(source.c_str(), "rb", USE_PATH, nullptr, nullptr);
        });
        if (call_.fatal()) {
            throw CallAbandoned();
        }
    }
    if (stream == nullptr) {
        throw std::runtime_error("Could not open file " + source);
    }
}

Input::~Input()
{
    // After a fatal error the stream is left to the end of the request: closing
    // it could run user code.
    if (stream != nullptr && !call_.fatal()) {
        call_.attempt([&] { php_stream_free(stream, PHP_STREAM_FREE_CLOSE); });
    }
}

bool Input::fillBufferTillMark(std::string& out, char mark)
{
    while (refill()) {
        const char* const begin = buffer.data() + position;
        const char* const end = buffer.data() + buffer.size();
        const char* const brace = findBrace(begin, end);
        call_.append(out, {begin, brace});
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
            call_.append(out, "}");
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
Input::AfterOpen Input::resolveOpenBrace(std::string& out)
{
    if (!refill()) {
        call_.append(out, "{");
        return AfterOpen::TEXT;
    }
    switch (buffer[position]) {
    case '{':
        ++position;
        [[fallthrough]];
    case ' ':
    case '\t':
    case '\n':
    case '\r':
        call_.append(out, "{");
        return AfterOpen::TEXT;
    default:
        // Form feed and vertical tab included: blanks elsewhere, they open a
        // tag here, and templates may rely on it.
        return AfterOpen::TAG;
    }
}

// A '{' inside a tag takes the rest of the template into the tag, each byte of
// it, and the brace itself, turned into a '{'. Templates with this mistake keep
// the outcome that they have always had.
void Input::swallowRest(std::string& out)
{
    do {
        call_.append(out, std::string(buffer.size() - position, '{'));
        position = buffer.size();
    } while (fetchNonEmpty());
    call_.append(out, "{");
}

bool Input::fetchNonEmpty()
{
    // A stream may deliver nothing for a while without being at its end.
    while (fetchStream()) {
        call_.checkTime();
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
    buffer.resize(CHUNK_SIZE);
    ssize_t count = 0;
    call_.run([&] { count = php_stream_read(stream, buffer.data(), CHUNK_SIZE); });
    buffer.resize(count > 0 ? count : 0);
    return true;
}

bool Input::exhausted()
{
    return stringMode ? ended : position == buffer.size() && atEndOfStream();
}

bool Input::atEndOfStream()
{
    bool atEnd = false;
    call_.run([&] { atEnd = php_stream_eof(stream); });
    return atEnd;
}
