#include "Children.h"

#include <cmath>

namespace {

RECT ClientOf(HWND window) {
    RECT client = {0, 0, 0, 0};
    GetClientRect(window, &client);
    return client;
}

// Two lines of shadow, sunken or raised; the rectangle shrinks to what is left.
void DrawFrame(DC& dc, RECT& rect, int outerLight, int outerDark, int innerLight, int innerDark) {
    const int pairs[][2] = {{outerLight, outerDark}, {innerLight, innerDark}};
    for (const auto& pair : pairs) {
        dc.Draw3dRect(rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top, GetSysColor(pair[0]),
                      GetSysColor(pair[1]));
        InflateRect(&rect, -1, -1);
    }
}

} // namespace

Button::Button(HWND parent, const RECT& place, const WideString& text, bool enabled)
    : m_text(text), m_enabled(enabled) {
    m_font.CreateFontA(StdA2W("Arial"), -13, 0, 0, 0, FW_NORMAL, false, false, false, DEFAULT_CHARSET, 0, 0, 0, 0);
    Create("button", WS_CHILD | WS_VISIBLE, place, parent);
}

void Button::OnPaint() {
    PaintDC dc(Handle());
    RECT rect = ClientOf(Handle());
    FillRect(dc.m_hDC, &rect, m_face.m_hBrush);
    DrawFrame(dc, rect, COLOR_BTNHIGHLIGHT, COLOR_3DDKSHADOW, COLOR_3DLIGHT, COLOR_BTNSHADOW);
    const HGDIOBJ old = SelectObject(dc.m_hDC, m_font.m_hFont);
    SetBkMode(dc.m_hDC, TRANSPARENT);
    SetTextColor(dc.m_hDC, GetSysColor(COLOR_BTNTEXT));
    if (m_enabled) {
        dc.DrawTextA(m_text, rect, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    } else {
        const SIZE size = dc.GetTextExtent(m_text);
        dc.DrawStateA({(rect.left + rect.right - size.cx) / 2, (rect.top + rect.bottom - size.cy) / 2}, {0, 0}, m_text,
                      DSS_DISABLED, /*prefixText*/ true, nullptr);
    }
    SelectObject(dc.m_hDC, old);
}

Chart::Chart(HWND parent, const RECT& place) {
    Create("chart", WS_CHILD | WS_VISIBLE, place, parent);
}

void Chart::OnPaint() {
    constexpr int kMost = 400;
    PaintDC dc(Handle());
    RECT rect = ClientOf(Handle());
    DrawFrame(dc, rect, COLOR_BTNSHADOW, COLOR_BTNHIGHLIGHT, COLOR_3DDKSHADOW, COLOR_3DLIGHT);
    FillRect(dc.m_hDC, &rect, m_ground.m_hBrush);
    POINT curve[kMost + 2];
    int count = 0;
    const int middle = (rect.top + rect.bottom) / 2;
    for (int x = rect.left; x < rect.right && count < kMost; ++x)
        curve[count++] = {x, middle - static_cast<int>(std::lround(std::sin(x / 17.0) * (middle - rect.top) * 0.6))};
    const int points = count;
    curve[count++] = {rect.right, rect.bottom};
    curve[count++] = {rect.left, rect.bottom};
    Rgn water;
    if (water.CreatePolygonRgn(curve, count, WINDING))
        FillRgn(dc.m_hDC, water, m_water.m_hBrush);
    const HGDIOBJ old = SelectObject(dc.m_hDC, m_line.m_hPen);
    Polyline(dc.m_hDC, curve, points);
    dc.MoveTo(rect.left, middle);
    LineTo(dc.m_hDC, rect.right, middle);
    SelectObject(dc.m_hDC, old);
}
