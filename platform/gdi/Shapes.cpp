#include "platform/gdi/ShapeDrawing.h"
#include "platform/gdi/ShapePaths.h"

#include <algorithm>

namespace kel::platform {
namespace {

bool HasPixels(const RECT& box) {
    return box.left < box.right && box.top < box.bottom;
}

RECT Shrunk(const RECT& box, int by) {
    return {box.left + by, box.top + by, box.right - by, box.bottom - by};
}

/// The pixels of a region all four of whose neighbours are in it.
Region Inside(const Region& region) {
    Region inside(region);
    const POINT steps[] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}};
    for (const POINT& step : steps) {
        Region moved(region);
        moved.Offset(step.x, step.y);
        inside.Intersect(moved);
    }
    return inside;
}

/// Where the line around a shape runs.
struct Outline {
    RECT box; ///< its outermost pixels are the middle of the line
    int width;

    /// What the outer and the inner edge of the line surround. An even width has its greater half before the middle.
    RECT Outer() const {
        return {box.left - width / 2, box.top - width / 2, box.right + (width - 1) / 2, box.bottom + (width - 1) / 2};
    }
    RECT Inner() const { return Shrunk(Outer(), width); }
};

/// @return an empty box for a shape without pixels.
Outline OutlineOf(const DeviceContext& context, const RECT& logical) {
    const RECT box = context.ToDevice(logical);
    const int width = PenWidth(context);
    if (context.State().pen->Style() != PS_INSIDEFRAME || width <= 1 || !HasPixels(box))
        return {box, width};
    // A line that finds no room is as wide as there is.
    const int room = std::min<int>(width, std::min(box.right - box.left, box.bottom - box.top));
    return {{box.left + room / 2, box.top + room / 2, box.right - (room - 1) / 2, box.bottom - (room - 1) / 2}, room};
}

bool IsDashed(const PenObject& pen, int width) {
    const bool canHaveGaps = pen.IsExtended() || width == 1;
    return canHaveGaps && pen.Style() != PS_SOLID && pen.Style() != PS_INSIDEFRAME;
}

/// Fills and outlines a round shape: @p pixels makes its region in a box, @p grows by how much the outline is bigger.
template <class Pixels>
void DrawRound(DeviceContext& context, const Outline& outline, const DrawingPath& path, Pixels pixels) {
    const Region area = pixels(outline.box, 0);
    FillArea(context, area);
    if (outline.width == 0)
        return;
    if (IsDashed(*context.State().pen, outline.width))
        return DrawLines(context, path.Figures());
    if (outline.width == 1)
        return PaintOutline(context, area, Inside(area));
    const RECT inner = outline.Inner();
    const Region hole = HasPixels(inner) ? pixels(inner, -outline.width) : Region();
    PaintOutline(context, pixels(outline.Outer(), outline.width), hole);
}

bool DrawEllipse(DeviceContext& context, const RECT& logical) {
    const Outline outline = OutlineOf(context, logical);
    if (!HasPixels(outline.box))
        return true;
    if (DrawingPath* open = OpenPath(context))
        open->Append(EllipsePath(outline.box));
    else
        DrawRound(context, outline, EllipsePath(outline.box),
                  [](const RECT& box, int /*growth*/) { return EllipseRegion(box); });
    return true;
}

/// The inside is what the outline leaves; without a pen the room of one of a pixel stays empty below and on the right.
Region InsideOf(const Outline& outline) {
    RECT inner = outline.Inner();
    if (outline.width == 0)
        inner = {outline.box.left, outline.box.top, outline.box.right - 1, outline.box.bottom - 1};
    return HasPixels(inner) ? Region(inner) : Region();
}

void DrawRectangleOutline(DeviceContext& context, const Outline& outline, const Region& inside) {
    if (outline.width == 1 && !IsDashed(*context.State().pen, outline.width))
        PaintOutline(context, Region(outline.box), inside);
    else
        DrawLines(context, RectanglePath(outline.box).Figures());
}

bool DrawRectangle(DeviceContext& context, const RECT& logical) {
    const Outline outline = OutlineOf(context, logical);
    if (!HasPixels(outline.box))
        return true;
    if (DrawingPath* open = OpenPath(context)) {
        open->Append(RectanglePath(outline.box));
        return true;
    }
    const Region inside = InsideOf(outline);
    FillArea(context, inside);
    DrawRectangleOutline(context, outline, inside);
    return true;
}

bool DrawRoundRect(DeviceContext& context, const RECT& logical, const SIZE& corner) {
    const Outline outline = OutlineOf(context, logical);
    const RECT size = context.ToDevice(RECT{0, 0, corner.cx, corner.cy});
    const int width = size.right - size.left;
    const int height = size.bottom - size.top;
    if (width == 0 || height == 0)
        return DrawRectangle(context, logical);
    if (!HasPixels(outline.box))
        return true;
    const DrawingPath path = RoundRectPath(outline.box, width, height);
    if (DrawingPath* open = OpenPath(context))
        open->Append(path);
    else
        DrawRound(context, outline, path, [&](const RECT& box, int growth) {
            return RoundRectRegion(box, std::max(width + growth, 0), std::max(height + growth, 0));
        });
    return true;
}

} // namespace

void FillFigures(DeviceContext& context, const std::vector<Figure>& figures) {
    FillArea(context, PolygonRegion(PolygonsOf(figures), context.State().fillMode, context.Visible().Box()));
}

void DrawPath(DeviceContext& context, const DrawingPath& path, bool filled) {
    if (DrawingPath* open = OpenPath(context))
        return open->Append(path);
    const std::vector<Figure> figures = path.Figures();
    if (filled)
        FillFigures(context, figures);
    DrawLines(context, figures);
}

} // namespace kel::platform

using namespace kel::platform;

BOOL WINAPI Rectangle(HDC dc, int left, int top, int right, int bottom) {
    return OnContext("Rectangle", dc, [&](DeviceContext& context) {
        return DrawRectangle(context, {left, top, right, bottom});
    });
}

BOOL WINAPI Ellipse(HDC dc, int left, int top, int right, int bottom) {
    return OnContext("Ellipse", dc, [&](DeviceContext& context) {
        return DrawEllipse(context, {left, top, right, bottom});
    });
}

BOOL WINAPI RoundRect(HDC dc, int left, int top, int right, int bottom, int width, int height) {
    return OnContext("RoundRect", dc, [&](DeviceContext& context) {
        return DrawRoundRect(context, {left, top, right, bottom}, {width, height});
    });
}
