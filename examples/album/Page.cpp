#include "Page.h"

#include "Translucent.h"

#include <kelcore/text.h>

#include <algorithm>

namespace kelalbum {
namespace {

const XSize<double> kAsItIs(1.0, 1.0);

constexpr int kColumns = 4;
constexpr int kMargin = 35;
constexpr int kGap = 18;
constexpr int kPadding = 7; // of a card
constexpr int kNameHeight = 17;
constexpr int kDetailHeight = 15;
constexpr int kPaperWidth = Page::kPicture.cx + 2 * kPadding;
constexpr int kPaperHeight = Page::kPicture.cy + 2 * kPadding + kNameHeight + kDetailHeight + 5;
constexpr int kHeading = 84;
constexpr int kWidth = 2 * kMargin + kColumns * (kPaperWidth + kGap) - kGap;
constexpr int kBlur = 9;
constexpr int kDrop = 3; // how far shadows fall
constexpr int kSquare = 8;

constexpr COLORREF kGround = RGB(233, 231, 227);
constexpr COLORREF kPaper = RGB(255, 255, 255);
constexpr COLORREF kMat = RGB(244, 243, 240);
constexpr COLORREF kCheck = RGB(226, 224, 220);
constexpr COLORREF kHairline = RGB(208, 205, 199);
constexpr COLORREF kInk = RGB(38, 42, 48);
constexpr COLORREF kSoftInk = RGB(124, 124, 122);
constexpr COLORREF kAccent = RGB(31, 138, 158);

Rect Inflated(const Rect& rect, int by) {
    return Rect(rect.left - by, rect.top - by, rect.right + by, rect.bottom + by);
}

void MakeFont(Font& font, int height, int weight) {
    font.CreateFontA(u"Arial"_w, -height, 0, 0, 0, weight, false, false, false, DEFAULT_CHARSET, 0, 0,
                     ANTIALIASED_QUALITY, 0);
}

/// An object in a context, for a while.
class Chosen {
public:
    Chosen(const DC& dc, HGDIOBJ object) : m_dc(dc.m_hDC), m_old(SelectObject(m_dc, object)) {}
    Chosen(const Chosen&) = delete;
    Chosen& operator=(const Chosen&) = delete;
    ~Chosen() { SelectObject(m_dc, m_old); }

private:
    const HDC m_dc;
    const HGDIOBJ m_old;
};

Rect PaperOf(int card) {
    const int left = kMargin + card % kColumns * (kPaperWidth + kGap);
    const int top = kMargin + kHeading + card / kColumns * (kPaperHeight + kGap);
    return Rect(left, top, left + kPaperWidth, top + kPaperHeight);
}

int HeightFor(int cards) {
    return (cards == 0 ? kMargin + kHeading : static_cast<int>(PaperOf(cards - 1).bottom)) + kMargin;
}

} // namespace

Page::Page(const WideString& title, const WideString& note, int cards)
    : m_shadow(MakeShadow(Size(kPaperWidth, kPaperHeight), kBlur, /*opacity*/ 0.30)),
      m_dc(CreateCompatibleDC(nullptr), /*object*/ nullptr), m_ownBitmap(nullptr) {
    if (!m_sheet.CreateBitmap(Size(kWidth, HeightFor(cards)), 32))
        throw Failure{"no memory for a sheet of " + Counted(static_cast<unsigned long long>(cards), "picture")};
    m_ownBitmap = SelectObject(m_dc.m_hDC, m_sheet.GetHandle());
    MakeFont(m_titleFont, 30, FW_BOLD);
    MakeFont(m_nameFont, 13, FW_BOLD);
    MakeFont(m_detailFont, 12, FW_NORMAL);
    m_dc.FillSolidRect(Rect(0, 0, kWidth, HeightFor(cards)), kGround);
    SetBkMode(m_dc.m_hDC, TRANSPARENT);
    DrawHeading(title, note);
}

Page::~Page() {
    if (m_ownBitmap)
        SelectObject(m_dc.m_hDC, m_ownBitmap);
}

void Page::Add(const Card& card, IBitmap::BM_Mode mode) {
    const Rect paper = PaperOf(m_cards++);
    const int left = paper.left + kPadding;
    const int top = paper.top + kPadding;
    const Rect area(left, top, left + kPicture.cx, top + kPicture.cy);
    DrawShadow(paper);
    m_dc.FillSolidRect(paper, kPaper);
    m_dc.FillSolidRect(area, kMat);
    if (!DrawPicture(card.picture, area, mode))
        throw Failure{"the system refused to draw " + Shown(card.name)};
    DrawFrame(area);
    const int name = area.bottom + kPadding;
    const int details = name + kNameHeight;
    DrawLine(card.name, m_nameFont, kInk, Rect(left, name, area.right, details));
    DrawLine(card.details, m_detailFont, kSoftInk, Rect(left, details, area.right, details + kDetailHeight));
}

void Page::DrawHeading(const WideString& title, const WideString& note) {
    const int right = kWidth - kMargin;
    m_dc.FillSolidRect(Rect(kMargin, kMargin - 6, kMargin + 40, kMargin - 2), kAccent);
    DrawLine(title, m_titleFont, kInk, Rect(kMargin, kMargin + 4, right, kMargin + 40));
    DrawLine(note, m_detailFont, kSoftInk, Rect(kMargin, kMargin + 42, right, kMargin + 60));
}

void Page::DrawShadow(const Rect& paper) {
    Rect target = Inflated(paper, kBlur);
    OffsetRect(&target, 0, kDrop);
    const Size size = m_shadow.GetDimension();
    m_shadow.AlphaDraw(m_dc.m_hDC, target, Rect(0, 0, size.cx, size.cy), /*opacity*/ 1.0, /*perPixel*/ true);
}

// What lets the ground through lies on a chequered one.
bool Page::DrawPicture(const XPDib& picture, const Rect& area, IBitmap::BM_Mode mode) {
    if (!HasAlpha(picture))
        return picture.Draw(m_dc.m_hDC, area, mode, kAsItIs);
    for (int top = area.top; top < area.bottom; top += kSquare) {
        for (int left = area.left + (top - area.top) % (2 * kSquare); left < area.right; left += 2 * kSquare) {
            const int right = std::min<int>(left + kSquare, area.right);
            m_dc.FillSolidRect(Rect(left, top, right, std::min<int>(top + kSquare, area.bottom)), kCheck);
        }
    }
    return Premultiplied(picture).AlphaDraw(m_dc.m_hDC, area, /*opacity*/ 1.0, /*perPixel*/ true, mode, kAsItIs);
}

void Page::DrawLine(const WideString& text, const Font& font, COLORREF colour, const Rect& line) {
    const Chosen chosen(m_dc, font.m_hFont);
    SetTextColor(m_dc.m_hDC, colour);
    Rect rect = line;
    m_dc.DrawTextA(text, rect, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX);
}

void Page::DrawFrame(const Rect& area) {
    const Pen hairline(PS_SOLID, 1, kHairline);
    const Chosen pen(m_dc, hairline.m_hPen);
    const Chosen brush(m_dc, GetStockObject(NULL_BRUSH));
    Rectangle(m_dc.m_hDC, area.left - 1, area.top - 1, area.right + 1, area.bottom + 1);
}

} // namespace kelalbum
