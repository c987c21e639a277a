#include "input/input.h"

#include <algorithm>
#include <bit>
#include <stdexcept>
#include <utility>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace {

constexpr size_t CHUNK_SIZE = 4092;
// Of a plain file, where nobody sees how much is asked for: most templates fit
// into the first chunk, the others are long.
constexpr size_t FIRST_FILE_CHUNK_SIZE = 8192;
constexpr size_t LARGE_CHUNK_SIZE = 4 * FIRST_FILE_CHUNK_SIZE;
// What a file says of its size is no promise.
constexpr size_t LARGEST_EXPECTED_FILE = 1024 * 1024;

// The first brace of either kind in [from, end), or `end`. Plain text is most of
// a template, and this is all that is done to it.
const char* findBrace(const char* from, const char* end)
{
#ifdef __SSE2__
    const auto load = [](const char* block) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(block));
    };
    const auto maskOf = [](__m128i found) {
        return static_cast<unsigned>(_mm_movemask_epi8(found));
    };
    // Of ASCII hardly anything but braces lies behind the letters: long stretches
    // are passed four blocks at a time, with a single comparison for each.
    const auto mayHoldBrace = [&](const char* block) {
        return _mm_cmpgt_epi8(load(block), _mm_set1_epi8('{' - 1));
    };
    while (end - from >= 64
        && maskOf(_mm_or_si128(_mm_or_si128(mayHoldBrace(from), mayHoldBrace(from + 16)),
               _mm_or_si128(mayHoldBrace(from + 32), mayHoldBrace(from + 48))))
            == 0) {
        from += 64;
    }
    for (; end - from >= 16; from += 16) {
        const __m128i block = load(from);
        const unsigned mask = maskOf(_mm_or_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8('{')),
            _mm_cmpeq_epi8(block, _mm_set1_epi8('}'))));
        if (mask != 0) {
            return from + std::countr_zero(mask);
        }
    }
#endif
    while (from < end && *from != '{' && *from != '}') {
        ++from;
    }
    return from;
}

bool isLiteralBehindBrace(char byte)
{
    // Form feed and vertical tab are no such blanks: behind a brace they open a
    // tag, and templates may rely on it.
    return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r';
}

// The first brace in [from, end) that is not simply text together with the byte
// behind it: a tag, two braces that stand for one, or a brace at the end.
const char* findBraceInText(const char* from, const char* end)
{
    const char* brace = findBrace(from, end);
    while (end - brace >= 2
        && (*brace == '{' ? isLiteralBehindBrace(brace[1]) : brace[1] != '}')) {
        brace = findBrace(brace + 1, end);
    }
    return brace;
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
    if (source.find('\0') == std::string::npos && !file_.open(source, call_)) {
        openStream(source);
    }
    if (stream == nullptr && !file_.isOpen()) {
        throw std::runtime_error("Could not open file " + source);
    }
}

void Input::openStream(const std::string& source)
{
    call_.attempt([&] {
        stream = php_stream_open_wrapper_ex(source.c_str(), "rb", USE_PATH, nullptr, nullptr);
    });
    if (call_.fatal()) {
        throw CallAbandoned();
    }
}

Input::~Input()
{
    call_.discharge(charged_);
    // After a fatal error the stream is left to the end of the request: closing
    // it could run user code.
    if (stream != nullptr && !call_.fatal()) {
        call_.attempt([this] { php_stream_free(stream, PHP_STREAM_FREE_CLOSE); });
    }
}

std::string_view Input::readTag(std::string& storage)
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

bool Input::fillBufferTillMark(std::string& out, char mark)
{
    while (refill()) {
        const char* const begin = buffer.data() + position;
        const char* const end = buffer.data() + buffer.size();
        const char* const brace
            = mark == '{' ? findBraceInText(begin, end) : findBrace(begin, end);
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
    const bool escaped = buffer[position] == '{';
    if (!escaped && !isLiteralBehindBrace(buffer[position])) {
        return AfterOpen::TAG;
    }
    position += escaped;
    call_.append(out, "{");
    return AfterOpen::TEXT;
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
    if (!file_.isOpen()) {
        readChunk<CHUNK_SIZE>();
    } else if (!std::exchange(started_, true)) {
        readChunk<FIRST_FILE_CHUNK_SIZE>();
    } else {
        if (charged_ == 0) {
            call_.charge(LARGE_CHUNK_SIZE);
            charged_ = LARGE_CHUNK_SIZE;
        }
        buffer.resize(LARGE_CHUNK_SIZE);
        buffer.resize(read(buffer.data(), LARGE_CHUNK_SIZE));
    }
    return true;
}

// Not into the buffer, which would be filled with zeros first: many files are
// shorter than that takes.
template <size_t SIZE>
void Input::readChunk()
{
    char chunk[SIZE];
    buffer.assign(chunk, chunk + read(chunk, SIZE));
}

// How much was read; what cannot be read is nothing.
size_t Input::read(char* to, size_t size)
{
    if (file_.isOpen()) {
        return file_.read(to, size, call_);
    }
    ssize_t count = 0;
    call_.run([&] { count = php_stream_read(stream, to, size); });
    return std::max<ssize_t>(count, 0);
}

bool Input::exhausted()
{
    return stringMode ? ended : position == buffer.size() && atEndOfStream();
}

size_t Input::expectedSize()
{
    if (stringMode) {
        return buffer.size();
    }
    if (!file_.isOpen()) {
        return CHUNK_SIZE;
    }
    if (!started_) {
        fetchStream();
    }
    if (buffer.size() < FIRST_FILE_CHUNK_SIZE) {
        return buffer.size();
    }
    return std::clamp(file_.size(), buffer.size(), LARGEST_EXPECTED_FILE);
}

bool Input::atEndOfStream()
{
    if (file_.isOpen()) {
        return file_.atEnd();
    }
    bool atEnd = false;
    call_.run([&] { atEnd = php_stream_eof(stream); });
    return atEnd;
}
