#pragma once

/// @file
/// Pixel memory as every part of the raster layer sees it.

#include <kelcore/platform/bitmaps.h>

#include <cstddef>
#include <cstdint>

namespace kel::platform {

/// How a pixel is stored. Rgb555, Rgb565, Bgr24 and Bgrx32 are little-endian numbers with blue in the lowest bits;
/// pixels of less than a byte begin at the top of theirs.
enum class PixelFormat : std::uint8_t { Mono, Indexed4, Indexed8, Rgb555, Rgb565, Bgr24, Bgrx32 };

constexpr int BitsPerPixel(PixelFormat format) {
    constexpr int kBits[] = {1, 4, 8, 16, 16, 24, 32};
    return kBits[static_cast<int>(format)];
}

constexpr bool IsIndexed(PixelFormat format) {
    return format <= PixelFormat::Indexed8;
}

/// A view of pixels that somebody else owns.
struct Surface {
    std::uint8_t* top = nullptr; ///< the first byte of the top row
    std::ptrdiff_t stride = 0;   ///< bytes from a row to the one below; negative when the bottom row comes first
    int width = 0;
    int height = 0;
    PixelFormat format = PixelFormat::Mono;
    const RGBQUAD* table = nullptr; ///< of an indexed format; null for a device-dependent monochrome bitmap
    int tableSize = 0;              ///< entries; may be fewer than the format has indices
    bool deviceDependent = false;   ///< a monochrome one takes its colours from the contexts

    std::uint8_t* Row(int y) const { return top + y * stride; }
};

} // namespace kel::platform
