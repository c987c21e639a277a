// A text that grows: the text of a page, in the PHP string that it is returned as.
#ifndef TEMPLATE_ENGINE_TEXT_H
#define TEMPLATE_ENGINE_TEXT_H

#include <cstddef>
#include <string_view>
#include <utility>

#include "engine/bytes.h"
#include "engine/call.h"

class Text final {
public:
    Text() = default;
    // Holds `kept` itself, which must live as long as the text.
    explicit Text(std::string_view kept)
        : begin_(const_cast<char*>(kept.data())),
          end_(begin_ + kept.size())
    {
    }
    Text(Text&& other) noexcept
        : begin_(std::exchange(other.begin_, nullptr)),
          end_(std::exchange(other.end_, nullptr)),
          limit_(std::exchange(other.limit_, nullptr))
    {
    }
    Text& operator=(Text&& other) noexcept
    {
        std::swap(begin_, other.begin_);
        std::swap(end_, other.end_);
        std::swap(limit_, other.limit_);
        return *this;
    }
    ~Text()
    {
        if (limit_ != nullptr) {
            efree(string());
        }
    }

    size_t size() const { return end_ - begin_; }
    bool empty() const { return begin_ == end_; }
    std::string_view view() const { return {begin_, end_}; }
    operator std::string_view() const { return view(); }

    void append(std::string_view piece) { finish(copyText(piece, room(piece.size()))); }
    void append(char byte)
    {
        char* const to = room(1);
        *to = byte;
        finish(to + 1);
    }
    void append(size_t count, char byte)
    {
        finish(static_cast<char*>(std::memset(room(count), byte, count)) + count);
    }

    // The end of the text, with room for `bytes` more; who writes there says with
    // finish() where the text ends now. limit() is the end of all the room.
    char* room(size_t bytes)
    {
        if (UNEXPECTED(static_cast<size_t>(limit_ - end_) < bytes || limit_ == nullptr)) {
            grow(bytes);
        }
        return end_;
    }
    char* limit() const { return limit_; }
    void finish(char* end) { end_ = end; }

    // Makes room for `bytes` more at once.
    void reserve(size_t bytes) { room(bytes); }
    // How much may be reserved on a guess: should it be wrong, the memory limit
    // leaves enough for the rest.
    static size_t spareRoom();

    // Empty again, with the room that it has.
    void clear() { end_ = begin_; }

    // The text as a PHP string; nothing is left here.
    EngineString release();

private:
    zend_string* string() const
    {
        return reinterpret_cast<zend_string*>(begin_ - offsetof(zend_string, val));
    }
    void grow(size_t more);
    void cut();

    char* begin_ = nullptr;
    char* end_ = nullptr;
    // Null where the text lies in memory that is not its own. One byte more is
    // there, for the NUL behind a PHP string.
    char* limit_ = nullptr;
};

#endif
