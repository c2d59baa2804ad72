#include "platform/gdi/WideLines.h"

#include <algorithm>
#include <cmath>

namespace kel::platform {
namespace {

struct Spot {
    double x;
    double y;
};

Spot operator+(Spot a, Spot b) {
    return {a.x + b.x, a.y + b.y};
}
Spot operator-(Spot a, Spot b) {
    return {a.x - b.x, a.y - b.y};
}
Spot operator*(Spot a, double factor) {
    return {a.x * factor, a.y * factor};
}

double Cross(Spot a, Spot b) {
    return a.x * b.y - a.y * b.x;
}

Spot Direction(Spot from, Spot to) {
    const Spot way = to - from;
    return way * (1 / std::hypot(way.x, way.y));
}

Spot LeftOf(Spot direction) {
    return {direction.y, -direction.x};
}

LONG Fine(double coordinate) {
    constexpr double kMost = 2e9;
    return static_cast<LONG>(std::lround(std::clamp(coordinate * kFineness, -kMost, kMost)));
}

/// Collects the areas that make up wide lines: lines, corners and ends.
class Widening {
public:
    Widening(const WideLine& line, const RECT& within) : m_line(line), m_half(line.width / 2.0), m_within(within) {}

    void Add(std::vector<Spot> spots, bool closed) {
        spots.erase(std::unique(spots.begin(), spots.end(), [](Spot a, Spot b) { return a.x == b.x && a.y == b.y; }),
                    spots.end());
        if (closed && spots.size() > 1 && spots.front().x == spots.back().x && spots.front().y == spots.back().y)
            spots.pop_back();
        if (spots.size() == 1)
            return AddPoint(spots.front());
        const std::size_t lines = spots.size() - (closed && spots.size() > 2 ? 0 : 1);
        const bool isRing = lines == spots.size();
        for (std::size_t i = 0; i < lines; ++i) {
            const Spot& from = spots[i];
            const Spot& to = spots[(i + 1) % spots.size()];
            AddLine(from, to, !isRing && i == 0, !isRing && i + 1 == lines);
            if (isRing || i + 1 < lines)
                AddJoin(from, to, spots[(i + 2) % spots.size()]);
        }
    }

    Region Pixels() const {
        Region all = PolygonRegion(m_polygons, WINDING, m_within);
        for (const Region& round : m_rounds)
            all.Unite(round);
        return all;
    }

private:
    void AddPolygon(std::initializer_list<Spot> corners) {
        std::vector<POINT> points;
        for (const Spot& corner : corners)
            points.push_back({Fine(corner.x), Fine(corner.y)});
        // All the same way round, so that what overlaps adds up.
        double area = 0;
        for (std::size_t i = 0; i < points.size(); ++i) {
            const POINT& a = points[i];
            const POINT& b = points[(i + 1) % points.size()];
            area += static_cast<double>(a.x) * b.y - static_cast<double>(b.x) * a.y;
        }
        if (area < 0)
            std::reverse(points.begin(), points.end());
        m_polygons.Add(points.data(), static_cast<int>(points.size()));
    }

    void AddRound(Spot middle) {
        const auto x = static_cast<LONG>(std::lround(middle.x)) - m_line.width / 2;
        const auto y = static_cast<LONG>(std::lround(middle.y)) - m_line.width / 2;
        m_rounds.push_back(EllipseRegion({x, y, x + m_line.width, y + m_line.width}));
    }

    // A line without a length has no direction: its caps make a dot.
    void AddPoint(Spot spot) {
        if (m_line.cap == PS_ENDCAP_ROUND)
            AddRound(spot);
        else if (m_line.cap == PS_ENDCAP_SQUARE)
            AddLine(spot, spot + Spot{1e-6, 0}, /*starts*/ true, /*ends*/ true);
    }

    void AddLine(Spot from, Spot to, bool starts, bool ends) {
        const Spot direction = Direction(from, to);
        const Spot side = LeftOf(direction) * m_half;
        const double longer = m_line.cap == PS_ENDCAP_SQUARE ? m_half : 0;
        if (starts && m_line.cap == PS_ENDCAP_ROUND)
            AddRound(from);
        if (ends && m_line.cap == PS_ENDCAP_ROUND)
            AddRound(to);
        const Spot first = starts ? from - direction * longer : from;
        const Spot last = ends ? to + direction * longer : to;
        AddPolygon({first + side, last + side, last - side, first - side});
    }

    void AddJoin(Spot from, Spot corner, Spot to) {
        if (m_line.join == PS_JOIN_ROUND)
            return AddRound(corner);
        const Spot in = Direction(from, corner);
        const Spot out = Direction(corner, to);
        // The gap is on the outer side of the turn.
        const double outwards = Cross(in, out) < 0 ? -m_half : m_half;
        const Spot a = corner + LeftOf(in) * outwards;
        const Spot b = corner + LeftOf(out) * outwards;
        AddPolygon({corner, a, b});
        const Spot middle = LeftOf(in) + LeftOf(out);
        const double square = middle.x * middle.x + middle.y * middle.y; // 4 times the cosine of half the turn, squared
        // The length of the corner is the width over that cosine.
        const double limit = std::max<double>(m_line.miterLimit, 1);
        if (m_line.join == PS_JOIN_MITER && square * limit * limit >= 4)
            AddPolygon({a, corner + middle * (2 * outwards / square), b});
    }

    const WideLine& m_line;
    const double m_half;
    const RECT m_within;
    Polygons m_polygons{{}, {}, kFineness};
    std::vector<Region> m_rounds;
};

std::vector<Spot> SpotsOf(const Figure& figure) {
    std::vector<Spot> spots;
    for (const POINT& point : figure.points)
        spots.push_back({static_cast<double>(point.x), static_cast<double>(point.y)});
    if (figure.closed && !spots.empty())
        spots.push_back(spots.front());
    return spots;
}

/// Cuts a line into its dashes. Ends that stand out are taken from their length.
void AddDashes(const std::vector<Spot>& spots, const WideLine& line, Widening& widening) {
    const double spare = line.cap == PS_ENDCAP_FLAT ? 0 : line.width;
    double distance = 0;
    for (std::size_t i = 0; i + 1 < spots.size(); ++i) {
        const double length = std::hypot(spots[i + 1].x - spots[i].x, spots[i + 1].y - spots[i].y);
        for (double at = 0; at < length;) {
            const auto whole = static_cast<std::int64_t>(std::floor(distance + at + 1e-6));
            const Dashes::Piece piece = line.dashes.At(whole);
            const double end = static_cast<double>(whole + piece.left) - distance;
            const Spot direction = Direction(spots[i], spots[i + 1]);
            if (piece.isDash)
                widening.Add(
                    {spots[i] + direction * at, spots[i] + direction * std::max(at, std::min(end - spare, length))},
                    /*closed*/ false);
            at = std::max(end, at + 1e-3);
        }
        distance += length;
    }
}

} // namespace

Region WidePixels(const std::vector<Figure>& figures, const WideLine& line, const RECT& within) {
    Widening widening(line, within);
    for (const Figure& figure : figures) {
        if (line.dashes.Any())
            AddDashes(SpotsOf(figure), line, widening);
        else
            widening.Add(SpotsOf(figure), figure.closed);
    }
    return widening.Pixels();
}

} // namespace kel::platform
