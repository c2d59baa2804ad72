#pragma once

#include "tests/bitmap/MemoryPicture.h"

#include <doctest/doctest.h>

#include <limits>
#include <tuple>
#include <utility>

constexpr int kMost = std::numeric_limits<int>::max();
constexpr int kLeast = std::numeric_limits<int>::min();
constexpr Rect kEverything(kLeast, kLeast, kMost, kMost);

/// Sets a pixel of depth 8, 24 or 32 from an index or a COLORREF.
inline void SetPixelOf(IBitmap& picture, int x, int y, unsigned long value) {
    const int bytes = picture.GetBitsPerPixel() / 8;
    const unsigned int stored = bytes == 1 ? static_cast<unsigned int>(value) : BitmapBase::DibRGB(value);
    std::memcpy(RowOf(picture, y) + x * bytes, &stored, bytes == 1 ? 1 : 3);
}

/// Makes a picture of depth 24 or 32 whose pixels all differ; the first one is @p first.
template <class Picture = GDIBitmap>
Picture Painted(const Size& size, int bits, unsigned long first = 0x010203) {
    Picture picture;
    picture.CreateBitmap(size, bits);
    for (int i = 0; i < size.cx * size.cy; ++i)
        SetPixelOf(picture, i % size.cx, i / size.cx, (first + 0x010203UL * static_cast<unsigned>(i)) & 0xFFFFFF);
    return picture;
}

/// Compares every pixel with what @p expected answers for its column and row.
template <class Expected>
void CheckPixels(const IBitmap& picture, Expected expected) {
    const Size size = picture.GetDimension();
    REQUIRE(size.cx * size.cy > 0);
    for (int i = 0; i < size.cx * size.cy; ++i) {
        CAPTURE(i % size.cx);
        CAPTURE(i / size.cx);
        REQUIRE(picture.GetPixel(i % size.cx, i / size.cx) == expected(i % size.cx, i / size.cx));
    }
}

/// For CheckPixels: the pixels of another picture.
inline auto PixelsOf(const IBitmap& picture) {
    return [&picture](int x, int y) { return picture.GetPixel(x, y); };
}

/// The same picture in the display's own format.
inline GDIBitmap OnDevice(const GDIBitmap& picture) {
    GDIBitmap device;
    REQUIRE(device.CreateBitmap(picture, picture.GetDimension(), 0, IBitmap::BM_Stretch, {1, 1}, 0));
    return device;
}

/// The picture in depth 24, whose colours GetPixel tells.
inline GDIBitmap InColours(const IBitmap& picture) {
    GDIBitmap rgb;
    REQUIRE(rgb.CreateBitmap(picture, picture.GetDimension(), 24, IBitmap::BM_Stretch, {1, 1}, 0));
    return rgb;
}
