#include "bitmap/pixels/Roads.h"

#include <cstring>

namespace kel::pixels {
namespace {

constexpr std::uint32_t kColour = 0x00FFFFFF;
constexpr std::uint32_t kFourth = 0xFF000000;

std::uint32_t Load32(const Byte* pixel) {
    std::uint32_t value;
    std::memcpy(&value, pixel, sizeof value);
    return value;
}

void Store32(Byte* pixel, std::uint32_t value) {
    std::memcpy(pixel, &value, sizeof value);
}

std::uint32_t Load24(const Byte* pixel) {
    return pixel[0] | pixel[1] << 8 | pixel[2] << 16;
}

bool IsSet(const Byte* mask, std::size_t pixel) {
    return (mask[pixel / 8] >> (7 - pixel % 8) & 1) != 0;
}

void ShadeColour(Byte* pixel, const Tint& tint) {
    for (int channel = 0; channel < 3; ++channel)
        pixel[channel] = static_cast<Byte>((tint.shares[channel] + pixel[channel] * tint.rest) >> 8);
}

void Shade(Byte* pixels, std::size_t count, const Tint& tint) {
    for (; count > 0; --count, pixels += 4) {
        ShadeColour(pixels, tint);
        pixels[3] = 0;
    }
}

void ShadeMasked(Byte* pixels, const Byte* mask, std::size_t count, const Tint& tint) {
    for (std::size_t i = 0; i < count; ++i)
        if (IsSet(mask, i))
            ShadeColour(pixels + 4 * i, tint);
}

void CombineKey24Run(Byte* pixels, const Byte* source, std::size_t count, std::uint32_t key) {
    for (; count > 0; --count, pixels += 3, source += 3)
        if (Load24(pixels) == key)
            std::memmove(pixels, source, 3);
}

void CombineKey32Run(Byte* pixels, const Byte* source, std::size_t count, std::uint32_t key) {
    for (; count > 0; --count, pixels += 4, source += 4) {
        const std::uint32_t pixel = Load32(pixels);
        Store32(pixels, (pixel & kColour) == key ? Load32(source) : pixel);
    }
}

void GreyOut(Byte* pixel) {
    const int grey = (pixel[0] + pixel[1] + pixel[2]) / 9 + 128;
    std::memset(pixel, grey, 3);
}

template <std::size_t PixelBytes>
void GreyOutRun(Byte* pixels, std::size_t count, std::uint32_t keep) {
    for (; count > 0; --count, pixels += PixelBytes)
        if (Load24(pixels) != keep)
            GreyOut(pixels);
}

template <std::size_t PixelBytes>
bool ContainsRun(const Byte* pixels, std::size_t count, std::uint32_t colour) {
    for (; count > 0; --count, pixels += PixelBytes)
        if (Load24(pixels) == colour)
            return true;
    return false;
}

void ComplementRun(Byte* bytes, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<Byte>(~bytes[i]);
}

void OrBitPlaneRun(Byte* pixels, const Byte* mask, std::size_t count, Byte bits, bool invert) {
    for (std::size_t i = 0; i < count; ++i)
        if (IsSet(mask, i) != invert)
            pixels[i] |= bits;
}

void KeyToAlphaRun(Byte* pixels, std::size_t count, std::uint32_t key) {
    for (; count > 0; --count, pixels += 4) {
        const std::uint32_t pixel = Load32(pixels);
        Store32(pixels, (pixel & kColour) == key ? 0 : pixel | kFourth);
    }
}

void KeyToOverlayRun(Byte* pixels, std::size_t count, std::uint32_t key, std::uint32_t overlay) {
    for (; count > 0; --count, pixels += 4)
        Store32(pixels, (Load32(pixels) & kColour) == key ? overlay : 0);
}

} // namespace

const Road kPortableRoad = {
    "portable",     &Shade,         &ShadeMasked,     &CombineKey24Run, &CombineKey32Run,
    &GreyOutRun<3>, &GreyOutRun<4>, &ContainsRun<3>,  &ContainsRun<4>,  &ComplementRun,
    &OrBitPlaneRun, &KeyToAlphaRun, &KeyToOverlayRun,
};

} // namespace kel::pixels
