#include "bitmap/DibLayout.h"
#include "bitmap/pixels/Pixels.h"

#include <kelcore/bitmap/base.h>

BitmapBase::BitmapBase() = default;

BitmapBase::BitmapBase(const BitmapBase&) : IUnknown(), IBitmapData(), IBitmap() {}

BitmapBase& BitmapBase::operator=(const BitmapBase&) {
    return *this;
}

unsigned int BitmapBase::DibRGB(unsigned long color) {
    return (color & 0xFF) << 16 | (color & 0xFF00) | (color >> 16 & 0xFF);
}

unsigned int BitmapBase::GetWidth() const {
    return static_cast<unsigned int>(GetDimension().cx);
}

unsigned int BitmapBase::GetHeight() const {
    return static_cast<unsigned int>(GetDimension().cy);
}

int BitmapBase::GetScanlineSize() const {
    return static_cast<int>(kel::RowBytes(GetDimension().cx, GetBitsPerPixel()));
}

const BITMAPINFO* BitmapBase::GetBitmapInfo() const {
    return nullptr;
}

const char* BitmapBase::GetBitmapBits() const {
    return nullptr;
}

bool BitmapBase::Detach() {
    return true;
}

int BitmapBase::WidthBytes(int bits) {
    return static_cast<int>(kel::RowBytes(bits, 1));
}

int BitmapBase::CalculateTableSize(const BITMAPINFOHEADER* header) const {
    return static_cast<int>(kel::TableBytes(*header));
}

namespace {

constexpr unsigned long kNoPixel = 0xFFFFFFFF;

unsigned long ReadPixel(const unsigned char* row, int x, int bits) {
    switch (bits) {
    case 1:
        return row[x / 8] >> (7 - x % 8) & 1;
    case 24:
    case 32: {
        const unsigned char* const pixel = row + static_cast<std::ptrdiff_t>(x) * (bits / 8);
        return BitmapBase::DibRGB(pixel[0] | pixel[1] << 8 | pixel[2] << 16);
    }
    default:
        return kNoPixel;
    }
}

} // namespace

unsigned long BitmapBase::GetPixel(int x, int y) const {
    const Size size = GetDimension();
    if (x < 0 || x >= size.cx || y < 0 || y >= size.cy)
        return kNoPixel;
    const auto* const bits = static_cast<const unsigned char*>(LockSurface());
    if (!bits)
        return kNoPixel;
    const std::ptrdiff_t row = size.cy - 1 - y;
    const unsigned long pixel = ReadPixel(bits + row * GetScanlineSize(), x, GetBitsPerPixel());
    UnlockSurface();
    return pixel;
}

bool BitmapBase::ContainsColor(unsigned long color) const {
    const int depth = GetBitsPerPixel();
    if (depth < 24)
        return false;
    const void* const bits = LockSurface();
    if (!bits)
        return false;
    const kel::pixels::ConstRows rows = {static_cast<const unsigned char*>(bits), GetScanlineSize(), GetWidth(),
                                         GetHeight()};
    bool found = false;
    if (depth == 24)
        found = kel::pixels::Contains24(rows, DibRGB(color));
    else if (depth == 32)
        found = kel::pixels::Contains32(rows, DibRGB(color));
    UnlockSurface();
    return found;
}
