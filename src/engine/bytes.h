// Sixteen bytes at a time, for every processor that the compilers know vectors of,
// and copies of short texts.
#ifndef TEMPLATE_ENGINE_BYTES_H
#define TEMPLATE_ENGINE_BYTES_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#elif defined(__aarch64__)
#include <arm_neon.h>
#endif

using Bytes16 = signed char __attribute__((vector_size(16)));

inline Bytes16 allOf(char byte)
{
    return Bytes16{} + static_cast<signed char>(byte);
}

inline Bytes16 load16(const char* from)
{
    Bytes16 bytes;
    std::memcpy(&bytes, from, sizeof bytes);
    return bytes;
}

inline void store16(Bytes16 bytes, char* to)
{
    std::memcpy(to, &bytes, sizeof bytes);
}

// A bit for each byte of a comparison's result, the first byte's the lowest.
inline unsigned bitsOf(Bytes16 found)
{
#if defined(__SSE2__)
    return static_cast<unsigned>(_mm_movemask_epi8(reinterpret_cast<__m128i>(found)));
#elif defined(__aarch64__)
    const uint8x16_t weights = {1, 2, 4, 8, 16, 32, 64, 128, 1, 2, 4, 8, 16, 32, 64, 128};
    const uint8x16_t bits = vandq_u8(reinterpret_cast<uint8x16_t>(found), weights);
    return vaddv_u8(vget_low_u8(bits)) | unsigned{vaddv_u8(vget_high_u8(bits))} << 8;
#else
    unsigned bits = 0;
    for (unsigned i = 0; i < 16; ++i) {
        bits |= static_cast<unsigned>(found[i] < 0) << i;
    }
    return bits;
#endif
}

// Whether any of the sixteen bytes was found.
inline bool anyOf(Bytes16 found)
{
#if defined(__aarch64__)
    return vmaxvq_u8(reinterpret_cast<uint8x16_t>(found)) != 0;
#else
    return bitsOf(found) != 0;
#endif
}

// Copies up to SHORT_TEXT bytes and returns the end of the copy: most pieces of a
// page are short, and calling memcpy() for each costs more than the copying.
constexpr size_t SHORT_TEXT = 32;
inline char* copyShort(std::string_view piece, char* to)
{
    const char* from = piece.data();
    const size_t size = piece.size();
    // The two halves may overlap: both are read before either is written.
    const auto copyHalves = [&](auto half) {
        auto last = half;
        std::memcpy(&half, from, sizeof half);
        std::memcpy(&last, from + size - sizeof last, sizeof last);
        std::memcpy(to, &half, sizeof half);
        std::memcpy(to + size - sizeof last, &last, sizeof last);
    };
    if (size >= 16) {
        copyHalves(Bytes16{});
    } else if (size >= 8) {
        copyHalves(uint64_t{});
    } else if (size >= 4) {
        copyHalves(uint32_t{});
    } else if (size >= 2) {
        copyHalves(uint16_t{});
    } else if (size == 1) {
        *to = *from;
    }
    return to + size;
}

// Whether two texts of `size` bytes are the same; keys are short.
inline bool sameBytes(const char* left, const char* right, size_t size)
{
    const auto sameHalves = [&](auto half) {
        const auto differ = [&](size_t at) {
            auto other = half;
            std::memcpy(&half, left + at, sizeof half);
            std::memcpy(&other, right + at, sizeof other);
            return uint64_t{half} ^ uint64_t { other };
        };
        return (differ(0) | differ(size - sizeof half)) == 0;
    };
    if (size >= 8 && size <= 16) {
        return sameHalves(uint64_t{});
    }
    if (size >= 4 && size < 8) {
        return sameHalves(uint32_t{});
    }
    if (size >= 2 && size < 4) {
        return sameHalves(uint16_t{});
    }
    return std::memcmp(left, right, size) == 0;
}

// The same for text in the memory of a call: whole blocks are copied, up to SHORT_TEXT
// bytes, also from behind the text and to behind the copy.
inline char* copyPadded(std::string_view piece, char* to)
{
    if (piece.size() > SHORT_TEXT) {
        std::memcpy(to, piece.data(), piece.size());
    } else if (!piece.empty()) {
        store16(load16(piece.data()), to);
        if (piece.size() > 16) {
            store16(load16(piece.data() + 16), to + 16);
        }
    }
    return to + piece.size();
}

// Copies any text and returns the end of the copy.
inline char* copyText(std::string_view piece, char* to)
{
    if (piece.size() <= SHORT_TEXT) {
        return copyShort(piece, to);
    }
    std::memcpy(to, piece.data(), piece.size());
    return to + piece.size();
}

#endif
