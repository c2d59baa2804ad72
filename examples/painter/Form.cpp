#include "Form.h"

#include <vector>

namespace {

constexpr RECT kChart = {16, 236, 236, 330};
constexpr RECT kSend = {252, 250, 402, 276};
constexpr RECT kDrop = {252, 286, 402, 312};

/// The places of the children. It counts its own references.
class Rects final : public IRectEnumerator {
public:
    explicit Rects(std::vector<RECT> rects) : m_rects(std::move(rects)) {}
    virtual ~Rects() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_references; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --m_references;
        if (left == 0)
            delete this;
        return left;
    }

    bool Next(RECT& rect) override {
        if (m_next == m_rects.size())
            return false;
        rect = m_rects[m_next++];
        return true;
    }

private:
    const std::vector<RECT> m_rects;
    std::size_t m_next = 0;
    ULONG m_references = 1;
};

/// A font in a context, for a while.
class FontIn {
public:
    FontIn(DC& dc, const Font& font) : m_dc(dc.m_hDC), m_old(SelectObject(m_dc, font.m_hFont)) {}
    FontIn(const FontIn&) = delete;
    FontIn& operator=(const FontIn&) = delete;
    ~FontIn() { SelectObject(m_dc, m_old); }

private:
    const HDC m_dc;
    const HGDIOBJ m_old;
};

void MakeFont(Font& font, int height, int weight) {
    font.CreateFontA(StdA2W("Arial"), height, 0, 0, 0, weight, false, false, false, DEFAULT_CHARSET, 0, 0, 0, 0);
}

} // namespace

Form::Form() {
    MakeFont(m_plain, -13, FW_NORMAL);
    MakeFont(m_bold, -13, FW_BOLD);
    MakeFont(m_large, -21, FW_BOLD);
    if (!MakeIcons(m_icons) ||
        !Create("Harbour of Brenholm", WS_OVERLAPPEDWINDOW, {40, 40, 40 + kWidth, 40 + kHeight}, nullptr))
        return;
    m_chart = std::make_unique<Chart>(Handle(), kChart);
    m_send = std::make_unique<Button>(Handle(), kSend, StdA2W("&Send the table"), true);
    m_drop = std::make_unique<Button>(Handle(), kDrop, StdA2W("&Drop anchor"), false);
}

bool Form::IsReady() const {
    return m_drop && m_chart->Handle() && m_send->Handle() && m_drop->Handle();
}

void Form::GetExcludedRects(IRectEnumerator** rects) {
    *rects = new Rects({kChart, kSend, kDrop});
}

void Form::OnColours() {
    ++m_changes;
    BroadcastSysColorChange();
}

void Form::OnPaint() {
    PaintDC dc(static_cast<IComplexWindowObject*>(this));
    SetBkMode(dc.m_hDC, TRANSPARENT);
    PaintGround(dc);
    PaintTitle(dc);
    PaintTable(dc);
    PaintPaths(dc);
    PaintIcons(dc);
}

// The hatch runs below the children too: where they are, it is clipped away.
void Form::PaintGround(DC& dc) {
    RECT client = {0, 0, 0, 0};
    GetClientRect(Handle(), &client);
    dc.FillSolidRect(client, GetSysColor(COLOR_BTNFACE));
    SetBkMode(dc.m_hDC, TRANSPARENT);
    const Brush hatch(LOGBRUSH{BS_HATCHED, GetSysColor(COLOR_BTNSHADOW), HS_BDIAGONAL});
    const RECT band = {8, 226, client.right - 8, client.bottom - 8};
    FillRect(dc.m_hDC, &band, hatch.m_hBrush);
    dc.Draw3dRect(band.left, band.top, band.right - band.left, band.bottom - band.top, GetSysColor(COLOR_BTNSHADOW),
                  GetSysColor(COLOR_BTNHIGHLIGHT));
}

void Form::PaintTitle(DC& dc) {
    dc.FillSolidRect(0, 0, kWidth, 40, GetSysColor(COLOR_ACTIVECAPTION));
    PaintIcon(m_icons, kIconLight, dc.m_hDC, 12, 8, ILD_TRANSPARENT);
    const FontIn font(dc, m_large);
    SetBkMode(dc.m_hDC, TRANSPARENT);
    SetTextColor(dc.m_hDC, GetSysColor(COLOR_CAPTIONTEXT));
    RECT rect = {44, 0, 420, 40};
    dc.DrawTextA(StdA2W("Tides and depths, Brenholm and the outer skerries"), rect,
                 DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS);
}

void Form::PaintTable(DC& dc) {
    int stops[] = {120, 200, 290};
    dc.FillSolidRect(12, 50, 404, 84, GetSysColor(COLOR_WINDOW));
    dc.Draw3dRect(12, 50, 404, 84, GetSysColor(COLOR_BTNSHADOW), GetSysColor(COLOR_BTNHIGHLIGHT));
    const char* const rows[] = {"Place\tHigh\tLow\tDepth", "Brenholm\t04:12\t10:31\t6.2 m",
                                "Kalvsund\t04:40\t10:58\t3.9 m", "Outer skerries\t05:05\t11:20\t11.4 m"};
    SetBkMode(dc.m_hDC, TRANSPARENT);
    for (int i = 0; i < 4; ++i) {
        const FontIn font(dc, i == 0 ? m_bold : m_plain);
        const bool chosen = i == 2;
        if (chosen)
            dc.FillSolidRect(14, 54 + i * 19, 400, 18, GetSysColor(COLOR_HIGHLIGHT));
        SetBkMode(dc.m_hDC, TRANSPARENT);
        SetTextColor(dc.m_hDC, GetSysColor(chosen ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
        dc.TabbedTextOutA(20, 55 + i * 19, StdA2W(rows[i]), 3, stops, 20);
    }
    const HGDIOBJ old = SelectObject(dc.m_hDC, m_line.m_hPen);
    dc.MoveTo(14, 72);
    LineTo(dc.m_hDC, 414, 72);
    SelectObject(dc.m_hDC, old);
}

void Form::PaintPaths(DC& dc) {
    const FontIn font(dc, m_plain);
    SetTextColor(dc.m_hDC, GetSysColor(COLOR_BTNTEXT));
    RECT path = {16, 142, 226, 160};
    dc.DrawTextA(StdA2W("C:\\Skippers\\Brenholm\\Years\\Tides of the year.dat"), path,
                 DT_SINGLELINE | DT_PATH_ELLIPSIS | DT_NOPREFIX);
    RECT note = {16, 162, 226, 220};
    dc.DrawTextA(StdA2W("Depths count from the lowest water of the year; take half a metre off in easterly wind."),
                 note, DT_WORDBREAK | DT_NOPREFIX);
    dc.DrawStateA({252, 142}, {0, 0}, StdA2W("Pilot: nobody on duty"), DSS_DISABLED, /*prefixText*/ false, nullptr);
}

void Form::PaintIcons(DC& dc) {
    const struct {
        int icon;
        unsigned int style;
    } shown[] = {{kIconAnchor, ILD_TRANSPARENT},
                 {kIconWave, ILD_TRANSPARENT},
                 {kIconWave, ILD_TRANSPARENT | ILD_BLEND50},
                 {kIconLight, ILD_TRANSPARENT | INDEXTOOVERLAYMASK(kMarkOverlay)},
                 {kIconAnchor, ILD_MASK}};
    int x = 252;
    for (const auto& one : shown) {
        PaintIcon(m_icons, one.icon, dc.m_hDC, x, 172, one.style);
        x += kIconSize + 8;
    }
}
