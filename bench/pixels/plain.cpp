// The obvious loops, left to the compiler to vectorise for AVX2: what a program could write in an afternoon.

#include "bench/pixels/Painter.h"

#include <cstring>

#define KELCORE_PLAIN __attribute__((target("avx2")))

namespace {

using kel::bench::Canvas;
using kel::bench::Enter;
using kel::bench::kAbsent;
using kel::bench::kKey;
using kel::bench::kOverlay;
using kel::bench::kPixels;
using kel::bench::kTint;
using kel::bench::Painter;
using Byte = unsigned char;

// Blue and red side by side, then green: compilers see through whole words better than through single bytes.
KELCORE_PLAIN inline std::uint32_t Tinted(std::uint32_t pixel, std::uint32_t share, std::uint32_t rest) {
    const std::uint32_t blueRed = ((pixel & 0xFF00FF) * rest + (kTint & 0xFF00FF) * share) >> 8 & 0xFF00FF;
    const std::uint32_t green = ((pixel >> 8 & 0xFF) * rest + (kTint >> 8 & 0xFF) * share) & 0xFF00;
    return blueRed | green;
}

KELCORE_PLAIN inline bool Has(const Byte* pixel, std::uint32_t colour) {
    return (pixel[0] | pixel[1] << 8 | pixel[2] << 16) == static_cast<int>(colour);
}

KELCORE_PLAIN void Tint(std::uint32_t* pixels, std::uint32_t opacity) {
    for (std::size_t i = 0; i < kPixels; ++i)
        pixels[i] = Tinted(pixels[i], opacity * 256 / 255, 256 - opacity);
}

KELCORE_PLAIN void TintMasked(std::uint32_t* pixels, const Byte* mask, std::uint32_t opacity) {
    for (std::size_t byte = 0; byte < kPixels / 8; ++byte, pixels += 8)
        for (std::size_t i = 0; i < 8; ++i) {
            const std::uint32_t tinted = Tinted(pixels[i], opacity * 256 / 255, 256 - opacity);
            pixels[i] = (mask[byte] >> (7 - i) & 1) != 0 ? tinted | (pixels[i] & 0xFF000000) : pixels[i];
        }
}

KELCORE_PLAIN void CombineKey32(std::uint32_t* target, const std::uint32_t* source) {
    for (std::size_t i = 0; i < kPixels; ++i)
        target[i] = (target[i] & 0xFFFFFF) == kKey ? source[i] : target[i];
}

KELCORE_PLAIN void CombineKey24(Byte* target, const Byte* source) {
    for (std::size_t i = 0; i < kPixels; ++i, target += 3, source += 3) {
        const bool has = Has(target, kKey);
        target[0] = has ? source[0] : target[0];
        target[1] = has ? source[1] : target[1];
        target[2] = has ? source[2] : target[2];
    }
}

KELCORE_PLAIN void GreyOut32(std::uint32_t* pixels) {
    for (std::size_t i = 0; i < kPixels; ++i) {
        const std::uint32_t pixel = pixels[i];
        const std::uint32_t grey = ((pixel & 0xFF) + (pixel >> 8 & 0xFF) + (pixel >> 16 & 0xFF)) / 9 + 128;
        pixels[i] = (pixel & 0xFFFFFF) == kKey ? pixel : (pixel & 0xFF000000) | grey * 0x010101;
    }
}

KELCORE_PLAIN void GreyOut24(Byte* pixel) {
    for (std::size_t i = 0; i < kPixels; ++i, pixel += 3) {
        const bool kept = Has(pixel, kKey);
        const auto grey = static_cast<Byte>((pixel[0] + pixel[1] + pixel[2]) / 9u + 128);
        pixel[0] = kept ? pixel[0] : grey;
        pixel[1] = kept ? pixel[1] : grey;
        pixel[2] = kept ? pixel[2] : grey;
    }
}

// They count: a loop with an early end is not vectorised.
KELCORE_PLAIN bool Find32(const std::uint32_t* pixels) {
    unsigned count = 0;
    for (std::size_t i = 0; i < kPixels; ++i)
        count += (pixels[i] & 0xFFFFFF) == kAbsent ? 1 : 0;
    return count > 0;
}

KELCORE_PLAIN bool Find24(const Byte* pixel) {
    unsigned count = 0;
    for (std::size_t i = 0; i < kPixels; ++i, pixel += 3)
        count += Has(pixel, kAbsent) ? 1 : 0;
    return count > 0;
}

KELCORE_PLAIN void Invert(std::uint32_t* words) {
    for (std::size_t i = 0; i < kPixels; ++i)
        words[i] = ~words[i];
}

KELCORE_PLAIN void OrBitPlane(Byte* pixels, const Byte* mask) {
    for (std::size_t byte = 0; byte < kPixels / 8; ++byte, pixels += 8)
        for (std::size_t i = 0; i < 8; ++i)
            pixels[i] |= static_cast<Byte>((mask[byte] >> (7 - i) & 1) << 3);
}

KELCORE_PLAIN void KeyToAlpha(std::uint32_t* pixels) {
    for (std::size_t i = 0; i < kPixels; ++i)
        pixels[i] = (pixels[i] & 0xFFFFFF) == kKey ? 0 : pixels[i] | 0xFF000000;
}

KELCORE_PLAIN void KeyToOverlay(std::uint32_t* pixels) {
    for (std::size_t i = 0; i < kPixels; ++i)
        pixels[i] = (pixels[i] & 0xFFFFFF) == kKey ? kOverlay : 0;
}

std::uint32_t* Words(const Canvas& canvas) {
    return reinterpret_cast<std::uint32_t*>(canvas.target);
}

const std::uint32_t* SourceWords(const Canvas& canvas) {
    return reinterpret_cast<const std::uint32_t*>(canvas.source);
}

using Runner = std::function<void()>;

const Enter<Painter> entered[] = {
    Enter<Painter>{
        {"plain", "tint 32", true,
         [](Canvas& c) -> Runner { return [&c] { Tint(Words(c), static_cast<std::uint32_t>(c.opacity)); }; }}},
    Enter<Painter>{{"plain", "masked tint 32", true,
                    [](Canvas& c) -> Runner {
                        return [&c] { TintMasked(Words(c), c.mask, static_cast<std::uint32_t>(c.opacity)); };
                    }}},
    Enter<Painter>{{"plain", "colour-key 32", true,
                    [](Canvas& c) -> Runner { return [&c] { CombineKey32(Words(c), SourceWords(c)); }; }}},
    Enter<Painter>{{"plain", "colour-key 24", true,
                    [](Canvas& c) -> Runner { return [&c] { CombineKey24(c.target, c.source); }; }}},
    Enter<Painter>{{"plain", "grey-out 32", true, [](Canvas& c) -> Runner { return [&c] { GreyOut32(Words(c)); }; }}},
    Enter<Painter>{{"plain", "grey-out 24", true, [](Canvas& c) -> Runner { return [&c] { GreyOut24(c.target); }; }}},
    Enter<Painter>{{"plain", "find a colour 32", true,
                    [](Canvas& c) -> Runner { return [&c] { c.found = Find32(SourceWords(c)); }; }}},
    Enter<Painter>{
        {"plain", "find a colour 24", true, [](Canvas& c) -> Runner { return [&c] { c.found = Find24(c.source); }; }}},
    Enter<Painter>{{"plain", "invert 32", true, [](Canvas& c) -> Runner { return [&c] { Invert(Words(c)); }; }}},
    Enter<Painter>{
        {"plain", "or bit plane 8", true, [](Canvas& c) -> Runner { return [&c] { OrBitPlane(c.target, c.mask); }; }}},
    Enter<Painter>{
        {"plain", "key to alpha 32", true, [](Canvas& c) -> Runner { return [&c] { KeyToAlpha(Words(c)); }; }}},
    Enter<Painter>{
        {"plain", "key to overlay 32", true, [](Canvas& c) -> Runner { return [&c] { KeyToOverlay(Words(c)); }; }}},
};

} // namespace
