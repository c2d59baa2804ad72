#include "tests/gdi/Canvas.h"
#include "tests/gdi/Complex.h"
#include "tests/support/Faults.h"

namespace {

bool operator==(const POINT& left, const POINT& right) {
    return left.x == right.x && left.y == right.y;
}

bool operator==(const SIZE& left, const SIZE& right) {
    return left.cx == right.cx && left.cy == right.cy;
}

constexpr POINT kNoPoint = {0, 0};
constexpr SIZE kNoSize = {0, 0};

} // namespace

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
    CHECK((dc.SetWindowExt(100, 200) == SIZE{1, 1} && dc.SetViewportExt(30, -40) == SIZE{1, 1}));
    CHECK((dc.ScaleWindowExt(2, 1, 1, 2) == SIZE{100, 200} && dc.GetWindowExt() == SIZE{200, 100}));
    CHECK((dc.ScaleViewportExt(1, 3, 2, 1) == SIZE{30, -40} && dc.GetViewportExt() == SIZE{10, -80}));
    CHECK((dc.SetWindowOrg(5, 6) == kNoPoint && dc.OffsetWindowOrg(1, 1) == POINT{5, 6}));
    CHECK((dc.SetViewportOrg(7, 8) == kNoPoint && dc.OffsetViewportOrg(-1, 2) == POINT{7, 8}));
    CHECK((dc.GetWindowOrg() == POINT{6, 7} && dc.GetViewportOrg() == POINT{6, 10}));
    CHECK((dc.SetBrushOrg(3, 4) == kNoPoint && dc.GetBrushOrg() == POINT{3, 4}));
    CHECK((dc.MoveTo(11, 12) == kNoPoint && dc.GetCurrentPosition() == POINT{11, 12}));
    SIZE filter = {};
    GetAspectRatioFilterEx(dc.m_hDC, &filter);
    CHECK((dc.GetAspectRatioFilter() == filter && dc.GetMiterLimit() == 10.0f));
}

TEST_CASE("sizes are multiplied by one extent and divided by the other, rounded half away from zero") {
    const std::tuple<SIZE, SIZE, SIZE, SIZE, SIZE> rows[] = {{{1, 1}, {2, -2}, {100, 50}, {200, 100}, {50, 25}},
                                                             {{-2, 4}, {3, 1}, {5, 5}, {8, 1}, {3, 20}},
                                                             {{3, 3}, {1, 1}, {-5, -4}, {-2, -1}, {-15, -12}}};
    for (const auto& [window, viewport, size, toLogical, toDevice] : rows) {
        DC dc(CreateCompatibleDC(nullptr), nullptr);
        SetMapMode(dc.m_hDC, MM_ANISOTROPIC);
        dc.SetWindowExt(window.cx, window.cy);
        dc.SetViewportExt(viewport.cx, viewport.cy);
        SIZE logical = size, device = size;
        dc.DPtoLP(logical);
        dc.LPtoDP(device);
        CHECK((logical == toLogical && device == toDevice));
    }
}

TEST_CASE("rectangles are filled, and frames have their right and bottom lines inside") {
    Canvas canvas(12, 12);
    canvas.dc.FillSolidRect(RECT{0, 0, 12, 12}, 0x808080);
    canvas.dc.Draw3dRect(1, 1, 10, 10, 0xFFFFFF, 0x404040);
    CHECK(GetBkColor(canvas.dc.m_hDC) == 0x404040);
    for (int y = 0; y != 12; ++y) {
        for (int x = 0; x != 12; ++x) {
            CAPTURE(x);
            CAPTURE(y);
            const bool inside = x >= 1 && x <= 10 && y >= 1 && y <= 10;
            const COLORREF expected = !inside              ? 0x808080
                                      : x == 10 || y == 10 ? 0x404040
                                      : x == 1 || y == 1   ? 0xFFFFFF
                                                           : 0x808080;
            CHECK(canvas.At(x, y) == expected);
        }
    }
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
    CHECK((none.SetWindowExt(1, 1) == kNoSize && none.GetViewportExt() == kNoSize && none.MoveTo(1, 1) == kNoPoint));
    CHECK((none.GetBrushOrg() == kNoPoint && none.GetMiterLimit() == 0 && none.GetAspectRatioFilter() == kNoSize));
    SIZE size = {10, 10};
    none.DPtoLP(size);
    CHECK(size == SIZE{-1, -1}); // nothing can be divided by 0
    RECT rect = {0, 0, 9, 9};
    const WideString text(3, 'a');
    CHECK((none.DrawTextA(text, rect, DT_LEFT) == 0 && !none.ExtTextOutA(0, 0, 0, rect, text, nullptr)));
    CHECK((none.GetTextExtent(text) == kNoSize && !none.DrawStateA({}, {}, text, 0, false, nullptr)));
    if (kel::test::FaultsAvailable()) { // Wine answers with what happens to lie on its stack
        WideString face = text;
        CHECK((none.TabbedTextOutA(0, 0, text, 0, nullptr, 0) == 0 && none.GetTextFaceA(face) == 0 && face == text));
        CHECK(none.GetTabbedTextExtentA(text, 0, nullptr) == kNoSize);
    }
    CHECK(none.GetExactTextWidth(text) == 0);
    none.Draw3dRect(0, 0, 9, 9, 0, 0);
    none.Destroy();
}
