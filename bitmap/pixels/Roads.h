#pragma once

#include "bitmap/pixels/Pixels.h"

/// @file
/// The roads behind the pixel loops. A road handles runs of neighbouring pixels; the rows are the loops' affair.
/// No inline function stands here: compiled for one road's processor, it could be linked into code that runs on any.
namespace kel::pixels {

/// A tint at its opacity: channel c (0 blue to 2 red) becomes `(shares[c] + c * rest) >> 8`.
struct Tint {
    std::uint16_t shares[3]; ///< The tint's channel times the opacity, of 256.
    std::uint16_t rest;      ///< 256 less the opacity: 1 to 256.
};

/// The loops over one run of @p count pixels, as Pixels.h describes them for rectangles. Bits 24-31 of keys are 0.
struct Road {
    const char* name;
    void (*shade)(Byte* pixels, std::size_t count, const Tint& tint);
    /// The first pixel is governed by bit 7 of the first mask byte.
    void (*shadeMasked)(Byte* pixels, const Byte* mask, std::size_t count, const Tint& tint);
    void (*combineKey24)(Byte* pixels, const Byte* source, std::size_t count, std::uint32_t key);
    void (*combineKey32)(Byte* pixels, const Byte* source, std::size_t count, std::uint32_t key);
    void (*greyOut24)(Byte* pixels, std::size_t count, std::uint32_t keep);
    void (*greyOut32)(Byte* pixels, std::size_t count, std::uint32_t keep);
    bool (*contains24)(const Byte* pixels, std::size_t count, std::uint32_t colour);
    bool (*contains32)(const Byte* pixels, std::size_t count, std::uint32_t colour);
    void (*complement)(Byte* bytes, std::size_t count);
    void (*orBitPlane)(Byte* pixels, const Byte* mask, std::size_t count, Byte bits, bool invert);
    void (*keyToAlpha)(Byte* pixels, std::size_t count, std::uint32_t key);
    void (*keyToOverlay)(Byte* pixels, std::size_t count, std::uint32_t key, std::uint32_t overlay);
};

/// The definition, pixel by pixel: every processor has it, and the others are held to it.
extern const Road kPortableRoad;

/// Steps of 16 bytes (SSE4.1). @return null if this processor cannot.
const Road* Sse41Road();

/// Steps of 32 bytes (AVX2). @return null if this processor cannot.
const Road* Avx2Road();

/// Has all loops take @p road from now on, or the quickest again when null. For tests and measurements.
void TakeRoad(const Road* road);

} // namespace kel::pixels
