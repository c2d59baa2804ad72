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

KELCORE_PLAIN inline Byte Tinted(int channel, Byte value, int opacity) {
    const int share = opacity * 256 / 255;
    return static_cast<Byte>((share * (kTint >> (8 * channel) & 0xFF) + value * (256u - opacity)) >> 8);
}

KELCORE_PLAIN inline bool Has(const Byte* pixel, std::uint32_t colour) {
    return (pixel[0] | pixel[1] << 8 | pixel[2] << 16) == static_cast<int>(colour);
}

KELCORE_PLAIN inline bool IsSet(const Byte* mask, std::size_t pixel) {
    return (mask[pixel / 8] >> (7 - pixel % 8) & 1) != 0;
}

KELCORE_PLAIN void Tint(Byte* pixel, int opacity) {
    for (std::size_t i = 0; i < kPixels; ++i, pixel += 4) {
        pixel[0] = Tinted(0, pixel[0], opacity);
        pixel[1] = Tinted(1, pixel[1], opacity);
        pixel[2] = Tinted(2, pixel[2], opacity);
        pixel[3] = 0;
    }
}

KELCORE_PLAIN void TintMasked(Byte* pixel, const Byte* mask, int opacity) {
    for (std::size_t i = 0; i < kPixels; ++i, pixel += 4) {
        const bool set = IsSet(mask, i);
        pixel[0] = set ? Tinted(0, pixel[0], opacity) : pixel[0];
        pixel[1] = set ? Tinted(1, pixel[1], opacity) : pixel[1];
        pixel[2] = set ? Tinted(2, pixel[2], opacity) : pixel[2];
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

template <std::size_t PixelBytes>
KELCORE_PLAIN void GreyOut(Byte* pixel) {
    for (std::size_t i = 0; i < kPixels; ++i, pixel += PixelBytes) {
        const bool kept = Has(pixel, kKey);
        const auto grey = static_cast<Byte>((pixel[0] + pixel[1] + pixel[2]) / 9u + 128);
        pixel[0] = kept ? pixel[0] : grey;
        pixel[1] = kept ? pixel[1] : grey;
        pixel[2] = kept ? pixel[2] : grey;
    }
}

// Counting has no early end, which compilers cannot vectorise.
template <std::size_t PixelBytes>
KELCORE_PLAIN bool Find(const Byte* pixel) {
    unsigned count = 0;
    for (std::size_t i = 0; i < kPixels; ++i, pixel += PixelBytes)
        count += Has(pixel, kAbsent) ? 1 : 0;
    return count > 0;
}

KELCORE_PLAIN void Invert(std::uint32_t* words) {
    for (std::size_t i = 0; i < kPixels; ++i)
        words[i] = ~words[i];
}

KELCORE_PLAIN void OrBitPlane(Byte* pixels, const Byte* mask) {
    for (std::size_t i = 0; i < kPixels; ++i)
        pixels[i] |= static_cast<Byte>((mask[i / 8] >> (7 - i % 8) & 1) << 3);
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
    Enter<Painter>{{"plain", "tint 32", true, [](Canvas& c) -> Runner { return [&c] { Tint(c.target, c.opacity); }; }}},
    Enter<Painter>{{"plain", "masked tint 32", true,
                    [](Canvas& c) -> Runner { return [&c] { TintMasked(c.target, c.mask, c.opacity); }; }}},
    Enter<Painter>{{"plain", "colour-key 32", true,
                    [](Canvas& c) -> Runner { return [&c] { CombineKey32(Words(c), SourceWords(c)); }; }}},
    Enter<Painter>{{"plain", "colour-key 24", true,
                    [](Canvas& c) -> Runner { return [&c] { CombineKey24(c.target, c.source); }; }}},
    Enter<Painter>{{"plain", "grey-out 32", true, [](Canvas& c) -> Runner { return [&c] { GreyOut<4>(c.target); }; }}},
    Enter<Painter>{{"plain", "grey-out 24", true, [](Canvas& c) -> Runner { return [&c] { GreyOut<3>(c.target); }; }}},
    Enter<Painter>{
        {"plain", "find a colour 32", true, [](Canvas& c) -> Runner { return [&c] { c.found = Find<4>(c.source); }; }}},
    Enter<Painter>{
        {"plain", "find a colour 24", true, [](Canvas& c) -> Runner { return [&c] { c.found = Find<3>(c.source); }; }}},
    Enter<Painter>{{"plain", "invert 32", true, [](Canvas& c) -> Runner { return [&c] { Invert(Words(c)); }; }}},
    Enter<Painter>{
        {"plain", "or bit plane 8", true, [](Canvas& c) -> Runner { return [&c] { OrBitPlane(c.target, c.mask); }; }}},
    Enter<Painter>{
        {"plain", "key to alpha 32", true, [](Canvas& c) -> Runner { return [&c] { KeyToAlpha(Words(c)); }; }}},
    Enter<Painter>{
        {"plain", "key to overlay 32", true, [](Canvas& c) -> Runner { return [&c] { KeyToOverlay(Words(c)); }; }}},
};

} // namespace
