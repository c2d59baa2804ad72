#include "platform/user/Frames.h"

#include "platform/gdi/Resolve.h"
#include "platform/gdi/Screen.h"
#include "platform/kernel/Faults.h"
#include "platform/user/SystemColours.h"
#include "platform/user/WindowContexts.h"

#include <kelcore/platform/fonts.h>
#include <kelcore/platform/textdrawing.h>

namespace kel::platform {
namespace {

constexpr int kCaption = 19;
constexpr int kSmallCaption = 16;

/// What a frame is made of, from the outside.
struct FrameParts {
    bool staticEdge; ///< one sunken line
    bool raised;     ///< two lines
    bool sizing;     ///< one line
    bool border;     ///< one line
    int caption;     ///< its height with the line below
    bool clientEdge; ///< two sunken lines

    FrameParts(DWORD style, DWORD exStyle)
        : staticEdge((exStyle & (WS_EX_STATICEDGE | WS_EX_DLGMODALFRAME)) == WS_EX_STATICEDGE),
          raised(!staticEdge && (exStyle & WS_EX_DLGMODALFRAME || style & (WS_THICKFRAME | WS_DLGFRAME))),
          sizing((style & WS_THICKFRAME) != 0),
          border(style & (WS_BORDER | WS_DLGFRAME) || exStyle & WS_EX_DLGMODALFRAME),
          caption((style & WS_CAPTION) != WS_CAPTION  ? 0
                  : (exStyle & WS_EX_TOOLWINDOW) != 0 ? kSmallCaption
                                                      : kCaption),
          clientEdge((exStyle & WS_EX_CLIENTEDGE) != 0) {}

    int Lines() const { return staticEdge + 2 * raised + sizing + border; }
};

void Fill(DeviceContext& context, RECT box, COLORREF colour) {
    RasterJob job = JobOn(context, {box.left, box.top, box.right - box.left, box.bottom - box.top});
    job.rop = PATCOPY >> 16;
    job.pattern.solid = PixelFor(job.target, colour);
    Run(job);
}

// The outermost line of what is left of the window, which it is taken from.
void DrawLine(DeviceContext& context, RECT& box, int topLeft, int bottomRight) {
    const COLORREF light = SystemColour(topLeft);
    const COLORREF dark = SystemColour(bottomRight);
    Fill(context, {box.left, box.top, box.right - 1, box.top + 1}, light);
    Fill(context, {box.left, box.top + 1, box.left + 1, box.bottom - 1}, light);
    Fill(context, {box.right - 1, box.top, box.right, box.bottom}, dark);
    Fill(context, {box.left, box.bottom - 1, box.right - 1, box.bottom}, dark);
    box = {box.left + 1, box.top + 1, box.right - 1, box.bottom - 1};
}

void DrawCaption(DeviceContext& context, RECT& box, int height) {
    Fill(context, {box.left, box.top, box.right, box.top + height - 1}, SystemColour(COLOR_ACTIVECAPTION));
    Fill(context, {box.left, box.top + height - 1, box.right, box.top + height}, SystemColour(COLOR_3DFACE));
    box.top += height;
}

void DrawParts(DeviceContext& context, RECT box, const FrameParts& parts) {
    if (parts.staticEdge)
        DrawLine(context, box, COLOR_3DSHADOW, COLOR_3DHIGHLIGHT);
    if (parts.raised) {
        DrawLine(context, box, COLOR_3DLIGHT, COLOR_3DDKSHADOW);
        DrawLine(context, box, COLOR_3DHIGHLIGHT, COLOR_3DSHADOW);
    }
    if (parts.sizing)
        DrawLine(context, box, COLOR_ACTIVEBORDER, COLOR_ACTIVEBORDER);
    const int border = parts.raised ? COLOR_3DFACE : COLOR_WINDOWFRAME;
    if (parts.border)
        DrawLine(context, box, border, border);
    if (parts.caption != 0)
        DrawCaption(context, box, parts.caption);
    if (parts.clientEdge) {
        DrawLine(context, box, COLOR_3DSHADOW, COLOR_3DHIGHLIGHT);
        DrawLine(context, box, COLOR_3DDKSHADOW, COLOR_3DLIGHT);
    }
}

// The texts of programs are drawn by calls, and this one is as well; where one of them fails, there is no name.
void DrawName(const std::shared_ptr<DeviceContext>& context, const std::string& name, RECT box) {
    const HDC dc = static_cast<HDC>(AddObject(context));
    const HFONT font = CreateFontA(-11, 0, 0, 0, FW_BOLD, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                                   CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH | FF_SWISS, "Tahoma");
    const HGDIOBJ before = SelectObject(dc, font);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, SystemColour(COLOR_CAPTIONTEXT));
    DrawTextA(dc, name.c_str(), -1, &box, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX);
    SelectObject(dc, before);
    DeleteObject(font);
    CloseContext(dc);
}

} // namespace

RECT FrameOf(DWORD style, DWORD exStyle) {
    const FrameParts parts(style, exStyle);
    const LONG all = parts.Lines() + 2 * parts.clientEdge;
    return {all, all + parts.caption, all, all};
}

void DrawFrame(Window& window) {
    const SIZE size = window.Size();
    const auto context = MakeWindowContext(window, WindowArea::Part::Whole);
    const FrameParts parts(window.Style(), window.ExStyle());
    DrawParts(*context, {0, 0, size.cx, size.cy}, parts);
    const int lines = parts.Lines();
    if (parts.caption != 0 && !window.Name().empty())
        DrawName(context, window.Name(), {lines + 4, lines, size.cx - lines - 4, lines + parts.caption - 1});
}

} // namespace kel::platform

using namespace kel::platform;

BOOL WINAPI AdjustWindowRectEx(LPRECT rect, DWORD style, BOOL menu, DWORD exStyle) {
    if (CallFails("AdjustWindowRectEx"))
        return FALSE;
    if (!rect)
        return Fail(ERROR_INVALID_PARAMETER);
    const RECT frame = FrameOf(style, exStyle);
    *rect = {rect->left - frame.left, rect->top - frame.top - (menu ? GetSystemMetrics(SM_CYMENU) : 0),
             rect->right + frame.right, rect->bottom + frame.bottom};
    return TRUE;
}

BOOL WINAPI AdjustWindowRect(LPRECT rect, DWORD style, BOOL menu) {
    return AdjustWindowRectEx(rect, style, menu, /*exStyle*/ 0);
}

int WINAPI GetSystemMetrics(int index) {
    switch (index) {
    case SM_CXSCREEN:
        return Screen().width;
    case SM_CYSCREEN:
        return Screen().height;
    case SM_CYCAPTION:
    case SM_CYMENU:
        return kCaption;
    case SM_CXBORDER:
    case SM_CYBORDER:
        return 1;
    case SM_CXFIXEDFRAME:
    case SM_CYFIXEDFRAME:
        return 3;
    case SM_CXSIZEFRAME:
    case SM_CYSIZEFRAME:
        return 4;
    case SM_CXEDGE:
    case SM_CYEDGE:
        return 2;
    case SM_CYSMCAPTION:
        return kSmallCaption;
    default:
        return 0;
    }
}
