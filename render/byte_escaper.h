// What an escaping function of PHP's makes of each byte, for text that is
// escaped byte by byte: its exact output in one pass.
#ifndef TEMPLATE_RENDER_BYTE_ESCAPER_H
#define TEMPLATE_RENDER_BYTE_ESCAPER_H

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string>
#include <string_view>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include "module/engine.h"

class ByteEscaper final {
public:
    // Asks `escape` for its output on each byte of its own; it takes a text and
    // returns a new engine string. Throws CallAbandoned on a fatal error.
    template <class Escape>
    ByteEscaper(EngineCall& call, Escape escape)
    {
        std::array<bool, 256> changes{};
        for (size_t byte = 1; byte < entries_.size(); ++byte) {
            const char text = static_cast<char>(byte);
            const EngineString escaped
                = call.makeString([&] { return escape(std::string_view(&text, 1)); });
            entries_[byte] = Entry(escaped.text());
            longest_ = std::max<size_t>(longest_, escaped.text().size());
            changes[byte] = escaped.text() != std::string_view(&text, 1);
        }
#ifdef __SSE2__
        prepareBlocks(changes);
#endif
    }

    // Appends `text`, which must hold no NUL, escaped.
    void append(EngineCall& call, std::string& out, std::string_view text) const
    {
        // In pieces, so that little room is asked for that stays unused; and a
        // whole block may be copied behind the last byte.
        constexpr size_t PIECE = 256;
        while (!text.empty()) {
            const std::string_view piece = text.substr(0, PIECE);
            call.write(out, piece.size() * longest_ + sizeof Entry::bytes + 1,
                [&](char* to) { return escape(piece, to); });
            text.remove_prefix(piece.size());
        }
    }

private:
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

    // Writes `text` escaped to `to` and returns the end of it. Copies more bytes
    // than it needs, without asking how many: that is what makes it fast.
    char* escape(std::string_view text, char* to) const
    {
        const char* from = text.data();
        const char* const end = from + text.size();
#ifdef __SSE2__
        if (fewChange_) {
            return escapeBlocks(from, end, to);
        }
#endif
        while (from < end) {
            to = escapeByte(*from++, to);
        }
        return to;
    }

    char* escapeByte(char byte, char* to) const
    {
        const Entry& replacement = entries_[static_cast<unsigned char>(byte)];
        std::memcpy(to, replacement.bytes, sizeof replacement.bytes);
        return to + replacement.size;
    }

#ifdef __SSE2__
    // Sixteen bytes at a time up to the next one that may change.
    char* escapeBlocks(const char* from, const char* end, char* to) const
    {
        constexpr ptrdiff_t BLOCK = sizeof(__m128i);
        const auto pass = [&](__m128i block, ptrdiff_t size) {
            _mm_storeu_si128(reinterpret_cast<__m128i*>(to), block);
            const ptrdiff_t clean = std::min<ptrdiff_t>(size, std::countr_zero(mayChange(block)));
            from += clean;
            to += clean;
            if (clean < size) {
                to = escapeByte(*from++, to);
            }
        };
        while (end - from >= BLOCK) {
            pass(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from)), BLOCK);
        }
        while (from < end) {
            pass(loadShort(from, end - from), end - from);
        }
        return to;
    }

    // One to fifteen bytes with zeros behind them. Put together in registers: in
    // memory, loading the block would have to wait for the bytes to be stored.
    static __m128i loadShort(const char* from, size_t size)
    {
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
            return _mm_set_epi64x(static_cast<int64_t>(last >> 8 * (15 - size) >> 8),
                static_cast<int64_t>(load(from, uint64_t{})));
        }
        const uint64_t joined = size >= 4 ? join(uint32_t{})
            : size >= 2                   ? join(uint16_t{})
                                          : join(uint8_t{});
        return _mm_set_epi64x(0, static_cast<int64_t>(joined));
    }

    unsigned mayChange(__m128i block) const
    {
        const auto is = [&](size_t i) { return _mm_cmpeq_epi8(block, changing_[i]); };
        const __m128i found = _mm_or_si128(_mm_or_si128(is(0), is(1)), _mm_or_si128(is(2), is(3)));
        return static_cast<unsigned>(
            _mm_movemask_epi8(_mm_or_si128(found, _mm_and_si128(block, nonAscii_))));
    }

    // Sixteen bytes are looked at together when few ASCII bytes change, and the
    // others are looked up, or all of them stay.
    void prepareBlocks(const std::array<bool, 256>& changes)
    {
        size_t count = 0;
        bool nonAscii = false;
        for (size_t byte = 1; byte < changes.size(); ++byte) {
            if (changes[byte] && byte >= 0x80) {
                nonAscii = true;
            } else if (changes[byte] && count++ < std::size(changing_)) {
                changing_[count - 1] = _mm_set1_epi8(static_cast<char>(byte));
            }
        }
        for (size_t unused = count; unused < std::size(changing_); ++unused) {
            changing_[unused] = changing_[0];
        }
        fewChange_ = count > 0 && count <= std::size(changing_);
        nonAscii_ = _mm_set1_epi8(nonAscii ? '\x80' : 0);
    }

    __m128i changing_[4];
    __m128i nonAscii_;
    bool fewChange_ = false;
#endif

    std::array<Entry, 256> entries_{};
    size_t longest_ = 0;
};

// PHP's htmlentities() and htmlspecialchars() in ISO-8859-1, made at their first
// use and kept for the life of the process.
const ByteEscaper& htmlentitiesEscaper(EngineCall& call);
const ByteEscaper& htmlspecialcharsEscaper(EngineCall& call);

#endif
