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
    return static_cast<std::uint32_t>(pixel[0] | pixel[1] << 8 | pixel[2] << 16);
}

// Blue and red are computed side by side in one word: neither sum passes 16 bits.
std::uint32_t Shaded(std::uint32_t pixel, const Tint& tint) {
    const std::uint32_t shares = tint.shares[0] | static_cast<std::uint32_t>(tint.shares[2]) << 16;
    const std::uint32_t blueRed = ((pixel & 0x00FF00FF) * tint.rest + shares) >> 8 & 0x00FF00FF;
    const std::uint32_t green = (pixel >> 8 & 0xFF) * tint.rest + tint.shares[1];
    return blueRed | (green & 0xFF00);
}

void Shade(Byte* pixels, std::size_t count, const Tint& tint) {
    for (; count > 0; --count, pixels += 4)
        Store32(pixels, Shaded(Load32(pixels), tint));
}

// The pixels of one mask byte, up to the last that is set.
void ShadeSet(Byte* pixels, Byte bits, const Tint& tint) {
    for (; bits != 0; bits = static_cast<Byte>(bits << 1), pixels += 4) {
        if ((bits & 0x80) == 0)
            continue;
        const std::uint32_t pixel = Load32(pixels);
        Store32(pixels, Shaded(pixel, tint) | (pixel & kFourth));
    }
}

void ShadeMasked(Byte* pixels, const Byte* mask, std::size_t count, const Tint& tint) {
    for (; count >= 8; count -= 8, pixels += 32, ++mask)
        ShadeSet(pixels, *mask, tint);
    if (count > 0)
        ShadeSet(pixels, static_cast<Byte>(*mask & ~(0xFF >> count)), tint);
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
    pixel[0] = pixel[1] = pixel[2] = static_cast<Byte>((pixel[0] + pixel[1] + pixel[2]) / 9U + 128);
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
    const Byte flip = invert ? 0xFF : 0;
    for (std::size_t i = 0; i < count; ++i) {
        const int set = (mask[i / 8] ^ flip) >> (7 - i % 8) & 1;
        pixels[i] |= static_cast<Byte>(bits & -set);
    }
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
