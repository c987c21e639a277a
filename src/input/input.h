// The template source reader: hands out the template's text in runs that end at
// a brace, with the brace escapes resolved. Knows nothing of tags.
#ifndef TEMPLATE_INPUT_INPUT_H
#define TEMPLATE_INPUT_INPUT_H

#include <cstddef>
#include <string>
#include <string_view>

#include "engine/stream_memory.h"
#include "engine/text.h"
#include "input/plain_file.h"

class Input final {
public:
    // Reads the string `source` itself (string mode), or what it names for PHP's
    // streams, with the include path searched. Throws FileNotOpened when that cannot
    // be opened, also for a name with a NUL byte, NestingTooDeep when there is no
    // stack to open it, and CallAbandoned when a fatal error came up.
    Input(const String& source, bool stringMode);
    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;
    ~Input();

    // Appends text to `out` until `mark` is met, '{' for the text before a tag or
    // '}' for a tag's content. The mark is consumed and not appended. False at
    // the end of the input.
    bool fillBufferTillMark(Text& out, char mark);
    bool fillBufferTillMark(std::string& out, char mark);

    // The content of the tag that the input is in, which its closing brace or the
    // end of the input ends: fillBufferTillMark('}') mostly without a copy. The
    // view points into the buffer, until the next read, or into `storage`.
    std::string_view readTag(Text& storage);

    // Replaces the buffer, which must be used up, with the next chunk of input.
    // False when there is no more.
    bool fetchStream();

    // Nothing is left to read, which may have to be asked of a stream.
    bool exhausted();
    // The same, as far as it is known.
    bool atEnd() const
    {
        return position == buffer.size() && (stringMode || (file_.isOpened() && file_.atEnd()));
    }

    // Reads the first chunk of a file, and tells how much text is likely to come.
    size_t readAhead();

    bool stringMode;
    bool ended = false;
    // None also where the file is read without one.
    php_stream* stream = nullptr;
    size_t position = 0;
    Buffer buffer;

private:
    enum class AfterOpen { TAG, TEXT };

    void open(const String& source);
    void openStream(const String& source);
    bool refill() { return position < buffer.size() || fetchNonEmpty(); }
    bool fetchNonEmpty();
    AfterOpen resolveOpenBrace(Text& out);
    void swallowRest(Text& out);
    bool atEndOfStream();
    template <size_t SIZE>
    void readChunk();
    void assignBuffer(std::string_view bytes);
    size_t read(char* to, size_t size);

    PlainFile file_;
    StreamMemory streamMemory_;
    bool started_ = false;
};

#endif
