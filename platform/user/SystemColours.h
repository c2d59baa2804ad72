#pragma once

#include <kelcore/platform/systemcolours.h>

namespace kel::platform {

/// The colour of a valid index; black for another.
COLORREF SystemColour(int index);

/// The brush that follows a colour, null for another index.
HBRUSH SystemBrush(int index);

} // namespace kel::platform
