#pragma once

/// @file
/// Lines with a width, as areas.

#include "platform/gdi/CosmeticLines.h"

#include <kelcore/platform/pens.h>

namespace kel::platform {

/// How a wide line looks.
struct WideLine {
    int width = 2; ///< in pixels
    DWORD cap = PS_ENDCAP_ROUND;
    DWORD join = PS_JOIN_ROUND;
    float miterLimit = 10; ///< of the length of a corner to the width; beyond it corners are cut
    Dashes dashes;
};

/// The pixels of lines of a pen, those where lines cross included once.
/// @param within bounds what is looked at. @throws std::bad_alloc
Region WidePixels(const std::vector<Figure>& figures, const WideLine& line, const RECT& within);

} // namespace kel::platform
