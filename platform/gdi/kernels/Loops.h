#pragma once

/// @file
/// The loops over rows in plain terms. They are compiled into their callers: for any processor on the plain road, for
/// AVX2 where the road of vectors comes to the end of a row.

#include <kelcore/platform/blits.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

#define KEL_LOOP __attribute__((always_inline)) inline
// Rows may be the same, but never overlap otherwise.
#ifdef __clang__
#define KEL_SAME_OR_APART _Pragma("clang loop vectorize(assume_safety)")
#else
#define KEL_SAME_OR_APART _Pragma("GCC ivdep")
#endif

namespace kel::platform {

KEL_LOOP std::uint32_t ColourAt(const std::uint8_t* pixel) {
    return pixel[0] | std::uint32_t{pixel[1]} << 8 | std::uint32_t{pixel[2]} << 16;
}

template <class Change>
KEL_LOOP void ForBytes(std::uint8_t* to, const std::uint8_t* from, std::size_t count, Change change) {
    KEL_SAME_OR_APART
    for (std::size_t i = 0; i < count; ++i)
        to[i] = static_cast<std::uint8_t>(change(to[i], from[i]));
}

KEL_LOOP void CombineAny(std::uint8_t* to, const std::uint8_t* source, const std::uint8_t* pattern, std::size_t count,
                         unsigned rop) {
    KEL_SAME_OR_APART
    for (std::size_t i = 0; i < count; ++i) {
        const unsigned s = source[i];
        const unsigned p = pattern[i];
        const unsigned t = to[i];
        unsigned result = 0;
        for (unsigned index = 0; index < 8; ++index)
            result |= (index & 4 ? p : ~p) & (index & 2 ? s : ~s) & (index & 1 ? t : ~t) & (0u - (rop >> index & 1));
        to[i] = static_cast<std::uint8_t>(result);
    }
}

KEL_LOOP void CombineLoop(std::uint8_t* to, const std::uint8_t* source, const std::uint8_t* pattern, std::size_t count,
                          unsigned rop) {
    switch (rop) {
    case DSTINVERT >> 16:
        return ForBytes(to, to, count, [](unsigned t, unsigned) { return ~t; });
    case SRCAND >> 16:
        return ForBytes(to, source, count, [](unsigned t, unsigned s) { return t & s; });
    case SRCPAINT >> 16:
        return ForBytes(to, source, count, [](unsigned t, unsigned s) { return t | s; });
    case SRCINVERT >> 16:
        return ForBytes(to, source, count, [](unsigned t, unsigned s) { return t ^ s; });
    case NOTSRCCOPY >> 16:
        return ForBytes(to, source, count, [](unsigned, unsigned s) { return ~s; });
    case PATINVERT >> 16:
        return ForBytes(to, pattern, count, [](unsigned t, unsigned p) { return t ^ p; });
    default:
        return CombineAny(to, source, pattern, count, rop);
    }
}

template <std::size_t bytes>
KEL_LOOP void CopyUnlessLoop(std::uint8_t* to, const std::uint8_t* from, std::size_t count, std::uint32_t key) {
    for (std::size_t i = 0; i < count; ++i, to += bytes, from += bytes)
        if (ColourAt(from) != (key & 0xFFFFFF))
            std::memcpy(to, from, bytes);
}

KEL_LOOP unsigned Share(unsigned channel, unsigned opacity) {
    return (channel * opacity + 127) / 255;
}

KEL_LOOP void WeighLoop(std::uint8_t* to, const std::uint8_t* from, std::size_t count, unsigned opacity) {
    ForBytes(to, from, count,
             [opacity](unsigned t, unsigned f) { return (f * opacity + t * (255 - opacity) + 127) / 255; });
}

KEL_LOOP void LayLoop(std::uint8_t* to, const std::uint8_t* from, std::size_t count, unsigned opacity) {
    for (std::size_t i = 0; i < count; ++i, to += 4, from += 4) {
        const unsigned rest = 255 - Share(from[3], opacity);
        for (std::size_t k = 0; k < 4; ++k) {
            const unsigned sum = Share(from[k], opacity) + Share(to[k], rest);
            to[k] = static_cast<std::uint8_t>(sum < 255 ? sum : 255);
        }
    }
}

KEL_LOOP void WidenLoop(std::uint8_t* to, const std::uint8_t* from, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i, to += 4, from += 3) {
        const std::uint32_t pixel = ColourAt(from);
        std::memcpy(to, &pixel, sizeof pixel);
    }
}

KEL_LOOP void NarrowLoop(std::uint8_t* to, const std::uint8_t* from, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i, to += 3, from += 4)
        std::memcpy(to, from, 3);
}

} // namespace kel::platform
