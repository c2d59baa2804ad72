#pragma once

/// @file
/// One pixel at a time, in any format. Slow and plain: the kernels are tested against it.

#include "platform/gdi/Surface.h"

namespace kel::platform {

/// The stored number of a pixel: an index, or the bits of the colour. The coordinates lie inside.
inline std::uint32_t ReadPixel(const Surface& surface, int x, int y) {
    const std::uint8_t* row = surface.Row(y);
    switch (surface.format) {
    case PixelFormat::Mono:
        return row[x >> 3] >> (7 - (x & 7)) & 1;
    case PixelFormat::Indexed4:
        return x & 1 ? row[x >> 1] & 15 : row[x >> 1] >> 4;
    case PixelFormat::Indexed8:
        return row[x];
    case PixelFormat::Rgb555:
    case PixelFormat::Rgb565:
        return row[2 * x] | std::uint32_t{row[2 * x + 1]} << 8;
    case PixelFormat::Bgr24:
        row += 3 * static_cast<std::ptrdiff_t>(x);
        return row[0] | std::uint32_t{row[1]} << 8 | std::uint32_t{row[2]} << 16;
    case PixelFormat::Bgrx32:
        row += 4 * static_cast<std::ptrdiff_t>(x);
        return row[0] | std::uint32_t{row[1]} << 8 | std::uint32_t{row[2]} << 16 | std::uint32_t{row[3]} << 24;
    }
    return 0;
}

/// Stores the low bits of @p value as a pixel.
inline void WritePixel(const Surface& surface, int x, int y, std::uint32_t value) {
    std::uint8_t* row = surface.Row(y);
    const int shift = surface.format == PixelFormat::Mono ? 7 - (x & 7) : 4 * (~x & 1);
    switch (surface.format) {
    case PixelFormat::Mono:
        row[x >> 3] = static_cast<std::uint8_t>((row[x >> 3] & ~(1u << shift)) | (value & 1) << shift);
        break;
    case PixelFormat::Indexed4:
        row[x >> 1] = static_cast<std::uint8_t>((row[x >> 1] & ~(15u << shift)) | (value & 15) << shift);
        break;
    default:
        const int bytes = BitsPerPixel(surface.format) / 8;
        row += bytes * static_cast<std::ptrdiff_t>(x);
        for (int i = 0; i < bytes; ++i)
            row[i] = static_cast<std::uint8_t>(value >> 8 * i);
    }
}

} // namespace kel::platform
