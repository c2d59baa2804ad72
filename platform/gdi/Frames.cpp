#include "platform/gdi/CosmeticLines.h"
#include "platform/gdi/ShapeDrawing.h"
#include "platform/gdi/ShapePaths.h"

#include <kelcore/platform/systemcolours.h>

#include <algorithm>

namespace kel::platform {
namespace {

/// A job on a logical rectangle, whatever the raster mode.
RasterJob JobOn(DeviceContext& context, const RECT& rect, DWORD operation) {
    RasterJob job = JobOn(context, {rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top});
    job.rop = static_cast<std::uint8_t>(operation >> 16);
    return job;
}

void Fill(DeviceContext& context, const RECT& rect, const BrushObject& brush) {
    RasterJob job = JobOn(context, rect, PATCOPY);
    RunWith(job, context, brush);
}

bool IsEmpty(const RECT& rect) {
    return rect.right <= rect.left || rect.bottom <= rect.top;
}

bool Frame(DeviceContext& context, const RECT& rect, const BrushObject& brush) {
    if (IsEmpty(rect))
        return false;
    const RECT sides[] = {{rect.left, rect.top, rect.left + 1, rect.bottom},
                          {rect.right - 1, rect.top, rect.right, rect.bottom},
                          {rect.left, rect.top, rect.right, rect.top + 1},
                          {rect.left, rect.bottom - 1, rect.right, rect.bottom}};
    for (const RECT& side : sides)
        Fill(context, side, brush);
    return true;
}

bool Focus(DeviceContext& context, const RECT& rect) {
    const RECT box = context.ToDevice(rect);
    std::vector<pixman_box32_t> dots;
    std::int64_t distance = 0;
    const std::vector<Figure> figures = RectanglePath(box).Figures();
    const std::vector<POINT>& corners = figures.front().points;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const LineBoxes line = PixelsOfLine(corners[i], corners[(i + 1) % corners.size()], context.Visible().Box(),
                                            Dashes({1, 1}), distance);
        dots.insert(dots.end(), line.dashes.begin(), line.dashes.end());
    }
    InvertArea(context, Region(dots.data(), static_cast<int>(dots.size())));
    return true;
}

/// The system colours of the left and upper, and of the right and lower sides of a line.
struct Sides {
    int lit;
    int shaded;
};

constexpr int kNone = -1;

/// @param border one BDR_ value.
Sides ColoursOf(UINT border, UINT flags) {
    const bool isOuter = border & BDR_OUTER;
    const bool isSoft = flags & BF_SOFT;
    if (flags & BF_MONO)
        return isOuter ? Sides{COLOR_WINDOWFRAME, COLOR_WINDOWFRAME} : Sides{COLOR_WINDOW, COLOR_WINDOW};
    if (flags & BF_FLAT)
        return isOuter ? Sides{COLOR_BTNSHADOW, COLOR_BTNSHADOW} : Sides{COLOR_BTNFACE, COLOR_BTNFACE};
    switch (border) {
    case BDR_RAISEDOUTER:
        return {isSoft ? COLOR_BTNHIGHLIGHT : COLOR_3DLIGHT, COLOR_3DDKSHADOW};
    case BDR_SUNKENOUTER:
        return {isSoft ? COLOR_3DDKSHADOW : COLOR_BTNSHADOW, COLOR_BTNHIGHLIGHT};
    case BDR_RAISEDINNER:
        return {isSoft ? COLOR_3DLIGHT : COLOR_BTNHIGHLIGHT, COLOR_BTNSHADOW};
    case BDR_SUNKENINNER:
        return {isSoft ? COLOR_BTNSHADOW : COLOR_3DDKSHADOW, COLOR_3DLIGHT};
    default:
        return {kNone, kNone};
    }
}

class SystemBrush {
public:
    explicit SystemBrush(int index) : m_brush(LOGBRUSH{BS_SOLID, GetSysColor(index), /*hatch*/ 0}) {}
    operator const BrushObject&() const { return m_brush; }

private:
    const BrushObject m_brush;
};

/// Draws one line of a border; what it surrounds is left in @p rect. The lower side covers the corners.
void DrawBorder(DeviceContext& context, RECT& rect, const Sides& colours, UINT flags) {
    const struct {
        UINT flag;
        RECT side;
        int colour;
    } sides[] = {{BF_LEFT, {rect.left, rect.top, rect.left + 1, rect.bottom}, colours.lit},
                 {BF_TOP, {rect.left, rect.top, rect.right, rect.top + 1}, colours.lit},
                 {BF_RIGHT, {rect.right - 1, rect.top, rect.right, rect.bottom}, colours.shaded},
                 {BF_BOTTOM, {rect.left, rect.bottom - 1, rect.right, rect.bottom}, colours.shaded}};
    for (const auto& [flag, side, colour] : sides)
        if (flags & flag)
            Fill(context, side, SystemBrush(colour));
    rect = {rect.left + (flags & BF_LEFT ? 1 : 0), rect.top + (flags & BF_TOP ? 1 : 0),
            rect.right - (flags & BF_RIGHT ? 1 : 0), rect.bottom - (flags & BF_BOTTOM ? 1 : 0)};
}

bool DrawBorders(DeviceContext& context, RECT& rect, UINT edge, UINT flags) {
    constexpr UINT kDiagonal = 0x0010;
    const bool isPlain = flags & (BF_MONO | BF_FLAT);
    const bool isBoth = (edge & BDR_OUTER) == BDR_OUTER || (edge & BDR_INNER) == BDR_INNER;
    if (flags & kDiagonal || (isBoth && !isPlain))
        return Fail(ERROR_INVALID_PARAMETER);
    RECT inside = rect;
    for (const UINT border : {edge & BDR_OUTER, edge & BDR_INNER})
        if (border != 0)
            DrawBorder(context, inside, ColoursOf(border, flags), flags);
    if (flags & BF_MIDDLE && !IsEmpty(inside))
        Fill(context, inside, SystemBrush(flags & BF_MONO ? COLOR_WINDOW : COLOR_BTNFACE));
    if (flags & BF_ADJUST)
        rect = inside;
    return true;
}

/// Looks the brush of a call up.
template <class Draw>
int WithBrush(const char* name, HDC dc, const RECT* rect, HBRUSH handle, Draw draw) {
    return OnContext(name, dc, [&](DeviceContext& context) {
        const auto brush = FindObject<BrushObject>(handle);
        return rect && brush && draw(context, *rect, *brush);
    });
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

int WINAPI FillRect(HDC dc, const RECT* rect, HBRUSH handle) {
    return WithBrush("FillRect", dc, rect, handle,
                     [](DeviceContext& context, const RECT& box, const BrushObject& brush) {
                         Fill(context, box, brush);
                         return true;
                     });
}

int WINAPI FrameRect(HDC dc, const RECT* rect, HBRUSH handle) {
    return WithBrush("FrameRect", dc, rect, handle, Frame);
}

BOOL WINAPI InvertRect(HDC dc, const RECT* rect) {
    return OnContext("InvertRect", dc, [&](DeviceContext& context) {
        if (rect)
            Run(JobOn(context, *rect, DSTINVERT));
        return rect != nullptr;
    });
}

BOOL WINAPI DrawFocusRect(HDC dc, const RECT* rect) {
    return OnContext("DrawFocusRect", dc, [&](DeviceContext& context) { return rect && Focus(context, *rect); });
}

BOOL WINAPI DrawEdge(HDC dc, LPRECT rect, UINT edge, UINT flags) {
    return OnContext("DrawEdge", dc,
                     [&](DeviceContext& context) { return rect && DrawBorders(context, *rect, edge, flags); });
}
