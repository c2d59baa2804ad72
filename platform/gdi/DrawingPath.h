#pragma once

/// @file
/// Figures of lines and curves, in device units: those of a path, and those of a drawing call on its way to pixels.

#include "platform/gdi/ScanConversion.h"

namespace kel::platform {

/// A line through points; closed by another one from the last to the first.
struct Figure {
    std::vector<POINT> points;
    bool closed = false;
};

/// Points with their PT_ kinds.
class DrawingPath {
public:
    const std::vector<POINT>& Points() const { return m_points; }
    const std::vector<BYTE>& Kinds() const { return m_kinds; }

    void MoveTo(POINT point) { Add(point, PT_MOVETO); }
    void LineTo(POINT point) { Add(point, PT_LINETO); }

    /// Cubic curves: two control points and an end each.
    void CurveTo(const POINT* points, std::size_t count);

    /// Adds the figures of another path.
    void Append(const DrawingPath& other);

    /// Marks the last point as the end of a closed figure. Nothing if that is where a figure starts.
    void Close();

    /// Whether its last figure is open and ends at @p point, so that a line from there belongs to it.
    bool EndsAt(POINT point) const;

    /// Makes lines of its curves, which leave them by less than half a pixel.
    void Flatten();

    /// Its figures, flattened.
    std::vector<Figure> Figures() const;

private:
    void Add(POINT point, BYTE kind);

    std::vector<POINT> m_points;
    std::vector<BYTE> m_kinds;
};

/// All figures as polygons.
Polygons PolygonsOf(const std::vector<Figure>& figures);

} // namespace kel::platform
