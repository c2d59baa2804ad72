#include "Sheet.h"

namespace {

constexpr int kCellWidth = 150;
constexpr int kCellHeight = 124;
constexpr int kGap = 12;
constexpr int kMargin = 20;
constexpr int kBar = 6;
constexpr int kSquare = 10;

constexpr unsigned long kPaper = 0x00F7F5F2;
constexpr unsigned long kPanel = 0x00FFFFFF;
constexpr unsigned long kLine = 0x00C8C4BE;
constexpr unsigned long kGround = 0x00E4E1DC;
constexpr unsigned long kDark = 0x00B4B0AA;

constexpr int kPanelWidth = Sheet::kColumns * (kCellWidth + kGap) + kGap;

int PanelHeight(int rows) {
    return kBar + rows * (kCellHeight + kGap) + kGap;
}

Rect Inside(const Rect& rect, int by) {
    return Rect(rect.left + by, rect.top + by, rect.right - by, rect.bottom - by);
}

} // namespace

Sheet::Sheet(int rows, int groups) : m_dc(CreateCompatibleDC(nullptr)), m_top(kMargin) {
    const int height = rows * (kCellHeight + kGap) + groups * (kBar + kGap + kMargin) + kMargin;
    const Size size(kPanelWidth + 2 * kMargin, height);
    if (m_picture.CreateBitmap(size, 32))
        m_previous = SelectObject(m_dc, m_picture.GetHandle());
    Fill(Rect(0, 0, size.cx, size.cy), kPaper);
}

Sheet::~Sheet() {
    if (m_previous)
        SelectObject(m_dc, m_previous);
    DeleteDC(m_dc);
}

void Sheet::Fill(const Rect& area, unsigned long color) const {
    SetBkColor(m_dc, static_cast<COLORREF>(color));
    ExtTextOutA(m_dc, 0, 0, ETO_OPAQUE, &area, /*text*/ nullptr, 0, /*spacing*/ nullptr);
}

void Sheet::BeginGroup(int rows, unsigned long color) {
    const Rect panel(kMargin, m_top, kMargin + kPanelWidth, m_top + PanelHeight(rows));
    Fill(panel, kLine);
    Fill(Inside(panel, 1), kPanel);
    Fill(Rect(panel.left, panel.top, panel.right, panel.top + kBar), color);
    m_groupTop = m_top + kBar + kGap;
    m_top = panel.bottom + kMargin;
    m_cell = 0;
}

Rect Sheet::NextCell(bool checkered) {
    const int left = kMargin + kGap + m_cell % kColumns * (kCellWidth + kGap);
    const int top = m_groupTop + m_cell / kColumns * (kCellHeight + kGap);
    ++m_cell;
    const Rect cell(left, top, left + kCellWidth, top + kCellHeight);
    Fill(cell, kLine);
    const Rect ground = Inside(cell, 1);
    Fill(ground, kGround);
    for (int y = 0; checkered && y * kSquare < kCellHeight; ++y) {
        for (int x = y % 2; x * kSquare < kCellWidth; x += 2) {
            const Rect square(left + x * kSquare, top + y * kSquare, left + (x + 1) * kSquare, top + (y + 1) * kSquare);
            Rect seen;
            if (IntersectRect(&seen, &square, &ground))
                Fill(seen, kDark);
        }
    }
    return ground;
}
