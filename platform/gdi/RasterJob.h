#pragma once

/// @file
/// One drawing operation, with everything looked up: no handles, no contexts, device pixels only. The calls resolve
/// themselves into a job (Resolve.h) and run it.
///
/// RunGeneric draws every job, a pixel at a time, and is the definition of them all. Run takes a kernel made for the
/// job's formats and operation where there is one; its results are those of RunGeneric.

#include "platform/gdi/ColourMap.h"
#include "platform/gdi/StretchMap.h"

#include <kelcore/platform/blits.h>

#include <pixman.h>

#include <vector>

namespace kel::platform {

/// What a brush leaves on the target, as stored pixels.
struct Pattern {
    std::uint32_t solid = 0;
    int width = 0; ///< of a pattern that repeats; 0 for a solid one
    int height = 0;
    POINT origin{0, 0};
    std::vector<std::uint32_t> pixels;

    /// What falls on a row of the target, from the pattern's first column on, and the one that falls on a column of it;
    /// only of a pattern that repeats.
    const std::uint32_t* Row(int y) const;
    int Column(int x) const;

    std::uint32_t At(int x, int y) const { return width == 0 ? solid : Row(y)[Column(x)]; }
};

struct RasterJob {
    enum class Operation : std::uint8_t {
        Raster, ///< the ternary operation on stored pixels
        Key,    ///< the source, but for the pixels of the colour `key`
        Blend,  ///< the source over the target by `blend`
    };

    Surface target;
    Surface source; ///< used when hasSource
    bool hasSource = false;
    Axis x; ///< of the source on the target; without a source the target's side alone
    Axis y;
    const pixman_region32_t* clip = nullptr; ///< device pixels that may be drawn, within the target
    Operation operation = Operation::Raster;
    std::uint8_t rop = 0xCC; ///< bits 16 to 23 of the caller's code: a result for each of pattern, source, target
    int stretchMode = COLORONCOLOR;
    COLORREF key = 0;
    BLENDFUNCTION blend{};
    Pattern pattern;
    ColourMap colours;

    bool IsOneToOne() const { return x.IsOneToOne() && y.IsOneToOne(); }
};

/// Whether the ternary operation looks at the source, or at the pattern.
constexpr bool NeedsSource(unsigned rop) {
    return ((rop >> 2 ^ rop) & 0x33) != 0;
}
constexpr bool NeedsPattern(unsigned rop) {
    return ((rop >> 4 ^ rop) & 0x0F) != 0;
}

/// The ternary operation on all bits of three numbers.
std::uint32_t Combine(unsigned rop, std::uint32_t pattern, std::uint32_t source, std::uint32_t target);

/// The source colour over the target's by a blend function: both as stored in 32 bits, with alpha on top.
std::uint32_t Blended(const BLENDFUNCTION& function, std::uint32_t source, std::uint32_t target);

/// @throws std::bad_alloc
void Run(const RasterJob& job);
void RunGeneric(const RasterJob& job);

} // namespace kel::platform
