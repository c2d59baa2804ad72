#pragma once

/// @file
/// Which pixels of the source the pixels of a target take, in one direction.

#include <cstdint>

namespace kel::platform {

/// Source pixels in the order in which they are met: from @p first to @p last, upwards or downwards.
struct SourceRange {
    int first = 0;
    int last = -1;
    bool empty = true;
};

/// Which source pixels fall on a single target pixel that is not mirrored.
enum class Single : std::uint8_t {
    NotLast,  ///< all but the last
    NotFirst, ///< all but the first: rows of a bottom-up DIB in an operation
    All,      ///< blends and copies of DIBs
};

/// Columns, or rows, of a source laid on those of a target.
///
/// A source of s pixels is laid on a target of d by these rules, measured on Wine for all sizes to 30 and held by a
/// test; mirroring counts the pixels from the other end.
/// - Not smaller (d >= s): target pixel i shows source pixel (i * s + (s - 1) / 2) / d.
/// - Smaller: source pixel j falls on target pixel (j * d + (d - 1) / 2) / s; a target pixel shows the last column
///   and the first row that falls on it, or all pixels combined. What falls on a single pixel depends on the call (see
///   Single), unless it is mirrored.
/// - What lies outside the source shows nothing, and what is cut away of the target changes nothing for the rest.
struct Axis {
    std::int64_t to = 0; ///< the lowest target pixel
    std::int64_t toSize = 0;
    std::int64_t from = 0; ///< the lowest source pixel
    std::int64_t fromSize = 0;
    bool toMirrored = false;
    bool fromMirrored = false;
    Single single = Single::NotLast;

    bool Mirrored() const { return toMirrored != fromMirrored; }
    bool IsOneToOne() const { return toSize == fromSize && !Mirrored(); }

    /// The pixels of a source of @p bound pixels that fall on the target pixel @p position.
    SourceRange At(int position, int bound) const;

private:
    SourceRange Grown(std::int64_t index, int bound) const;
    SourceRange Shrunk(std::int64_t index, int bound) const;
};

/// An axis of both sizes as a caller gives them: a negative size reaches from the pixel at the start downwards, and is
/// mirrored.
Axis MakeAxis(int to, int toSize, int from, int fromSize);

} // namespace kel::platform
