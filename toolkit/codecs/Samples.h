#pragma once

#include <kelcore/platform.h>

#include <cstddef>
#include <cstdint>

/// @file
/// From the samples of picture files to the pixels of packed bitmaps. Every function handles a run of @p count pixels.
/// `from` and `to` may be the same run where the pixels are of one size.
namespace kel::toolkit {

/// 16 bits to 8, to the nearest.
constexpr BYTE Reduce16(std::uint32_t sample) {
    return static_cast<BYTE>((sample * 255 + 32895) >> 16);
}

/// a times b, both in 1/255, to the nearest.
constexpr BYTE Times255(std::uint32_t a, std::uint32_t b) {
    const std::uint32_t product = a * b + 128;
    return static_cast<BYTE>((product + (product >> 8)) >> 8);
}

/// Runs of 8-bit samples, pixels one behind the other.
using ConvertRun = void (*)(const BYTE* from, BYTE* to, std::size_t count);

void SwapRgb(const BYTE* from, BYTE* to, std::size_t count);  ///< red, green, blue to 24 bits
void SwapRgba(const BYTE* from, BYTE* to, std::size_t count); ///< red, green, blue, straight alpha to 32 bits
/// Red, green, blue that are multiplied with alpha to 32 bits with straight alpha.
void UnmultiplyRgba(const BYTE* from, BYTE* to, std::size_t count);
void GreyAlpha(const BYTE* from, BYTE* to, std::size_t count); ///< grey, straight alpha to 32 bits
/// Grey that is multiplied with alpha to 32 bits with straight alpha.
void UnmultiplyGreyAlpha(const BYTE* from, BYTE* to, std::size_t count);
/// Cyan, magenta, yellow, black as amounts of ink to 24 bits: each colour is (1 - ink) * (1 - black). No profile is
/// used.
void Cmyk(const BYTE* from, BYTE* to, std::size_t count);
/// The same of amounts of light, 255 for no ink, as JPEG files with an Adobe marker have them.
void InvertedCmyk(const BYTE* from, BYTE* to, std::size_t count);
/// Pixels of 2 bits to pixels of 4.
inline void Widen2To4(const BYTE* from, BYTE* to, std::size_t count) {
    for (std::size_t i = 0; i < count; i += 2) {
        const int two = from[i / 4] >> (4 - i % 4 * 2);
        to[i / 2] = static_cast<BYTE>((two & 0xC) << 2 | (two & 3));
    }
}

/// A table of greys from black to white; entries past the first @p shades are left alone.
void FillGreys(RGBQUAD* colours, std::size_t shades, bool whiteFirst = false);

} // namespace kel::toolkit
