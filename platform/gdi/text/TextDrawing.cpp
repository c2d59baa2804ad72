#include "platform/gdi/text/TextDrawing.h"

#include "platform/gdi/Painting.h"
#include "platform/gdi/ScanConversion.h"
#include "platform/gdi/text/GlyphInk.h"

#include <kelcore/platform/drawingpaths.h>

#include <cmath>

namespace kel::platform {
namespace {

constexpr double kPi = 3.14159265358979323846;

/// A place on the surface between pixels.
struct Spot {
    double x;
    double y;
};

/// The direction of a baseline: along it, and down from it.
struct Direction {
    double cosine = 1;
    double sine = 0;

    explicit Direction(int escapement) {
        if (escapement != 0) {
            cosine = std::cos(escapement * kPi / 1800);
            sine = std::sin(escapement * kPi / 1800);
        }
    }
    bool IsLevel() const { return sine == 0 && cosine == 1; }
    Spot From(Spot start, double along, double down) const {
        return {start.x + along * cosine + down * sine, start.y - along * sine + down * cosine};
    }
};

POINT Nearest(Spot spot) {
    return {static_cast<LONG>(std::lround(spot.x)), static_cast<LONG>(std::lround(spot.y))};
}

/// A text with everything looked up.
struct Line {
    const ContextFont& font;
    Direction direction;
    std::vector<int> starts; // of each character from the beginning, in pixels, and the end of the last one
    Spot begin;              // on the baseline

    int Width() const { return starts.back(); }

    POINT StartOf(std::size_t i) const {
        if (direction.IsLevel())
            return {static_cast<LONG>(begin.x) + starts[i], static_cast<LONG>(begin.y)};
        return Nearest(direction.From(begin, starts[i], 0));
    }

    /// The pixels of a band along the text, between two distances below the baseline.
    Region Band(int top, int bottom) const {
        if (direction.IsLevel()) {
            const POINT at = Nearest(begin);
            return Region(RECT{at.x, at.y + top, at.x + Width(), at.y + bottom});
        }
        const Polygons corners{{Nearest(direction.From(begin, 0, top)), Nearest(direction.From(begin, Width(), top)),
                                Nearest(direction.From(begin, Width(), bottom)),
                                Nearest(direction.From(begin, 0, bottom))},
                               {4}};
        return PolygonRegion(corners, WINDING);
    }
};

std::vector<int> StartsOf(const ContextFont& font, const TextCharacter* first, std::size_t count, const INT* advances) {
    std::vector<int> starts;
    starts.reserve(count + 1);
    int at = 0;
    int logical = 0;
    for (const TextCharacter* c = first; c != first + count; ++c) {
        starts.push_back(at);
        if (advances) {
            for (std::uint32_t i = 0; i < c->units; ++i)
                logical += *advances++;
            at = font.PixelsX(logical);
        } else {
            at += font.AdvanceOf(c->code);
        }
    }
    starts.push_back(at);
    return starts;
}

/// Where the baseline begins when the reference point is at @p point.
Spot BeginOf(const Line& line, POINT point, UINT align) {
    const FontMetrics& metrics = line.font.Font().Metrics();
    const int along = (align & TA_CENTER) == TA_CENTER ? -(line.Width() / 2) : align & TA_RIGHT ? -line.Width() : 0;
    const int down = (align & TA_BASELINE) == TA_BASELINE ? 0 : align & TA_BOTTOM ? -metrics.descent : metrics.ascent;
    return line.direction.From({static_cast<double>(point.x), static_cast<double>(point.y)}, along, down);
}

void DrawGlyphs(const Line& line, const TextCharacter* first, std::size_t count, const GlyphInk& ink,
                const Region& reachable) {
    int pieces = 0;
    const pixman_box32_t* boxes = pixman_region32_rectangles(const_cast<pixman_region32_t*>(reachable.Get()), &pieces);
    const auto lock = line.font.Font().LockGlyphs();
    for (std::size_t i = 0; i < count; ++i) {
        const Glyph& glyph = line.font.Font().GlyphOf(first[i].code);
        if (!glyph.mask)
            continue;
        const POINT at = line.StartOf(i);
        for (int piece = 0; piece < pieces; ++piece)
            ink.Draw(glyph, at.x + glyph.left, at.y + glyph.top,
                     {boxes[piece].x1, boxes[piece].y1, boxes[piece].x2, boxes[piece].y2});
    }
}

Region ReachableBy(DeviceContext& context, const TextPlacement& placement) {
    Region reachable = context.Visible();
    if (placement.options & ETO_CLIPPED && placement.rect)
        reachable.Intersect(Region(context.ToDevice(*placement.rect)));
    return reachable;
}

void DrawDecoration(DeviceContext& context, const Line& line, const Region& reachable) {
    const FontMetrics& metrics = line.font.Font().Metrics();
    const COLORREF colour = context.State().textColour;
    const auto draw = [&](int top, int thickness) {
        FillReachable(context, line.Band(top, top + thickness), reachable, colour);
    };
    if (line.font.Description().lfUnderline)
        draw(metrics.underlineTop, metrics.underlineThickness);
    if (line.font.Description().lfStrikeOut)
        draw(metrics.strikeTop, metrics.strikeThickness);
}

void DrawLine(DeviceContext& context, const Line& line, const TextCharacter* first, std::size_t count,
              const TextPlacement& placement) {
    const Region reachable = ReachableBy(context, placement);
    const FontMetrics& metrics = line.font.Font().Metrics();
    if (context.State().backMode == OPAQUE)
        FillReachable(context, line.Band(-metrics.ascent, metrics.descent), reachable, context.State().backColour);
    if (reachable.Kind() == NULLREGION)
        return;
    DrawGlyphs(line, first, count, GlyphInk(context.Target(), context.State().textColour), reachable);
    DrawDecoration(context, line, reachable);
}

/// TA_UPDATECP: the position goes to the end of the text, or its beginning when it ends at the position.
void MovePosition(DeviceContext& context, const Line& line, POINT from) {
    const UINT align = context.State().textAlign;
    if ((align & TA_CENTER) == TA_CENTER)
        return;
    const double along = align & TA_RIGHT ? -line.Width() : line.Width();
    const Spot end = line.direction.From({static_cast<double>(from.x), static_cast<double>(from.y)}, along, 0);
    context.State().position = context.ToLogical(Nearest(end));
}

} // namespace

void FillPixels(DeviceContext& context, Region region, COLORREF colour) {
    FillReachable(context, std::move(region), context.Visible(), colour);
}

void DrawOpaque(DeviceContext& context, const TextPlacement& placement) {
    if (placement.options & ETO_OPAQUE && placement.rect)
        FillPixels(context, Region(context.ToDevice(*placement.rect)), context.State().backColour);
}

bool DrawRun(DeviceContext& context, const TextCharacter* first, std::size_t count, const TextPlacement& placement) {
    DrawOpaque(context, placement);
    if (count == 0)
        return true;
    const ContextFont font(context);
    if (!font)
        return false;
    const UINT align = context.State().textAlign;
    const POINT at = context.ToDevice(align & TA_UPDATECP ? context.State().position : placement.at);
    Line line{font, Direction(font.Font().Request().escapement), StartsOf(font, first, count, placement.advances), {}};
    line.begin = BeginOf(line, at, align);
    DrawLine(context, line, first, count, placement);
    if (align & TA_UPDATECP)
        MovePosition(context, line, at);
    return true;
}

} // namespace kel::platform
