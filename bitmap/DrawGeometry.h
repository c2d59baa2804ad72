#pragma once

#include <kelcore/bitmap/interfaces.h>

#include <cstdint>

/// @file
/// Where the pixels of a picture go: drawing modes as pairs of rectangles, without any drawing.
namespace kel {

/// One blit.
struct BlitPair {
    Rect source; ///< in the picture's pixels, rows counted from the top
    Rect target; ///< in device units
};

/// The blit of every mode but BM_Tile; unknown modes stretch.
/// @param picture not empty.
/// @param scale not zero.
/// @param target not empty.
BlitPair PlaceOnce(IBitmap::BM_Mode mode, XSize<double> scale, Size picture, const Rect& target);

/// Whether there is anything to place.
bool HasPlace(XSize<double> scale, const Rect& target);

/// The blits of BM_Tile, row by row: tiles aligned to the target's left top corner, of those only the ones that lie
/// not wholly before or behind @p area, cut at the target's right and bottom edges.
class Tiles {
public:
    /// @param area where something may be seen, a part of @p target.
    Tiles(XSize<double> scale, Size picture, const Rect& target, const Rect& area);

    /// @return false at the end; @p pair is untouched then.
    bool Next(BlitPair& pair);

private:
    bool MayBeDrawn() const;
    BlitPair Current() const;

    XSize<double> m_scale;
    Rect m_target;
    Rect m_area;
    std::int64_t m_width;
    std::int64_t m_height;
    std::int64_t m_firstX;
    std::int64_t m_x;
    std::int64_t m_y;
};

/// What of @p target a device shows whose clip box is @p clip: an empty clip box tells nothing, all of it then.
Rect TileArea(const Rect& clip, const Rect& target);

} // namespace kel
