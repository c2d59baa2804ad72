#pragma once

#include "platform/gdi/Surface.h"
#include "platform/gdi/text/GlyphCache.h"

namespace kel::platform {

/// Where a part of a mask comes to lie, within the surface.
struct MaskPart {
    int left, top, right, bottom;
    const std::uint8_t* mask; ///< of the first pixel
    int stride;
};

/// Draws glyphs in one colour on a surface. What a pixel is covered by decides how far it goes from the colour it has
/// to the ink's; surfaces with colour tables take the ink's colour where half of a pixel and more is covered.
class GlyphInk {
public:
    GlyphInk(const Surface& target, COLORREF colour);

    /// Draws the part of @p glyph, placed at (@p x, @p y), that lies in @p area, which lies within the surface.
    void Draw(const Glyph& glyph, int x, int y, const RECT& area) const;

private:
    Surface m_target;
    std::uint32_t m_pixel; // the colour as it is stored
    void (*m_draw)(const Surface& target, std::uint32_t ink, const MaskPart& part);
};

} // namespace kel::platform
