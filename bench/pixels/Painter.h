#pragma once

#include "bench/support/Jobs.h"

#include <cstddef>
#include <cstdint>
#include <functional>

class GDIBitmap;

namespace kel::bench {

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;
constexpr std::size_t kPixels = std::size_t{kWidth} * kHeight;

constexpr std::uint32_t kTint = 0x30A0F0;   // red, green, blue from bit 16 down
constexpr std::uint32_t kKey = 0xFF00FF;    // within a disc
constexpr std::uint32_t kAbsent = 0xFFFFFF; // in no pixel
constexpr std::uint32_t kOverlay = 0x7F7F3F00;

/// What is worked on: the memory of pictures, which kelcore works on by their members. Rows follow each other without
/// gaps; pixels are blue, green, red, and in 32 bits alpha.
struct Canvas {
    unsigned char* target;
    const unsigned char* source; ///< Of the target's size.
    const unsigned char* mask;   ///< A bit a pixel, the first in the top bit; null without a mask.
    std::size_t pixelBytes;
    int opacity; ///< Of 255.
    bool found;  ///< Where a search leaves its answer.
    GDIBitmap* targetPicture;
    const GDIBitmap* sourcePicture;
    const GDIBitmap* maskPicture; ///< Null without a mask.

    std::size_t Bytes() const { return kPixels * pixelBytes; }
    int Stride() const { return static_cast<int>(kWidth * pixelBytes); }
};

/// One who does a kind of work: "tint 32" stands for all works whose tint is without a mask.
struct Painter {
    const char* who;
    const char* kind;
    bool exact; ///< Whether its result shall be that of the others, which rounding may forbid.
    /// Makes ready what may be made once. @return the work on the canvas, which stays where it is.
    std::function<void()> (*prepare)(Canvas& canvas);
};

} // namespace kel::bench
