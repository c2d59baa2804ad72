#include "platform/gdi/DrawingPath.h"

#include <algorithm>
#include <cmath>

namespace kel::platform {
namespace {

struct Spot {
    double x;
    double y;
};

constexpr int kDeepest = 12; // halvings: 4096 lines for a curve

Spot Middle(Spot a, Spot b) {
    return {(a.x + b.x) / 2, (a.y + b.y) / 2};
}

/// Whether the curve stays within half a pixel of the line between its ends: control points a third apart, as those of
/// a line, have no bend.
bool IsFlat(const Spot* curve) {
    const auto bend = [](double a, double b, double c) { return std::abs(a - 2 * b + c); };
    const double x = std::max(bend(curve[0].x, curve[1].x, curve[2].x), bend(curve[1].x, curve[2].x, curve[3].x));
    const double y = std::max(bend(curve[0].y, curve[1].y, curve[2].y), bend(curve[1].y, curve[2].y, curve[3].y));
    return std::hypot(x, y) * 3 / 4 < 0.5;
}

/// Adds the curve's lines by halving it (de Casteljau).
void AddLines(const Spot* curve, int depth, DrawingPath& path) {
    if (depth == kDeepest || IsFlat(curve))
        return path.LineTo({static_cast<LONG>(std::lround(curve[3].x)), static_cast<LONG>(std::lround(curve[3].y))});
    const Spot first = Middle(curve[0], curve[1]);
    const Spot inner = Middle(curve[1], curve[2]);
    const Spot last = Middle(curve[2], curve[3]);
    const Spot before = Middle(first, inner);
    const Spot behind = Middle(inner, last);
    const Spot middle = Middle(before, behind);
    const Spot halves[] = {curve[0], first, before, middle, behind, last, curve[3]};
    AddLines(halves, depth + 1, path);
    AddLines(halves + 3, depth + 1, path);
}

Spot SpotAt(POINT point) {
    return {static_cast<double>(point.x), static_cast<double>(point.y)};
}

} // namespace

void DrawingPath::Add(POINT point, BYTE kind) {
    m_points.push_back(point);
    m_kinds.push_back(kind);
}

void DrawingPath::CurveTo(const POINT* points, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        Add(points[i], PT_BEZIERTO);
}

void DrawingPath::Append(const DrawingPath& other) {
    m_points.insert(m_points.end(), other.m_points.begin(), other.m_points.end());
    m_kinds.insert(m_kinds.end(), other.m_kinds.begin(), other.m_kinds.end());
}

void DrawingPath::Close() {
    if (!m_kinds.empty() && m_kinds.back() != PT_MOVETO)
        m_kinds.back() |= PT_CLOSEFIGURE;
}

bool DrawingPath::EndsAt(POINT point) const {
    return !m_kinds.empty() && (m_kinds.back() == PT_MOVETO || !(m_kinds.back() & PT_CLOSEFIGURE)) &&
           m_points.back().x == point.x && m_points.back().y == point.y;
}

void DrawingPath::Flatten() {
    DrawingPath flat;
    for (std::size_t i = 0; i < m_points.size(); ++i) {
        if (!(m_kinds[i] & PT_BEZIERTO) || m_kinds[i] == PT_MOVETO) {
            flat.Add(m_points[i], m_kinds[i]);
            continue;
        }
        const Spot curve[] = {SpotAt(m_points[i - 1]), SpotAt(m_points[i]), SpotAt(m_points[i + 1]),
                              SpotAt(m_points[i + 2])};
        AddLines(curve, /*depth*/ 0, flat);
        i += 2;
        if (m_kinds[i] & PT_CLOSEFIGURE)
            flat.Close();
    }
    *this = std::move(flat);
}

std::vector<Figure> DrawingPath::Figures() const {
    DrawingPath flat = *this;
    flat.Flatten();
    std::vector<Figure> figures;
    for (std::size_t i = 0; i < flat.m_points.size(); ++i) {
        if (flat.m_kinds[i] == PT_MOVETO)
            figures.emplace_back();
        figures.back().points.push_back(flat.m_points[i]);
        figures.back().closed = flat.m_kinds[i] & PT_CLOSEFIGURE;
    }
    return figures;
}

Polygons PolygonsOf(const std::vector<Figure>& figures) {
    Polygons polygons;
    for (const Figure& figure : figures)
        polygons.Add(figure.points.data(), static_cast<int>(figure.points.size()));
    return polygons;
}

} // namespace kel::platform
