#include "platform/gdi/text/OutlineMask.h"

#include <cstring>

namespace kel::platform {
namespace {

void CopyRow(const FT_Bitmap& bitmap, const std::uint8_t* from, std::uint8_t* to) {
    if (bitmap.pixel_mode == FT_PIXEL_MODE_GRAY) {
        std::memcpy(to, from, bitmap.width);
        return;
    }
    for (unsigned x = 0; x < bitmap.width; ++x)
        to[x] = from[x >> 3] >> (7 - (x & 7)) & 1 ? 255 : 0;
}

} // namespace

void DrawMask(FT_GlyphSlot slot, bool smooth, Glyph& glyph, std::vector<std::uint8_t>& mask) {
    const FT_Render_Mode mode = smooth ? FT_RENDER_MODE_NORMAL : FT_RENDER_MODE_MONO;
    if (slot->outline.n_points == 0 || FT_Render_Glyph(slot, mode) != 0)
        return;
    const FT_Bitmap& bitmap = slot->bitmap;
    glyph.left = slot->bitmap_left;
    glyph.top = -slot->bitmap_top;
    glyph.width = static_cast<int>(bitmap.width);
    glyph.height = static_cast<int>(bitmap.rows);
    glyph.stride = (glyph.width + 3) & ~3;
    mask.resize(static_cast<std::size_t>(glyph.stride) * bitmap.rows);
    for (int y = 0; y < glyph.height; ++y)
        CopyRow(bitmap, bitmap.buffer + std::ptrdiff_t{y} * bitmap.pitch,
                mask.data() + std::ptrdiff_t{y} * glyph.stride);
}

} // namespace kel::platform
