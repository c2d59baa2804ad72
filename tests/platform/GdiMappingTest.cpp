#include "Sheet.h"
#include "Workplace.h"

#include <climits>
#include <cmath>
#include <functional>

namespace {

std::string Extents(HDC dc) {
    SIZE window{}, viewport{};
    GetWindowExtEx(dc, &window);
    GetViewportExtEx(dc, &viewport);
    return Text(window) + " to " + Text(viewport);
}

LONG Units(int millimetres, int inInch) {
    return std::lround(millimetres * inInch / 254.0);
}

} // namespace

TEST_CASE("a product is divided with 64 bits and rounded to the nearest") {
    const int rows[][4] = {{5, 1, 2, 3},
                           {-5, 1, 2, -3},
                           {-7, -3, -2, -11},
                           {1, 1, 3, 0},
                           {1, 1, 0, -1},
                           {INT_MAX, 2, 1, -1},
                           {INT_MAX, 4, 5, 1717986918},
                           {INT_MIN, 1, 1, -1},
                           {INT_MIN, 1, 2, -1073741824},
                           {1, 1, INT_MIN, 0}};
    for (const auto& [number, numerator, denominator, result] : rows) {
        CAPTURE(number);
        CHECK(MulDiv(number, numerator, denominator) == result);
    }
}

TEST_CASE("modes of fixed scale measure the screen in their units") {
    const MemoryContext memory;
    CHECK((GetMapMode(memory) == MM_TEXT && Extents(memory) == "1 1 to 1 1"));
    const int across = GetDeviceCaps(memory, HORZSIZE);
    const int down = GetDeviceCaps(memory, VERTSIZE);
    const SIZE pixels{GetDeviceCaps(memory, HORZRES), -GetDeviceCaps(memory, VERTRES)};
    CHECK(across == std::lround(pixels.cx * 25.4 / 96));
    const std::pair<int, int> modes[] = {{MM_LOMETRIC, 2540},   {MM_HIMETRIC, 25400}, {MM_LOENGLISH, 1000},
                                         {MM_HIENGLISH, 10000}, {MM_TWIPS, 14400},    {MM_ISOTROPIC, 2540}};
    int previous = MM_TEXT;
    for (const auto& [mode, inInch] : modes) {
        CAPTURE(mode);
        CHECK(SetMapMode(memory, mode) == previous);
        previous = mode;
        if (mode != MM_ISOTROPIC)
            CHECK((SetWindowExtEx(memory, 5, 0, nullptr) && ScaleViewportExtEx(memory, 0, 1, 1, 1, nullptr)));
        CHECK(Extents(memory) == Text(SIZE{Units(across, inInch), Units(down, inInch)}) + " to " + Text(pixels));
    }
    for (const int wrong : {-1, 0, 9})
        CHECK(SetMapMode(memory, wrong) == 0);
    CHECK(GetMapMode(memory) == MM_ISOTROPIC);
}

TEST_CASE("extents are the caller's in two modes, and even in one") {
    const MemoryContext memory;
    const std::tuple<int, SIZE, SIZE, const char*> rows[] = {
        {MM_ANISOTROPIC, {100, 200}, {300, -500}, "100 200 to 300 -500"},
        {MM_ISOTROPIC, {-10, 10}, {100, 33}, "-10 10 to 33 33"},
        {MM_ISOTROPIC, {100, 200}, {300, 500}, "100 200 to 250 500"},
        {MM_ISOTROPIC, {7, 3}, {1, 1000}, "7 3 to 1 1"},
        {MM_ISOTROPIC, {1000, 1}, {33, -33}, "1000 1 to 33 -1"}, // never 0
    };
    for (const auto& [mode, window, viewport, extents] : rows) {
        CAPTURE(std::string(extents));
        SetMapMode(memory, mode);
        CHECK(SetWindowExtEx(memory, window.cx, window.cy, nullptr));
        CHECK(SetViewportExtEx(memory, viewport.cx, viewport.cy, nullptr));
        CHECK(Extents(memory) == extents);
    }
    SIZE before{};
    CHECK((ScaleViewportExtEx(memory, 1, 3, 1, 3, &before) && Text(before) == "33 -1"));
    CHECK_FALSE((SetWindowExtEx(memory, 0, 5, &before) || SetViewportExtEx(memory, 5, 0, nullptr) ||
                 ScaleWindowExtEx(memory, 0, 1, 1, 1, nullptr) || ScaleViewportExtEx(memory, 1, 0, 1, 1, nullptr)));
    CHECK(Text(before) == "1000 1"); // a call that fails answers, too
}

TEST_CASE("points are mapped and mapped back, to the nearest number and halves up") {
    const MemoryContext memory;
    Scale(memory, {2, 4}, {1, -2});
    SetWindowOrgEx(memory, 6, 5, nullptr);
    SetViewportOrgEx(memory, 5, 11, nullptr);
    const std::tuple<POINT, const char*, const char*> rows[] = {
        {{6, 5}, "5 11", "6 5"}, {{7, 6}, "6 11", "8 5"}, {{5, 4}, "5 12", "6 3"}, {{-3, 105}, "1 -39", "-2 105"}};
    for (const auto& [point, device, back] : rows) {
        POINT points[] = {point, {8, 7}}; // the second one is left alone on the way back
        CHECK((LPtoDP(memory, points, 2) && Text(points[0]) == device && Text(points[1]) == "6 10"));
        CHECK((DPtoLP(memory, points, 1) && Text(points[0]) == back && Text(points[1]) == "6 10"));
    }
}

TEST_CASE("mapping, position and brush origin are put aside and come back") {
    const MemoryContext memory;
    POINT point{9, 9};
    FLOAT limit = 0;
    SetMiterLimit(memory, 20, nullptr);
    SetBrushOrgEx(memory, 1, -2, nullptr);
    MoveToEx(memory, 3, 4, nullptr);
    SaveDC(memory);
    SetMapMode(memory, MM_TWIPS);
    SetMiterLimit(memory, 2, nullptr);
    SetWindowOrgEx(memory, 50, 50, nullptr);
    CHECK((GetCurrentPositionEx(memory, &point) && Text(point) == "3 4"));
    MoveToEx(memory, 5, 6, nullptr);
    SetBrushOrgEx(memory, 7, 8, nullptr);
    RestoreDC(memory, -1);
    CHECK((GetMapMode(memory) == MM_TEXT && Extents(memory) == "1 1 to 1 1"));
    CHECK((GetWindowOrgEx(memory, &point) && Text(point) == "0 0"));
    CHECK((GetCurrentPositionEx(memory, &point) && Text(point) == "3 4"));
    CHECK((GetBrushOrgEx(memory, &point) && Text(point) == "1 -2"));
    CHECK((GetMiterLimit(memory, &limit) && (limit == 20 || !kOnLayer)));
}

// Where y grows upwards, what is given by start and size holds the start's row, what is given by edges does not.
TEST_CASE("drawing calls map both corners") {
    const RECT rect{2, 2, 8, 6};
    const auto white = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
    const std::pair<std::function<void(HDC)>, const char*> rows[] = {
        {[&](HDC dc) { FillRect(dc, &rect, white); }, "4 12 13 15"},
        {[](HDC dc) { PatBlt(dc, 2, 2, 6, 4, PATCOPY); }, "4 12 13 15"},
        {[&](HDC dc) { InvertRect(dc, &rect); }, "4 12 13 15"},
        {[](HDC dc) { BitBlt(dc, 2, 2, 6, 4, dc, 0, 0, WHITENESS); }, "4 12 13 15"},
        {[](HDC dc) { SetPixel(dc, 2, 2, kRed); }, "4 14 5 15"},
        {[&](HDC dc) { ExtTextOutA(dc, 0, 0, ETO_OPAQUE, &rect, "", 0, nullptr); }, "4 11 13 14"},
        {[](HDC dc) {
             CHECK(IntersectClipRect(dc, 2, 2, 8, 6) == SIMPLEREGION);
             RECT box{};
             CHECK((GetClipBox(dc, &box) == SIMPLEREGION && Text(box) == "2 6 8 2"));
             CHECK((PtVisible(dc, 2, 3) && !PtVisible(dc, 2, 7)));
             PatBlt(dc, -50, -50, 200, 200, PATCOPY);
         },
         "4 11 13 14"},
    };
    for (const auto& [draw, box] : rows) {
        CAPTURE(&draw - &rows[0].first);
        const Sheet sheet(24, 16);
        Scale(sheet, {2, 3}, {3, -2});
        SetViewportOrgEx(sheet, 1, 15, nullptr);
        draw(sheet);
        CHECK(sheet.Box() == box);
    }
}
