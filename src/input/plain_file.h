// A file of the file system, opened and read past PHP's streams: the stream around
// it was a third of what an included file of usual size costs.
#ifndef TEMPLATE_INPUT_PLAIN_FILE_H
#define TEMPLATE_INPUT_PLAIN_FILE_H

#include <cstddef>

#include "engine/memory.h"

class PlainFile final {
public:
    enum class Opening {
        OPENED,
        // A stream is to be opened by the name, or to tell what is wrong.
        LEFT_TO_STREAM,
        // A signal has ended the wait for the file.
        INTERRUPTED,
    };

    // A closed one.
    PlainFile() = default;
    PlainFile(const PlainFile&) = delete;
    PlainFile& operator=(const PlainFile&) = delete;
    ~PlainFile() { close(); }

    // Opens the file that PHP's streams would open by this name, which holds no
    // NUL byte, searching the include path; not where that fails or where anything
    // but the file system has a say in it.
    Opening open(const String& name);
    bool isOpened() const { return opened_; }

    // Reads `size` bytes, or what there is until the end, at which the file is closed:
    // what it includes may include much more. What cannot be read counts as the
    // end, with PHP's notice. A signal cuts the reading short.
    size_t read(char* to, size_t size);
    bool atEnd() const { return descriptor_ < 0; }

    // What is left to read, as the file system says, which is no promise.
    size_t sizeLeft() const;

private:
    void close();
    bool isWhollyRead();
    void notice(size_t size);

    int descriptor_ = -1;
    bool opened_ = false;
    size_t position_ = 0;
};

#endif
