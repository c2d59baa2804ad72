#pragma once

/// @file
/// From outlines to regions: which pixels lie inside of polygons and ellipses. All coordinates are device units. The
/// functions throw std::bad_alloc.

#include "platform/gdi/Clip.h"

#include <kelcore/platform/drawingpaths.h>

#include <climits>
#include <vector>

namespace kel::platform {

/// How many units of a fine polygon make a pixel.
constexpr int kFineness = 16;

/// Closed polygons one behind the other.
struct Polygons {
    std::vector<POINT> points;
    std::vector<int> counts; ///< of the points of each; those of fewer than 2 have no inside
    int fineness = 1;        ///< 1: the points are the middles of pixels; kFineness: they lie between these, too

    void Add(const POINT* first, int count) {
        points.insert(points.end(), first, first + count);
        counts.push_back(count);
    }
};

/// All coordinates.
constexpr RECT kEverywhere{INT_MIN, INT_MIN, INT_MAX, INT_MAX};

/// The pixels inside of polygons, all taken as one figure.
/// @param fillMode WINDING; any other is ALTERNATE.
/// @param within bounds what is looked at.
Region PolygonRegion(const Polygons& polygons, int fillMode, const RECT& within = kEverywhere);

/// The pixels inside of the largest ellipse in @p box, whose edges may be in either order. The right and bottom edges
/// of the box are no part of it.
Region EllipseRegion(RECT box);

/// The pixels of a rectangle whose corners are quarters of an ellipse of @p width and @p height; at most those of the
/// box.
Region RoundRectRegion(RECT box, int width, int height);

} // namespace kel::platform
