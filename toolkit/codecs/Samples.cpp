#include "toolkit/codecs/Samples.h"

#include <cstring>

namespace kel::toolkit {
namespace {

BYTE Unmultiply(std::uint32_t sample, std::uint32_t alpha) {
    if (alpha == 0)
        return 0;
    return sample >= alpha ? 255 : static_cast<BYTE>((sample * 255 + alpha / 2) / alpha);
}

void PutPixel(BYTE* to, BYTE red, BYTE green, BYTE blue) {
    to[0] = blue;
    to[1] = green;
    to[2] = red;
}

// Scalar swapping of 12 million pixels costs a tenth of decoding them, hence the vectors: five pixels in each. The last
// byte of a vector belongs to the next pixel and stays as it is, so that a run is swapped in place from left to right
// as long as each vector is read before the one to its left is written.
#if defined(__x86_64__) || defined(__i386__)
using Vector = BYTE __attribute__((vector_size(16)));
constexpr std::size_t kVectorPixels = 5;
constexpr std::size_t kVectorStep = kVectorPixels * 3;

__attribute__((target("ssse3"))) inline Vector SwapVector(const BYTE* from) {
    Vector v;
    std::memcpy(&v, from, sizeof v);
    return __builtin_shufflevector(v, v, 2, 1, 0, 5, 4, 3, 8, 7, 6, 11, 10, 9, 14, 13, 12, 15);
}

// @return the pixels done.
__attribute__((target("ssse3"))) std::size_t SwapVectors(const BYTE* from, BYTE* to, std::size_t count) {
    constexpr std::size_t kAtOnce = 4;
    std::size_t done = 0;
    // One pixel more than is swapped must be there, for the last byte.
    for (; done + kAtOnce * kVectorPixels < count; done += kAtOnce * kVectorPixels) {
        Vector v[kAtOnce];
        for (std::size_t i = 0; i < kAtOnce; ++i)
            v[i] = SwapVector(from + done * 3 + i * kVectorStep);
        for (std::size_t i = 0; i < kAtOnce; ++i)
            std::memcpy(to + done * 3 + i * kVectorStep, &v[i], sizeof v[i]);
    }
    return done;
}

std::size_t SwapInVectors(const BYTE* from, BYTE* to, std::size_t count) {
    static const bool kHas = __builtin_cpu_supports("ssse3") != 0;
    return kHas ? SwapVectors(from, to, count) : 0;
}
#else
std::size_t SwapInVectors(const BYTE*, BYTE*, std::size_t) {
    return 0;
}
#endif

} // namespace

void SwapRgb(const BYTE* from, BYTE* to, std::size_t count) {
    const std::size_t done = SwapInVectors(from, to, count);
    from += 3 * done;
    to += 3 * done;
    for (std::size_t i = done; i < count; ++i, from += 3, to += 3)
        PutPixel(to, from[0], from[1], from[2]);
}

void SwapRgba(const BYTE* from, BYTE* to, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i, from += 4, to += 4) {
        std::uint32_t pixel;
        std::memcpy(&pixel, from, sizeof pixel);
        pixel = (pixel & 0xFF00FF00) | (pixel & 0xFF) << 16 | (pixel >> 16 & 0xFF);
        std::memcpy(to, &pixel, sizeof pixel);
    }
}

void UnmultiplyRgba(const BYTE* from, BYTE* to, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i, from += 4, to += 4) {
        const BYTE alpha = from[3];
        PutPixel(to, Unmultiply(from[0], alpha), Unmultiply(from[1], alpha), Unmultiply(from[2], alpha));
        to[3] = alpha;
    }
}

void GreyAlpha(const BYTE* from, BYTE* to, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i, from += 2, to += 4) {
        PutPixel(to, from[0], from[0], from[0]);
        to[3] = from[1];
    }
}

void UnmultiplyGreyAlpha(const BYTE* from, BYTE* to, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i, from += 2, to += 4) {
        const BYTE grey = Unmultiply(from[0], from[1]);
        PutPixel(to, grey, grey, grey);
        to[3] = from[1];
    }
}

void Cmyk(const BYTE* from, BYTE* to, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i, from += 4, to += 3) {
        const std::uint32_t light = 255U - from[3];
        PutPixel(to, Times255(255U - from[0], light), Times255(255U - from[1], light), Times255(255U - from[2], light));
    }
}

void InvertedCmyk(const BYTE* from, BYTE* to, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i, from += 4, to += 3)
        PutPixel(to, Times255(from[0], from[3]), Times255(from[1], from[3]), Times255(from[2], from[3]));
}

void FillGreys(RGBQUAD* colours, std::size_t shades, bool whiteFirst) {
    for (std::size_t i = 0; i < shades; ++i) {
        const auto grey = static_cast<BYTE>((whiteFirst ? shades - 1 - i : i) * 255 / (shades - 1));
        colours[i] = {grey, grey, grey, 0};
    }
}

} // namespace kel::toolkit
