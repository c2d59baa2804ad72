#pragma once

/// @file
/// Lines of one pixel's width.

#include "platform/gdi/DrawingPath.h"

namespace kel::platform {

/// Lengths of dashes and gaps in turn, which repeat; none: no gaps.
class Dashes {
public:
    Dashes() = default;
    /// An odd number of lengths repeats with dashes and gaps exchanged.
    explicit Dashes(std::vector<std::int64_t> lengths);

    bool Any() const { return m_total > 0; }

    /// What stands so far from the start of the line.
    struct Piece {
        bool isDash;
        std::int64_t left; ///< how much of it is still to come, at least 1
    };
    Piece At(std::int64_t distance) const;

private:
    std::vector<std::int64_t> m_lengths;
    std::int64_t m_total = 0;
};

/// Runs of pixels, apart for dashes and gaps.
struct LineBoxes {
    std::vector<pixman_box32_t> dashes;
    std::vector<pixman_box32_t> gaps;
};

/// Finds the pixels of a line but for its last one: in the direction in which it is longer all, in the other one those
/// nearest to it, of two as near the upper or the left one. So a line passes the pixels whose diamonds it leaves.
/// @param within bounds what is looked at.
/// @param distance from the start of the line to that of the dashes; the line's length is added to it.
LineBoxes PixelsOfLine(POINT from, POINT to, const RECT& within, const Dashes& dashes, std::int64_t& distance);

} // namespace kel::platform
