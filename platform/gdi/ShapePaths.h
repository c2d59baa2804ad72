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

/// How a part of an ellipse is closed.
enum class ArcKind { Arc, Chord, Pie };

/// @param start, end points on the rays from the middle to the arc's ends; on one ray: all of the ellipse.
DrawingPath ArcPath(const RECT& box, POINT start, POINT end, bool clockwise, ArcKind kind);

} // namespace kel::platform
