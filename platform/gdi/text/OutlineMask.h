#pragma once

#include "platform/gdi/text/FontFace.h"
#include "platform/gdi/text/GlyphCache.h"

#include <vector>

namespace kel::platform {

/// Draws the outline in @p slot as a mask of the shape that Glyph asks for. The caller holds the lock of FreeType.
/// @param smooth false: pixels are covered or not. @throws std::bad_alloc
void DrawMask(FT_GlyphSlot slot, bool smooth, Glyph& glyph, std::vector<std::uint8_t>& mask);

} // namespace kel::platform
