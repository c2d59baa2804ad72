#include "bitmap/DrawGeometry.h"

#include <kelcore/bitmap/base.h>

namespace {

bool DrawTiles(const BitmapBase::IBltSrc& source, HDC dc, kel::Tiles tiles) {
    kel::BlitPair tile;
    while (tiles.Next(tile)) {
        if (!source.Blt(dc, tile.source, tile.target))
            return false;
    }
    return true;
}

} // namespace

bool BitmapBase::InternalDraw(const IBltSrc& source, HDC dc, const Rect& target, BM_Mode mode,
                              XSize<double> scale) const {
    if (IsEmpty() || !kel::HasPlace(scale, target))
        return true;
    const Size picture = GetDimension();
    if (mode == BM_Tile) {
        Rect clip;
        GetClipBox(dc, &clip);
        return DrawTiles(source, dc, kel::Tiles(scale, picture, target, kel::TileArea(clip, target)));
    }
    const kel::BlitPair once = kel::PlaceOnce(mode, scale, picture, target);
    return source.Blt(dc, once.source, once.target);
}
