#include "platform/gdi/ScanConversion.h"

#include "platform/gdi/EllipseRows.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <utility>

namespace kel::platform {
namespace {

// Each row takes a rectangle or more: beyond this, whoever asks would wait for minutes and then run out of memory.
constexpr std::int64_t kMostRows = 1 << 24;

__extension__ typedef __int128 Wide; // holds products of differences of coordinates

/// Where a row crosses an edge of a polygon, for one row after the other.
///
/// Rows and columns are lines through the middles of the pixels. A row meets the edges that begin on it and not those
/// that end on it, and the first pixel at or right of the crossing is the one that counts. So polygons that share an
/// edge share no pixel.
class Edge {
public:
    Edge(POINT a, POINT b, int fineness)
        : m_direction(a.y < b.y ? 1 : -1), m_start(a.y < b.y ? a : b), m_fineness(fineness),
          m_top(FirstRow(std::min(a.y, b.y))), m_bottom(FirstRow(std::max(a.y, b.y))),
          m_height(std::abs(std::int64_t{b.y} - a.y)), m_width((std::int64_t{b.x} - a.x) * m_direction),
          m_divisor(m_height * fineness) {}

    int Top() const { return m_top; }
    int Bottom() const { return m_bottom; }
    int Direction() const { return m_direction; }

    /// The first pixel, 1 more than the whole part of the crossing unless that is all of it.
    std::int64_t Pixel() const { return m_whole + (m_rest > 0); }

    void GoTo(int row) {
        const Wide crossing = Wide{m_start.x} * m_height + Wide{m_width} * (std::int64_t{row} * m_fineness - m_start.y);
        m_whole = static_cast<std::int64_t>(crossing / m_divisor);
        m_rest = static_cast<std::int64_t>(crossing % m_divisor);
        Settle();
    }

    void GoDown() {
        m_whole += m_width / m_height;
        m_rest += m_width % m_height * m_fineness;
        Settle();
    }

private:
    int FirstRow(std::int64_t y) const { return static_cast<int>(y / m_fineness + (y % m_fineness > 0)); }

    void Settle() {
        if (m_rest < 0) {
            m_rest += m_divisor;
            --m_whole;
        } else if (m_rest >= m_divisor) {
            m_rest -= m_divisor;
            ++m_whole;
        }
    }

    int m_direction;
    POINT m_start; // the upper end
    int m_fineness;
    int m_top; // the first row that meets the edge
    int m_bottom;
    std::int64_t m_height;
    std::int64_t m_width; // to the right on the way down
    std::int64_t m_divisor;
    std::int64_t m_whole = 0;
    std::int64_t m_rest = 0; // of m_divisor
};

/// The edges that are not level, from the top.
std::vector<Edge> EdgesOf(const Polygons& polygons) {
    std::vector<Edge> edges;
    std::size_t first = 0;
    for (const int count : polygons.counts) {
        const auto size = static_cast<std::size_t>(count);
        for (std::size_t i = 0; i < size; ++i) {
            const POINT& from = polygons.points[first + i];
            const POINT& to = polygons.points[first + (i + 1) % size];
            if (from.y != to.y)
                edges.emplace_back(from, to, polygons.fineness);
        }
        first += size;
    }
    std::sort(edges.begin(), edges.end(), [](const Edge& a, const Edge& b) { return a.Top() < b.Top(); });
    return edges;
}

/// How many rows meet one of the edges, which come from the top.
std::int64_t RowsOf(const std::vector<Edge>& edges, const RECT& within) {
    std::int64_t rows = 0;
    int reached = within.top;
    for (const Edge& edge : edges) {
        const int bottom = std::min<int>(edge.Bottom(), within.bottom);
        rows += std::max<std::int64_t>(std::int64_t{bottom} - std::max(edge.Top(), reached), 0);
        reached = std::max(reached, bottom);
    }
    return rows;
}

/// Goes down the rows and keeps the edges that the row meets.
class Sweep {
public:
    Sweep(std::vector<Edge> edges, int fillMode, const RECT& within)
        : m_edges(std::move(edges)), m_isWinding(fillMode == WINDING), m_within(within) {}

    Region Filled() {
        std::size_t next = 0;
        int row = m_edges.empty() ? 0 : std::max<int>(m_edges.front().Top(), m_within.top);
        while (row < m_within.bottom && (next < m_edges.size() || !m_met.empty())) {
            for (; next < m_edges.size() && m_edges[next].Top() <= row; ++next)
                Meet(m_edges[next], row);
            if (m_met.empty()) {
                row = next < m_edges.size() ? m_edges[next].Top() : m_within.bottom;
                continue;
            }
            FillRow(row++);
            Leave(row);
        }
        return Region(m_boxes.data(), static_cast<int>(m_boxes.size()));
    }

private:
    void Meet(Edge edge, int row) {
        if (edge.Bottom() <= row)
            return;
        edge.GoTo(row);
        m_met.push_back(edge);
    }

    void Leave(int row) {
        m_met.erase(
            std::remove_if(m_met.begin(), m_met.end(), [row](const Edge& edge) { return edge.Bottom() <= row; }),
            m_met.end());
        for (Edge& edge : m_met)
            edge.GoDown();
    }

    void FillRow(int row) {
        std::sort(m_met.begin(), m_met.end(), [](const Edge& a, const Edge& b) { return a.Pixel() < b.Pixel(); });
        int turns = 0;
        for (std::size_t i = 0; i + 1 < m_met.size(); ++i) {
            turns += m_isWinding ? m_met[i].Direction() : 1;
            if (m_isWinding ? turns != 0 : turns % 2 != 0)
                Add(m_met[i].Pixel(), m_met[i + 1].Pixel(), row);
        }
    }

    void Add(std::int64_t left, std::int64_t right, int row) {
        left = std::max<std::int64_t>(left, m_within.left);
        right = std::min<std::int64_t>(right, m_within.right);
        if (left < right)
            m_boxes.push_back({static_cast<int>(left), row, static_cast<int>(right), row + 1});
    }

    std::vector<Edge> m_edges;
    const bool m_isWinding;
    const RECT m_within;
    std::vector<Edge> m_met;
    std::vector<pixman_box32_t> m_boxes;
};

RECT InOrder(const RECT& box) {
    return {std::min(box.left, box.right), std::min(box.top, box.bottom), std::max(box.left, box.right),
            std::max(box.top, box.bottom)};
}

} // namespace

Region PolygonRegion(const Polygons& polygons, int fillMode, const RECT& within) {
    std::vector<Edge> edges = EdgesOf(polygons);
    if (RowsOf(edges, within) > kMostRows)
        throw std::bad_alloc();
    return Sweep(std::move(edges), fillMode, within).Filled();
}

Region EllipseRegion(RECT box) {
    const RECT sides = InOrder(box);
    return RoundRectRegion(sides, sides.right - sides.left, sides.bottom - sides.top);
}

Region RoundRectRegion(RECT box, int width, int height) {
    const RECT sides = InOrder(box);
    const auto across =
        static_cast<int>(std::min(std::abs(std::int64_t{width}), std::int64_t{sides.right} - sides.left));
    const auto down =
        static_cast<int>(std::min(std::abs(std::int64_t{height}), std::int64_t{sides.bottom} - sides.top));
    if (across < 1 || down < 1)
        return Region(sides);
    const std::vector<int> insets = EllipseInsets(across, down);
    std::vector<pixman_box32_t> rows;
    rows.reserve(2 * insets.size() + 1);
    int row = sides.top;
    for (const int inset : insets)
        rows.push_back({sides.left + inset, row, sides.right - inset, ++row});
    const int below = sides.bottom - down / 2; // the middle row of an odd number belongs to the upper half
    rows.push_back({sides.left, row, sides.right, below});
    row = below;
    for (std::size_t i = static_cast<std::size_t>(down / 2); i-- > 0;)
        rows.push_back({sides.left + insets[i], row, sides.right - insets[i], ++row});
    return Region(rows.data(), static_cast<int>(rows.size()));
}

} // namespace kel::platform
