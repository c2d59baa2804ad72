#include "platform/gdi/Colours.h"
#include "platform/gdi/Painting.h"
#include "platform/gdi/WideLines.h"

#include <cstdlib>

namespace kel::platform {
namespace {

using Lengths = std::vector<std::int64_t>;

constexpr std::int64_t kStyleUnit = 3; // pixels that a cosmetic pen's unit of dashes has

/// Dashes and gaps in units.
Lengths StyleOf(const PenObject& pen) {
    switch (pen.Style()) {
    case PS_DASH:
        return pen.IsExtended() && !pen.IsCosmetic() ? Lengths{3, 1} : Lengths{6, 2};
    case PS_DOT:
        return {1, 1};
    case PS_DASHDOT:
        return pen.IsExtended() && !pen.IsCosmetic() ? Lengths{3, 1, 1, 1} : Lengths{3, 2, 1, 2};
    case PS_DASHDOTDOT:
        return {3, 1, 1, 1, 1, 1};
    case PS_USERSTYLE:
        return {pen.Dashes().begin(), pen.Dashes().end()};
    default:
        return {};
    }
}

/// Pixels along the device's rows.
std::int64_t Across(const Mapping& mapping, std::int64_t length) {
    return std::abs(std::int64_t{mapping.ToDevice(POINT{static_cast<LONG>(length), 0}).x} -
                    mapping.ToDevice(POINT{0, 0}).x);
}

/// Dashes and gaps in pixels. Wide pens of CreatePen have none.
Dashes DashesOf(const DeviceContext& context, const PenObject& pen, int width) {
    if (pen.Style() == PS_ALTERNATE)
        return Dashes({1, 1});
    if (!pen.IsExtended() && width > 1)
        return {};
    const bool isOwn = pen.Style() == PS_USERSTYLE;
    Lengths lengths = StyleOf(pen);
    for (std::int64_t& length : lengths)
        if (pen.IsCosmetic() || !pen.IsExtended())
            length *= kStyleUnit;
        else
            length = isOwn ? Across(context.State().mapping, length) : length * width;
    return Dashes(std::move(lengths));
}

void PaintBoxes(DeviceContext& context, const std::vector<pixman_box32_t>& boxes, COLORREF colour) {
    if (!boxes.empty())
        PaintArea(context, Region(boxes.data(), static_cast<int>(boxes.size())), colour);
}

/// Draws lines of one pixel one by one: where they cross they meet what they have drawn.
class CosmeticPen {
public:
    CosmeticPen(DeviceContext& context, const PenObject& pen)
        : m_context(context), m_colour(context.ColourOf(pen)), m_dashes(DashesOf(context, pen, /*width*/ 1)),
          m_fillsGaps(!pen.IsExtended() && context.State().backMode == OPAQUE), m_within(context.Visible().Box()) {}

    void Draw(const Figure& figure) const {
        std::int64_t distance = 0;
        const std::vector<POINT>& points = figure.points;
        for (std::size_t i = 0; i + 1 < points.size(); ++i)
            Draw(points[i], points[i + 1], distance);
        if (figure.closed)
            Draw(points.back(), points.front(), distance);
    }

private:
    void Draw(POINT from, POINT to, std::int64_t& distance) const {
        const LineBoxes boxes = PixelsOfLine(from, to, m_within, m_dashes, distance);
        PaintBoxes(m_context, boxes.dashes, m_colour);
        if (m_fillsGaps)
            PaintBoxes(m_context, boxes.gaps, Resolved(m_context.State().backColour));
    }

    DeviceContext& m_context;
    const COLORREF m_colour;
    const Dashes m_dashes;
    const bool m_fillsGaps;
    const RECT m_within;
};

} // namespace

void DrawLines(DeviceContext& context, const std::vector<Figure>& figures) {
    const PenObject& pen = *context.State().pen;
    const int width = PenWidth(context);
    if (width == 1) {
        const CosmeticPen cosmetic(context, pen);
        for (const Figure& figure : figures)
            cosmetic.Draw(figure);
    } else if (width > 1) {
        const WideLine line{width, pen.Cap(), pen.Join(), context.State().miterLimit, DashesOf(context, pen, width)};
        PaintOutline(context, WidePixels(figures, line, context.Visible().Box()), Region());
    }
}

} // namespace kel::platform
