#pragma once

/// @file
/// Stored pixels and colours, and the default colour tables.

#include "platform/gdi/Surface.h"

#include <array>

namespace kel::platform {

constexpr COLORREF Swapped(std::uint32_t colour) {
    return (colour & 0xFF) << 16 | (colour & 0xFF00) | (colour >> 16 & 0xFF);
}

constexpr COLORREF ColourOf(const RGBQUAD& entry) {
    return RGB(entry.rgbRed, entry.rgbGreen, entry.rgbBlue);
}

/// The plain colour that a caller's COLORREF means: an index of the default palette is looked up, flags are dropped.
COLORREF Resolved(COLORREF colour);

constexpr RGBQUAD EntryOf(COLORREF colour) {
    return {GetBValue(colour), GetGValue(colour), GetRValue(colour), 0};
}

/// The colour of a pixel that is stored as @p value. Indices beyond the table are black, and so are the zeros of a
/// device-dependent monochrome surface, whose ones are white.
COLORREF ColourOfPixel(const Surface& surface, std::uint32_t value);

/// The middle of the cell of 8 x 8 x 8 colours that @p colour lies in. Pixels that are colours are found in a table by
/// their cells: those of pictures in tables of 256 entries, and blended ones in tables of 16 as well. Measured on Wine.
/// Colours that a caller names, and entries of other tables, are found exactly.
constexpr COLORREF CellOf(COLORREF colour) {
    return (colour & 0xF8F8F8) | 0x040404;
}

/// What is stored for @p colour: the nearest entry of the table, or the bits of each channel that fit.
std::uint32_t PixelOfColour(const Surface& surface, COLORREF colour);

/// The first of the entries with the smallest sum of squared distances. @return 0 if there is no entry.
int NearestEntry(const RGBQUAD* table, int size, COLORREF colour);

/// The colours of device-dependent bitmaps and of tables that nobody gave: black and white, the 16 colours, and the 20
/// static colours around a cube. @param bits 1, 4 or 8. Has 2 to the power @p bits entries.
const RGBQUAD* DefaultTable(int bits);

/// The 20 entries of the default palette.
const std::array<RGBQUAD, 20>& DefaultPalette();

} // namespace kel::platform
