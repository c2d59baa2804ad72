#include "platform/gdi/Brushes.h"
#include "platform/gdi/text/TextDrawing.h"
#include "platform/kernel/Faults.h"
#include "platform/user/DrawTexts.h"
#include "platform/user/SystemColours.h"

#include <cstring>

namespace kel::platform {
namespace {

constexpr UINT kKind = 0x000F;
constexpr UINT kKnown =
    DST_TEXT | DST_PREFIXTEXT | DSS_DISABLED | DSS_MONO | DSS_HIDEPREFIX | DSS_PREFIXONLY | DSS_RIGHT;

UINT FormatOf(UINT flags) {
    UINT format = DT_NOCLIP;
    if ((flags & kKind) == DST_TEXT)
        format |= DT_NOPREFIX;
    if (flags & DSS_HIDEPREFIX)
        format |= DT_HIDEPREFIX;
    if (flags & DSS_PREFIXONLY)
        format |= DT_PREFIXONLY;
    return format | (flags & DSS_RIGHT ? DT_RIGHT : DT_LEFT);
}

/// Draws with another text colour and no background.
void DrawIn(DeviceContext& context, COLORREF colour, TextToDraw text, RECT rect) {
    const COLORREF textColour = context.State().textColour;
    const int backMode = context.State().backMode;
    context.State().textColour = colour;
    context.State().backMode = TRANSPARENT;
    DrawInRect(context, text, rect);
    context.State().textColour = textColour;
    context.State().backMode = backMode;
}

bool Draw(DeviceContext& context, const TextToDraw& text, RECT rect, UINT flags, const BrushObject* brush) {
    if (flags & DSS_DISABLED) {
        DrawIn(context, SystemColour(COLOR_3DHILIGHT), text,
               {rect.left + 1, rect.top + 1, rect.right + 1, rect.bottom + 1});
        DrawIn(context, SystemColour(COLOR_3DSHADOW), text, rect);
    } else if (flags & DSS_MONO) {
        DrawIn(context, context.ColourOf(*brush), text, rect);
    } else {
        TextToDraw copy = text;
        return DrawInRect(context, copy, rect) != 0;
    }
    return true;
}

/// The rectangle at a point; of the text's own size if none is given.
RECT RectOf(DeviceContext& context, const TextToDraw& text, POINT at, SIZE size) {
    RECT rect{at.x, at.y, at.x + size.cx, at.y + size.cy};
    if (size.cx != 0 && size.cy != 0)
        return rect;
    RECT own = rect;
    TextToDraw measured{text.run, text.format | DT_CALCRECT};
    DrawInRect(context, measured, own);
    return {at.x, at.y, size.cx == 0 ? own.right : rect.right, size.cy == 0 ? own.bottom : rect.bottom};
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

BOOL WINAPI DrawStateA(HDC dc, HBRUSH handle, DRAWSTATEPROC callback, LPARAM data, WPARAM length, int x, int y,
                       int width, int height, UINT flags) {
    if (CallFails("DrawStateA"))
        return FALSE;
    const auto context = FindContext(dc);
    if (!context)
        return FALSE;
    const UINT kind = flags & kKind;
    const auto* units = reinterpret_cast<LPCSTR>(data);
    if (callback || !units || (flags & ~kKnown) != 0 || (kind != DST_TEXT && kind != DST_PREFIXTEXT))
        return Fail(ERROR_INVALID_PARAMETER);
    const auto brush = flags & DSS_MONO ? FindObject<BrushObject>(handle) : nullptr;
    if (flags & DSS_MONO && !brush)
        return FALSE;
    return WithMemory(false, [&] {
        const TextToDraw text{RunOfAnsi(units, length == 0 ? std::strlen(units) : length), FormatOf(flags)};
        if (!ContextFont(*context))
            return false;
        const RECT rect = RectOf(*context, text, {x, y}, {width, height});
        return Draw(*context, text, rect, flags, brush.get());
    });
}
