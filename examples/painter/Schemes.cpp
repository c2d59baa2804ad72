#include "Schemes.h"

namespace {

struct Row {
    INT index;
    COLORREF classic;
    COLORREF dusk;
};

constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kFace = RGB(212, 208, 200);
constexpr COLORREF kDusk = RGB(58, 62, 78);

const Row kRows[] = {
    {COLOR_ACTIVECAPTION, RGB(10, 36, 106), RGB(140, 82, 38)},
    {COLOR_CAPTIONTEXT, kWhite, RGB(255, 240, 214)},
    {COLOR_ACTIVEBORDER, kFace, kDusk},
    {COLOR_WINDOW, kWhite, RGB(36, 38, 50)},
    {COLOR_WINDOWTEXT, RGB(0, 0, 0), RGB(226, 228, 236)},
    {COLOR_WINDOWFRAME, RGB(0, 0, 0), RGB(12, 12, 18)},
    {COLOR_HIGHLIGHT, RGB(10, 36, 106), RGB(204, 120, 50)},
    {COLOR_HIGHLIGHTTEXT, kWhite, RGB(24, 20, 16)},
    {COLOR_BTNFACE, kFace, kDusk},
    {COLOR_BTNTEXT, RGB(0, 0, 0), RGB(226, 228, 236)},
    {COLOR_BTNSHADOW, RGB(128, 128, 128), RGB(30, 32, 42)},
    {COLOR_BTNHIGHLIGHT, kWhite, RGB(96, 102, 126)},
    {COLOR_3DDKSHADOW, RGB(64, 64, 64), RGB(16, 17, 24)},
    {COLOR_3DLIGHT, kFace, RGB(74, 79, 99)},
    {COLOR_GRAYTEXT, RGB(128, 128, 128), RGB(134, 138, 156)},
};

} // namespace

void UseScheme(Scheme scheme) {
    INT indexes[sizeof kRows / sizeof *kRows];
    COLORREF colours[sizeof kRows / sizeof *kRows];
    int count = 0;
    for (const Row& row : kRows) {
        indexes[count] = row.index;
        colours[count++] = scheme == Scheme::Classic ? row.classic : row.dusk;
    }
    SetSysColors(count, indexes, colours);
}

SystemColoursKept::SystemColoursKept() {
    for (int i = 0; i < kCount; ++i) {
        m_indexes[i] = i;
        m_colours[i] = GetSysColor(i);
    }
}

SystemColoursKept::~SystemColoursKept() {
    SetSysColors(kCount, m_indexes, m_colours);
}
