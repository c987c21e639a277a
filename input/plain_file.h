// A file of the file system, opened and read past PHP's streams: the stream around
// it was a third of what an included file of usual size costs.
#ifndef TEMPLATE_INPUT_PLAIN_FILE_H
#define TEMPLATE_INPUT_PLAIN_FILE_H

#include <cstddef>
#include <string>

#include "module/engine.h"

class PlainFile final {
public:
    // A closed one.
    PlainFile() = default;
    PlainFile(const PlainFile&) = delete;
    PlainFile& operator=(const PlainFile&) = delete;
    ~PlainFile();

    // Opens the file that PHP's streams would open by this name, which holds no
    // NUL byte, searching the include path. False, without a word, where that
    // fails or where anything but the file system has a say in it: it is for the
    // stream then to be opened, or to tell what is wrong.
    bool open(const std::string& name, EngineCall& call);
    bool isOpen() const { return descriptor_ >= 0; }

    // Reads `size` bytes, or what there is until the end. What cannot be read is
    // the end as well, with PHP's notice. A signal cuts it short of either.
    size_t read(char* to, size_t size, EngineCall& call);
    bool atEnd() const { return atEnd_; }

    // What the file system says, which is no promise.
    size_t size() const;

private:
    static void notice(size_t size, EngineCall& call);

    int descriptor_ = -1;
    bool atEnd_ = false;
};

#endif
