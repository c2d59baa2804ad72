#include "tests/gdi/Canvas.h"
#include "tests/gdi/Complex.h"

TEST_CASE("a context is deleted by its owner, when another comes and at the end") {
    const HDC first = CreateCompatibleDC(nullptr), second = CreateCompatibleDC(nullptr);
    {
        DC dc(first, nullptr);
        CHECK((dc.Attach(second) && GetObjectType(first) == 0 && GetObjectType(second) == OBJ_MEMDC));
    }
    CHECK(GetObjectType(second) == 0);
    DC none;
    CHECK_FALSE(none.Attach(nullptr));
}

TEST_CASE("mapping and positions are set and asked, the setters giving what was") {
    DC dc(CreateCompatibleDC(nullptr), nullptr);
    SetMapMode(dc.m_hDC, MM_ANISOTROPIC);
    CHECK((Text(dc.SetWindowExt(100, 200)) == "1 1" && Text(dc.SetViewportExt(30, -40)) == "1 1"));
    CHECK((Text(dc.ScaleWindowExt(2, 1, 1, 2)) == "100 200" && Text(dc.GetWindowExt()) == "200 100"));
    CHECK((Text(dc.ScaleViewportExt(1, 3, 2, 1)) == "30 -40" && Text(dc.GetViewportExt()) == "10 -80"));
    CHECK((Text(dc.SetWindowOrg(5, 6)) == "0 0" && Text(dc.OffsetWindowOrg(1, 1)) == "5 6"));
    CHECK((Text(dc.SetViewportOrg(7, 8)) == "0 0" && Text(dc.OffsetViewportOrg(-1, 2)) == "7 8"));
    CHECK((Text(dc.GetWindowOrg()) == "6 7" && Text(dc.GetViewportOrg()) == "6 10"));
    CHECK((Text(dc.SetBrushOrg(3, 4)) == "0 0" && Text(dc.GetBrushOrg()) == "3 4"));
    CHECK((Text(dc.MoveTo(11, 12)) == "0 0" && Text(dc.GetCurrentPosition()) == "11 12"));
}

TEST_CASE("sizes are multiplied by one extent and divided by the other, rounded half away from zero") {
    const std::tuple<SIZE, SIZE, SIZE, const char*, const char*> rows[] = {
        {{1, 1}, {2, -2}, {100, 50}, "200 100", "50 25"},
        {{-2, 4}, {3, 1}, {5, 5}, "8 1", "3 20"},
        {{3, 3}, {1, 1}, {-5, -4}, "-2 -1", "-15 -12"}};
    for (const auto& [window, viewport, size, toLogical, toDevice] : rows) {
        const DC dc(CreateCompatibleDC(nullptr), nullptr);
        Scale(dc.m_hDC, window, viewport);
        SIZE logical = size, device = size;
        dc.DPtoLP(logical);
        dc.LPtoDP(device);
        CHECK((Text(logical) == toLogical && Text(device) == toDevice));
    }
}

TEST_CASE("rectangles are filled, and frames have their right and bottom lines inside") {
    Canvas canvas(12, 12), expected(12, 12);
    canvas.dc.FillSolidRect(RECT{0, 0, 12, 12}, 0x808080);
    canvas.dc.Draw3dRect(1, 1, 10, 10, 0xFFFFFF, 0x404040);
    CHECK(GetBkColor(canvas.dc.m_hDC) == 0x404040);
    const std::pair<RECT, COLORREF> layers[] = {
        {{0, 0, 12, 12}, 0x808080}, {{1, 1, 11, 11}, 0x404040}, {{1, 1, 10, 10}, 0xFFFFFF}, {{2, 2, 10, 10}, 0x808080}};
    for (const auto& [rect, colour] : layers)
        FillRect(expected.dc.m_hDC, &rect, Brush(colour).m_hBrush);
    CHECK(canvas.Pixels() == expected.Pixels());
}

TEST_CASE("drawing leaves out what a window's object excludes") {
    const RECT excluded[] = {{0, 0, 2, 2}, {6, 6, 8, 9}};
    for (const std::size_t count : {0u, 2u}) {
        Complex object(nullptr, excluded, count);
        Canvas canvas(8, 8);
        canvas.dc.SetClipArea(nullptr);
        canvas.dc.SetClipArea(&object);
        canvas.dc.FillSolidRect(0, 0, 8, 8, 0xFF);
        CHECK((object.wasNull && object.Out() == 0));
        for (int i = 0; i != 64; ++i) {
            const int x = i % 8, y = i / 8;
            const bool out = count != 0 && ((x < 2 && y < 2) || (x >= 6 && y >= 6));
            CHECK(canvas.At(x, y) == (out ? 0u : 0xFFu));
        }
    }
}

TEST_CASE("what an object throws leaves neither a context nor an enumerator behind") {
    Complex object(nullptr, nullptr, 1);
    const HDC given = CreateCompatibleDC(nullptr);
    CHECK_THROWS_AS(DC(given, &object), const char*);
    CHECK((GetObjectType(given) == 0 && object.Out() == 0));
}

TEST_CASE("without a context everything answers nothing") {
    DC none;
    WideString text(3, 'a');
    SIZE size = {10, 10};
    RECT rect = {0, 0, 9, 9};
    none.DPtoLP(size);
    CHECK((Text(size) == "-1 -1" && Text(none.MoveTo(1, 1)) == "0 0")); // nothing can be divided by 0
    CHECK((none.DrawTextA(text, rect, DT_LEFT) == 0 && Text(none.GetTextExtent(text)) == "0 0"));
    if (kel::test::FaultsAvailable()) // Wine answers with what happens to lie on its stack
        CHECK((none.GetTextFaceA(text) == 0 && text == WideString(3, 'a')));
    CHECK(none.GetExactTextWidth(text) == 0);
    none.Draw3dRect(0, 0, 9, 9, 0, 0);
    none.Destroy();
}
