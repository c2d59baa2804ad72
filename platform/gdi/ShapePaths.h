#pragma once

/// @file
/// Shapes as paths. Boxes are in device units; their edges are in order, the right and bottom ones do not belong to
/// them, and the shapes run through the middles of the outermost pixels. They start at the right and go around as the
/// hands of a clock do not.

#include "platform/gdi/DrawingPath.h"

namespace kel::platform {

DrawingPath RectanglePath(const RECT& box);
DrawingPath EllipsePath(const RECT& box);
DrawingPath RoundRectPath(const RECT& box, int width, int height);

} // namespace kel::platform
