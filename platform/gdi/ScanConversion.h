#pragma once

/// @file
/// From outlines to regions: which pixels lie inside of polygons and ellipses. All coordinates are device units. The
/// functions throw std::bad_alloc.

#include "platform/gdi/Clip.h"

#include <vector>

namespace kel::platform {

/// Closed polygons one behind the other.
struct Polygons {
    std::vector<POINT> points;
    std::vector<int> counts; ///< of the points of each; those of fewer than 2 have no inside

    void Add(const POINT* first, int count) {
        points.insert(points.end(), first, first + count);
        counts.push_back(count);
    }
};

/// The pixels inside of polygons, all taken as one figure.
/// @param fillMode ALTERNATE or WINDING.
Region PolygonRegion(const Polygons& polygons, int fillMode);

/// The pixels inside of the largest ellipse in @p box, whose edges may be in either order. The right and bottom edges
/// of the box are no part of it.
Region EllipseRegion(RECT box);

/// The pixels of a rectangle whose corners are quarters of an ellipse of @p width and @p height; at most those of the
/// box.
Region RoundRectRegion(RECT box, int width, int height);

} // namespace kel::platform
