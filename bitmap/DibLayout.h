#pragma once

#include <kelcore/platform.h>

#include <cstdint>
#include <limits>

/// @file
/// The arithmetic of device-independent bitmaps, wide enough for every header that bytes can spell.
namespace kel {

/// What the pixel memory of one picture may take, in bytes.
constexpr std::int64_t kMostPixelBytes = std::numeric_limits<std::int32_t>::max();

/// Bytes of a row, a multiple of 4.
constexpr std::int64_t RowBytes(std::int64_t width, int bits) {
    return (width * bits + 31) / 32 * 4;
}

/// Whether a picture with these measures has a pixel and its pixel memory can be held.
constexpr bool PixelsFit(std::int64_t width, std::int64_t height, int bits) {
    if (width < 1 || height < 1 || bits < 1)
        return false;
    const std::int64_t row = RowBytes(width, bits);
    return row <= kMostPixelBytes && height <= kMostPixelBytes / row;
}

/// Bytes of the colour table. Bit-field masks are none.
constexpr std::int64_t TableBytes(const BITMAPINFOHEADER& header) {
    if (header.biClrUsed != 0)
        return 4 * static_cast<std::int64_t>(header.biClrUsed);
    return header.biBitCount <= 8 ? std::int64_t{4} << header.biBitCount : 0;
}

} // namespace kel
