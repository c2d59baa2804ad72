#pragma once

/// @file
/// Texts on the surface of a context.

#include "platform/gdi/text/ContextFont.h"

#include <kelcore/platform/textdrawing.h>

namespace kel::platform {

/// Where and how ExtTextOutA is to draw.
struct TextPlacement {
    POINT at{0, 0};             ///< logical units
    UINT options = 0;           ///< ETO_ flags
    const RECT* rect = nullptr; ///< logical units
    const INT* advances = nullptr;
};

/// Fills the rectangle that ETO_OPAQUE asks for. @throws std::bad_alloc
void DrawOpaque(DeviceContext& context, const TextPlacement& placement);

/// Draws characters with all that ExtTextOutA does. @return false if there is no font. @throws std::bad_alloc
bool DrawRun(DeviceContext& context, const TextCharacter* first, std::size_t count, const TextPlacement& placement);

inline bool DrawRun(DeviceContext& context, const TextRun& run, const TextPlacement& placement) {
    return DrawRun(context, run.data(), run.size(), placement);
}

/// Fills device pixels with a colour, as far as they can be reached. @throws std::bad_alloc
void FillPixels(DeviceContext& context, Region region, COLORREF colour);

} // namespace kel::platform
