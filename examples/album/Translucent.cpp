#include "Translucent.h"

#include <cmath>
#include <cstddef>

namespace kelalbum {
namespace {

constexpr int kAlpha = 3; // the fourth byte

std::size_t PixelsOf(const IBitmap& picture) {
    return static_cast<std::size_t>(picture.GetWidth()) * picture.GetHeight();
}

/// How much light an edge at @p at, blurred over @p blur pixels to both sides, takes at the middle of pixel @p pixel.
double Covered(int pixel, int at, int blur) {
    return 0.5 * std::erfc((at - pixel - 0.5) * 2.2 / blur);
}

/// The share of a blurred stretch from @p blur on that covers pixel @p pixel.
double CoveredBetween(int pixel, long length, int blur) {
    return Covered(pixel, blur, blur) - Covered(pixel, blur + static_cast<int>(length), blur);
}

} // namespace

GDIBitmap MakeShadow(const Size& rectangle, int blur, double opacity) {
    GDIBitmap shadow;
    const int width = rectangle.cx + 2 * blur;
    const int height = rectangle.cy + 2 * blur;
    auto* const pixels = shadow.CreateBitmap(Size(width, height), 32)
                             ? static_cast<unsigned char*>(shadow.LockSurfaceModify())
                             : nullptr;
    for (int y = 0; pixels && y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            unsigned char* const pixel = pixels + (static_cast<std::ptrdiff_t>(y) * width + x) * 4;
            const double dark = CoveredBetween(x, rectangle.cx, blur) * CoveredBetween(y, rectangle.cy, blur);
            pixel[0] = pixel[1] = pixel[2] = 0;
            pixel[kAlpha] = static_cast<unsigned char>(std::lround(255 * opacity * dark));
        }
    }
    shadow.UnlockSurface();
    return shadow;
}

bool HasAlpha(const IBitmap& picture) {
    if (picture.GetBitsPerPixel() != 32)
        return false;
    const auto* const pixels = static_cast<const unsigned char*>(picture.LockSurface());
    bool found = false;
    for (std::size_t i = 0; pixels && !found && i < PixelsOf(picture); ++i)
        found = pixels[i * 4 + kAlpha] != 0;
    picture.UnlockSurface();
    return found;
}

GDIBitmap Premultiplied(const IBitmap& picture) {
    GDIBitmap copy;
    auto* const pixels = copy.AssignBitmap(picture) ? static_cast<unsigned char*>(copy.LockSurfaceModify()) : nullptr;
    for (std::size_t i = 0; pixels && i < PixelsOf(copy); ++i) {
        unsigned char* const pixel = pixels + i * 4;
        for (int channel = 0; channel < kAlpha; ++channel)
            pixel[channel] = static_cast<unsigned char>((pixel[channel] * pixel[kAlpha] + 127) / 255);
    }
    copy.UnlockSurface();
    return copy;
}

} // namespace kelalbum
