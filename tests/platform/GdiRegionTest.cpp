#include "Sheet.h"

#include <vector>

namespace {

Owned<HRGN> Rect(int left, int top, int right, int bottom) {
    return Owned(CreateRectRgn(left, top, right, bottom));
}

/// The rectangles of a region, each in brackets; what the header says is checked on the way.
std::string Rectangles(HRGN region) {
    const DWORD size = GetRegionData(region, 0, nullptr);
    std::vector<RECT> buffer(size / sizeof(RECT) + 1);
    auto* const data = reinterpret_cast<RGNDATA*>(buffer.data());
    CHECK(GetRegionData(region, size - 1, data) == 0);
    REQUIRE(GetRegionData(region, size, data) == size);
    RECT box{};
    const int kind = GetRgnBox(region, &box);
    const DWORD count = data->rdh.nCount;
    CHECK((size == 32 + count * 16 && data->rdh.nRgnSize == count * 16 && Text(data->rdh.rcBound) == Text(box)));
    CHECK(kind == (count == 0 ? NULLREGION : count == 1 ? SIMPLEREGION : COMPLEXREGION));
    std::string text;
    for (DWORD i = 0; i < count; ++i)
        text += "[" + Text(buffer[i + 2]) + "]";
    return text;
}

/// The pixels of a region in rows, whatever rectangles they are in.
std::string Pixels(HRGN region, int width, int height) {
    std::string text;
    for (int y = 0; y < height; ++y, text += '|')
        for (int x = 0; x < width; ++x)
            text += PtInRegion(region, x, y) ? '#' : '.';
    return text;
}

const POINT kTriangleAndSquare[] = {{0, 0}, {6, 0}, {0, 6}, {1, 1}, {4, 1}, {4, 4}, {1, 4}};

} // namespace

TEST_CASE("regions are combined in every mode") {
    const auto a = Rect(0, 0, 5, 5);
    const auto b = Rect(8, 8, 3, 3);
    const auto result = Rect(0, 0, 1, 1);
    const std::tuple<int, int, const char*> rows[] = {
        {RGN_AND, SIMPLEREGION, "[3 3 5 5]"},
        {RGN_OR, COMPLEXREGION, "[0 0 5 3][0 3 8 5][3 5 8 8]"},
        {RGN_XOR, COMPLEXREGION, "[0 0 5 3][0 3 3 5][5 3 8 5][3 5 8 8]"},
        {RGN_DIFF, COMPLEXREGION, "[0 0 5 3][0 3 3 5]"},
        {RGN_COPY, SIMPLEREGION, "[0 0 5 5]"},
    };
    for (const auto& [mode, kind, rectangles] : rows) {
        CAPTURE(mode);
        CHECK(CombineRgn(result, a, b, mode) == kind);
        CHECK(Rectangles(result) == rectangles);
    }
    CHECK((CombineRgn(result, a, nullptr, RGN_COPY) == SIMPLEREGION && EqualRgn(result, a)));
    CHECK((CombineRgn(result, a, b, 6) == ERROR && CombineRgn(result, a, nullptr, RGN_OR) == ERROR));
    CHECK(EqualRgn(result, a)); // what failed changed nothing
    CHECK((CombineRgn(result, result, result, RGN_XOR) == NULLREGION && Rectangles(result).empty()));
    const auto nothing = Rect(7, 7, 7, 9);
    CHECK((EqualRgn(result, nothing) && !EqualRgn(result, a) && !EqualRgn(a, nullptr)));
}

TEST_CASE("regions are moved, set and asked") {
    const auto region = Rect(10, 10, 2, 3);
    CHECK((OffsetRgn(region, -2, 5) == SIMPLEREGION && Rectangles(region) == "[0 8 8 15]"));
    const std::pair<RECT, bool> rows[] = {
        {{7, 14, 20, 20}, true}, {{8, 8, 20, 20}, false}, {{20, 20, 7, 14}, true}, {{-5, -5, 0, 8}, false}};
    for (const auto& [rect, meets] : rows) {
        CAPTURE(Text(rect));
        CHECK(RectInRegion(region, &rect) == meets);
    }
    CHECK((SetRectRgn(region, 5, 5, 0, 0) && Rectangles(region) == "[0 0 5 5]"));
    CHECK((SetRectRgn(region, 1, 1, 1, 5) && OffsetRgn(region, 1, 1) == NULLREGION));
    RECT box{9, 9, 9, 9};
    CHECK((GetRgnBox(region, &box) == NULLREGION && Text(box) == "0 0 0 0" && GetRgnBox(nullptr, &box) == ERROR));
}

TEST_CASE("round and slanted shapes hold the pixels they do on Windows") {
    const INT counts[] = {3, 4};
    const std::tuple<HRGN, int, int, const char*> rows[] = {
        {CreateEllipticRgn(10, 8, 0, 0), 9, 7,
         "..#####..|.#######.|#########|#########|#########|.#######.|..#####..|"},
        {CreateEllipticRgn(3, 3, 4, 4), 5, 1, ".....|"},
        {CreateRoundRectRgn(0, 0, 10, 6, 6, 4), 9, 5, ".#######.|#########|#########|#########|.#######.|"},
        {CreateRoundRectRgn(0, 0, 4, 3, 0, 4), 4, 3, "###.|###.|....|"},
        {CreatePolygonRgn(kTriangleAndSquare, 2, ALTERNATE), 7, 1, ".......|"},
        {CreatePolyPolygonRgn(kTriangleAndSquare, counts, 2, ALTERNATE), 6, 6,
         "######|#...#.|#.....|#..#..|##....|#.....|"},
        {CreatePolyPolygonRgn(kTriangleAndSquare, counts, 2, WINDING), 6, 6,
         "######|#####.|####..|####..|##....|#.....|"},
    };
    for (const auto& [made, width, height, pixels] : rows) {
        CAPTURE(std::string(pixels));
        const Owned region(made);
        CHECK(Pixels(region, width, height) == pixels);
        CHECK(Rectangles(region).empty() == (std::string(pixels).find('#') == std::string::npos));
    }
    CHECK(CreatePolygonRgn(kTriangleAndSquare, -1, ALTERNATE) == nullptr);
}

TEST_CASE("regions are made of data, transformed") {
    struct {
        RGNDATAHEADER header;
        RECT rectangles[3];
    } record = {{32, RDH_RECTANGLES, 3, 48, {0, 0, 9, 9}}, {{3, 3, 10, 10}, {0, 0, 5, 5}, {8, 8, 8, 20}}};
    const auto* const data = reinterpret_cast<const RGNDATA*>(&record);
    const char* const kUnmoved = "[0 0 5 3][0 3 10 5][3 5 10 10]";
    const std::pair<XFORM, const char*> rows[] = {
        {{1, 0, 0, 1, 0, 0}, kUnmoved},
        {{1, 0, 0, 1, 5.5F, -2.5F}, "[6 -2 11 1][6 1 16 3][9 3 16 8]"},
        {{0.5F, 0, 0, 0.5F, 0, 0}, "[0 0 3 2][0 2 5 3][2 3 5 5]"},
        {{0, 1, -1, 0, 0, 0}, "[-5 0 0 3][-10 3 0 5][-10 5 -3 10]"},
        {{0, 0, 0, 0, 0, 0}, ""},
    };
    for (const auto& [transform, rectangles] : rows) {
        CAPTURE(std::string(rectangles));
        CHECK(Rectangles(Owned(ExtCreateRegion(&transform, sizeof record, data))) == rectangles);
    }
    CHECK(Rectangles(Owned(ExtCreateRegion(nullptr, sizeof record, data))) == kUnmoved);
    record.header.dwSize = 31;
    CHECK(ExtCreateRegion(nullptr, sizeof record, data) == nullptr);
    CHECK(ExtCreateRegion(nullptr, sizeof record, nullptr) == nullptr);
}

TEST_CASE("drawing is clipped by regions") {
    const Section section(20, 20, 32);
    const MemoryContext memory(section.handle);
    const auto a = Rect(2, 2, 8, 8);
    const auto b = Rect(5, 5, 30, 10);
    const auto clip = Rect(0, 0, 0, 0);
    CHECK((GetClipRgn(memory, clip) == 0 && ExtSelectClipRgn(memory, a, RGN_DIFF) == COMPLEXREGION));
    CHECK((GetClipRgn(memory, clip) == 1 && Rectangles(clip) == "[0 0 20 2][0 2 2 8][8 2 20 8][0 8 20 20]"));
    CHECK((SelectClipRgn(memory, nullptr) == SIMPLEREGION && GetClipRgn(memory, clip) == 0));
    CHECK((SelectClipRgn(memory, a) == SIMPLEREGION && ExtSelectClipRgn(memory, b, RGN_OR) == COMPLEXREGION));
    CHECK((ExtSelectClipRgn(memory, a, RGN_XOR) == COMPLEXREGION && GetClipRgn(memory, clip) == 1));
    CHECK(Rectangles(clip) == "[8 5 30 8][5 8 30 10]");
    const RECT beside{0, 0, 8, 8}, touching{20, 20, 5, 8};
    CHECK((PtVisible(memory, 8, 5) && !PtVisible(memory, 7, 5) && !PtVisible(memory, 25, 8)));
    CHECK((!RectVisible(memory, &beside) && RectVisible(memory, &touching)));
    Scale(memory, {2, 2}, {3, -3});
    CHECK((OffsetClipRgn(memory, 1, -1) == COMPLEXREGION && GetClipRgn(memory, clip) == 1));
    CHECK(Rectangles(clip) == "[10 7 32 10][7 10 32 12]");
    CHECK((ExtSelectClipRgn(memory, nullptr, RGN_COPY) == SIMPLEREGION && GetClipRgn(memory, clip) == 0));
    CHECK((ExtSelectClipRgn(memory, nullptr, RGN_OR) == ERROR && ExtSelectClipRgn(memory, a, 9) == ERROR));
}

TEST_CASE("regions are filled, painted, framed and inverted") {
    Sheet sheet(8, 6);
    const auto region = Rect(1, 1, 7, 5), empty = Rect(3, 3, 3, 3);
    const auto white = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
    CHECK((FillRgn(sheet, region, white) && sheet.Picture() == "/.WWWWWW/.WWWWWW/.WWWWWW/.WWWWWW"));
    CHECK((InvertRgn(sheet, region) && sheet.Picture().empty()));
    sheet.Rop(R2_XORPEN);
    CHECK((PaintRgn(sheet, region) && sheet.Picture() == "/.BBBBBB/.BBBBBB/.BBBBBB/.BBBBBB"));
    CHECK((FrameRgn(sheet, region, white, 2, -1) && sheet.Picture() == "/.YYYYYY/.YYBBYY/.YYBBYY/.YYYYYY"));
    CHECK((FillRgn(sheet, empty, white) && !FrameRgn(sheet, empty, white, 1, 1)));
}

TEST_CASE("polygons of more rows than memory holds are refused at once") {
    if (!kel::test::FaultsAvailable()) {
        MESSAGE("other systems have limits of their own");
        return;
    }
    const POINT distant[] = {{0, 0}, {10, 2'000'000'000}, {0, 2'000'000'000}};
    CHECK((CreatePolygonRgn(distant, 3, WINDING) == nullptr && GetLastError() == ERROR_NOT_ENOUGH_MEMORY));
    const POINT apart[] = {
        {0, 0}, {2, 0}, {2, 2}, {0, 2}, {0, 2'000'000'000}, {2, 2'000'000'000}, {2, 2'000'000'002}, {0, 2'000'000'002}};
    const INT counts[] = {4, 4};
    const Owned both(CreatePolyPolygonRgn(apart, counts, 2, WINDING));
    CHECK(Rectangles(both) == "[0 0 2 2][0 2000000000 2 2000000002]");
}

TEST_CASE("whichever call fails, regions stay what they were and none is left") {
    kel::test::WithEachCallFailing(ERROR_NOT_ENOUGH_MEMORY, [] {
        const auto a = Rect(0, 0, 5, 5);
        const Owned ellipse(CreateEllipticRgn(0, 0, 9, 9));
        const bool whole = a.handle && ellipse.handle;
        const int kind = CombineRgn(a, a, ellipse, RGN_AND);
        if (whole && kind == ERROR && kel::test::FaultIsOver())
            CHECK(Rectangles(a) == "[0 0 5 5]");
    });
}
