// What an escaping function of PHP's makes of each byte, for text that is
// escaped byte by byte: its exact output in one pass.
#ifndef TEMPLATE_ESCAPE_BYTE_ESCAPER_H
#define TEMPLATE_ESCAPE_BYTE_ESCAPER_H

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <string_view>

#include "data/value_text.h"
#include "engine/text.h"

class ByteEscaper final {
public:
    // Asks `escape` for its output on each byte of its own; it takes a text and
    // returns a new engine string. Throws CallAbandoned on a fatal error.
    template <class Escape>
    explicit ByteEscaper(Escape escape)
    {
        std::array<bool, 256> changes{};
        for (size_t byte = 1; byte < entries_.size(); ++byte) {
            const char text = static_cast<char>(byte);
            const EngineString escaped = EngineCall::current().makeString(
                [&] { return escape(std::string_view(&text, 1)); });
            entries_[byte] = Entry(escaped.text());
            longest_ = std::max<size_t>(longest_, escaped.text().size());
            changes[byte] = escaped.text() != std::string_view(&text, 1);
        }
        prepareMasks(changes);
    }

    // Appends `text`, which must hold no NUL, escaped.
    void append(Text& out, std::string_view text) const
    {
        // In pieces, so that little room is asked for that stays unused.
        constexpr size_t PIECE = 256;
        while (!text.empty()) {
            EngineCall::current().checkTime();
            const std::string_view piece = text.substr(0, PIECE);
            out.finish(escape(piece, text.data() + text.size(), out.room(mostOf(piece.size()))));
            text.remove_prefix(piece.size());
        }
    }

    // The room that escaping a text of this size takes.
    size_t mostOf(size_t size) const { return size * longest_ + BEHIND; }

    // Writes `text` escaped to `to`, with room for mostOf() it, and returns the end.
    // Writes more bytes than it needs, without asking how many: that is what makes it
    // fast. Up to `readable` there are bytes to read.
    [[gnu::always_inline]] char* escape(std::string_view text, const char* readable, char* to) const
    {
        if (!fewChange_) {
            for (const char byte : text) {
                to = escapeByte(byte, to);
            }
            return to;
        }
        while (text.size() >= 64) {
            to = escapeMarked(text.substr(0, 64), readable, maskOf64(text.data()), to);
            text.remove_prefix(64);
        }
        return escapeMarked(text, readable, maskOfRest(text), to);
    }

    // The same for a string of up to sixteen bytes, which holds no NUL either.
    [[gnu::always_inline]] char* escapeShort(const zend_string* string, char* to) const
    {
        if (EXPECTED(fewChange_)) {
            const unsigned mask = bitsOfShort(string, mayChange(lastBytes(string)));
            if (EXPECTED(mask == 0)) {
                return copyShortString(string, to);
            }
        }
        const std::string_view text(ZSTR_VAL(string), ZSTR_LEN(string));
        return escape(text, text.data() + text.size(), to);
    }

private:
    static constexpr size_t BEHIND = 64;

    // What becomes of one byte. No entity of a single byte has a longer name.
    struct Entry {
        Entry() = default;
        explicit Entry(std::string_view text) : size(static_cast<uint8_t>(text.size()))
        {
            ZEND_ASSERT(text.size() <= sizeof bytes);
            text.copy(bytes, sizeof bytes);
        }

        char bytes[15] = {};
        uint8_t size = 0;
    };

    char* escapeByte(char byte, char* to) const
    {
        const Entry& replacement = entries_[static_cast<unsigned char>(byte)];
        std::memcpy(to, replacement.bytes, sizeof replacement.bytes);
        return to + replacement.size;
    }

    // `mask` has a bit for each byte of `text` that may change.
    [[gnu::always_inline]] char* escapeMarked(
        std::string_view text, const char* readable, uint64_t mask, char* to) const
    {
        const char* from = text.data();
        for (; mask != 0; mask &= mask - 1) {
            const char* const next = text.data() + std::countr_zero(mask);
            to = escapeByte(*next, copyRun(from, next, readable, to));
            from = next + 1;
        }
        return copyRun(from, text.data() + text.size(), readable, to);
    }

    // Copies [from, end), which is 64 bytes at most. Mostly it is shorter than 32, and
    // how much shorter decides no branch.
    [[gnu::always_inline]] static char* copyRun(
        const char* from, const char* end, const char* readable, char* to)
    {
        if (UNEXPECTED(readable - from < 64)) {
            return copyText({from, end}, to);
        }
        store16(load16(from), to);
        store16(load16(from + 16), to + 16);
        if (UNEXPECTED(end - from > 32)) {
            store16(load16(from + 32), to + 32);
            store16(load16(from + 48), to + 48);
        }
        return to + (end - from);
    }

    uint64_t maskOf64(const char* from) const
    {
        return uint64_t{bitsOf(mayChange(load16(from)))}
        | uint64_t{bitsOf(mayChange(load16(from + 16)))} << 16
            | uint64_t{bitsOf(mayChange(load16(from + 32)))} << 32
            | uint64_t{bitsOf(mayChange(load16(from + 48)))} << 48;
    }

    // Of less than 64 bytes.
    uint64_t maskOfRest(std::string_view text) const
    {
        const size_t size = text.size();
        if (size < 16) {
            return size != 0 ? bitsOf(mayChange(loadLess(text.data(), size))) : 0;
        }
        uint64_t mask = 0;
        size_t at = 0;
        for (; at + 16 <= size; at += 16) {
            mask |= uint64_t{bitsOf(mayChange(load16(text.data() + at)))} << at;
        }
        // The last sixteen bytes, of which some have been looked at.
        return mask | uint64_t{bitsOf(mayChange(load16(text.data() + size - 16)))} << (size - 16);
    }

    // One to fifteen bytes with zeros behind them. Put together in registers: in
    // memory, loading the block would have to wait for the bytes to be stored.
    static Bytes16 loadLess(const char* from, size_t size)
    {
        using Halves = uint64_t __attribute__((vector_size(16)));
        const auto load = [](const char* at, auto value) {
            std::memcpy(&value, at, sizeof value);
            return uint64_t{value};
        };
        // Two pieces that overlap, or the same twice.
        const auto join = [&](auto piece) {
            return load(from, piece)
                | load(from + size - sizeof piece, piece) << 8 * (size - sizeof piece);
        };
        if (size >= 8) {
            const uint64_t last = load(from + size - 8, uint64_t{});
            return reinterpret_cast<Bytes16>(
                Halves{load(from, uint64_t{}), last >> 8 * (15 - size) >> 8});
        }
        const uint64_t joined = size >= 4 ? join(uint32_t{})
            : size >= 2                   ? join(uint16_t{})
                                          : join(uint8_t{});
        return reinterpret_cast<Bytes16>(Halves{joined, 0});
    }

    Bytes16 mayChange(Bytes16 block) const
    {
        return (block == changing_[0]) | (block == changing_[1]) | (block == changing_[2])
            | (block == changing_[3]) | ((block & nonAscii_) < 0);
    }

    // Many bytes are looked at together when few ASCII bytes change, and the
    // others are looked up, or all of them stay.
    void prepareMasks(const std::array<bool, 256>& changes)
    {
        size_t count = 0;
        bool nonAscii = false;
        for (size_t byte = 1; byte < changes.size(); ++byte) {
            if (changes[byte] && byte >= 0x80) {
                nonAscii = true;
            } else if (changes[byte] && count++ < changing_.size()) {
                changing_[count - 1] = allOf(static_cast<char>(byte));
            }
        }
        for (size_t unused = count; unused < changing_.size(); ++unused) {
            changing_[unused] = changing_[0];
        }
        fewChange_ = count > 0 && count <= changing_.size();
        nonAscii_ = allOf(nonAscii ? '\x80' : '\0');
    }

    std::array<Bytes16, 4> changing_;
    Bytes16 nonAscii_;
    std::array<Entry, 256> entries_{};
    size_t longest_ = 0;
    bool fewChange_ = false;
};

#endif
