// The template source reader: hands out the template's text in runs that end at
// a brace, with the brace escapes resolved. Knows nothing of tags.
#ifndef TEMPLATE_INPUT_INPUT_H
#define TEMPLATE_INPUT_INPUT_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "input/plain_file.h"
#include "module/engine.h"

class Input final {
public:
    // Reads the string `source` itself (string mode), or what it names for PHP's
    // streams, with the include path searched. Throws std::runtime_error "Could not
    // open file …" when that cannot be opened, also for a name with a NUL byte, and
    // CallAbandoned when a fatal error came up. The call is borrowed and shared with
    // everything that runs inside it.
    Input(const std::string& source, bool stringMode, EngineCall& call);
    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;
    ~Input();

    // Appends text to `out` until `mark` is met, '{' for the text before a tag or
    // '}' for a tag's content. The mark is consumed and not appended. False at
    // the end of the input.
    bool fillBufferTillMark(std::string& out, char mark);

    // The content of the tag that the input is in, which its closing brace or the
    // end of the input ends: fillBufferTillMark('}') mostly without a copy. The
    // view points into the buffer, until the next read, or into `storage`.
    std::string_view readTag(std::string& storage);

    // Replaces the buffer, which must be used up, with the next chunk of input.
    // False when there is no more.
    bool fetchStream();

    // Nothing is left to read.
    bool exhausted();

    // How much text is likely to come, from what can be known beforehand. May
    // read the first chunk.
    size_t expectedSize();

    bool stringMode;
    bool ended = false;
    // None also where the file is read without one.
    php_stream* stream = nullptr;
    size_t position = 0;
    std::vector<char> buffer;

private:
    enum class AfterOpen { TAG, TEXT };

    void openStream(const std::string& source);
    bool refill() { return position < buffer.size() || fetchNonEmpty(); }
    bool fetchNonEmpty();
    AfterOpen resolveOpenBrace(std::string& out);
    void swallowRest(std::string& out);
    bool atEndOfStream();
    template <size_t SIZE>
    void readChunk();
    size_t read(char* to, size_t size);

    EngineCall& call_;
    PlainFile file_;
    bool started_ = false;
    // For a large chunk.
    size_t charged_ = 0;
};

#endif
