#include "TestWindow.h"

namespace {

constexpr COLORREF kInk = RGB(200, 100, 50);

const HWND kNone = reinterpret_cast<HWND>(0x1234);

std::string Update(HWND window) {
    RECT rect = {9, 9, 9, 9};
    return GetUpdateRect(window, &rect, FALSE) ? Text(rect) : "none";
}

std::string PlaceOf(HWND window) {
    RECT place{};
    CHECK(GetWindowRect(window, &place));
    return Text(place);
}

COLORREF PixelOf(HWND window, int x, int y) {
    return GetPixel(WindowContext(window), x, y);
}

bool Reaches(HDC dc, int x, int y) {
    return PtVisible(dc, x, y) != FALSE;
}

bool Reaches(HWND window, int x, int y) {
    return Reaches(WindowContext(window), x, y);
}

// Fills all that a context of the client area reaches.
void Flood(HWND window, COLORREF colour) {
    const Owned brush(CreateSolidBrush(colour));
    const RECT all = {-1000, -1000, 1000, 1000};
    FillRect(WindowContext(window), &all, brush);
}

} // namespace

TEST_CASE("classes are found by name and number, and stay while they have windows") {
    RegisterClasses();
    WNDCLASSEXA c = {};
    CHECK((RegisterClassExA(&c) == 0 && GetLastError() == ERROR_INVALID_PARAMETER));
    c.cbSize = sizeof c;
    c.lpfnWndProc = LoggingProcedure;
    c.lpszClassName = "KelTestPASSING";
    const ATOM atom = RegisterClassExA(&c);
    REQUIRE(atom != 0);
    c.lpszClassName = "KELTESTPassing";
    CHECK((RegisterClassExA(&c) == 0 && GetLastError() == ERROR_CLASS_ALREADY_EXISTS));
    {
        const TestWindow window('a', WS_POPUP, {0, 0, 5, 5}, nullptr, MAKEINTRESOURCEA(atom));
        CHECK(IsWindow(window));
        CHECK((!UnregisterClassA("keltestpassing", nullptr) && GetLastError() == ERROR_CLASS_HAS_WINDOWS));
    }
    CHECK(UnregisterClassA("keltestpassing", nullptr));
    CHECK((!UnregisterClassA("keltestpassing", nullptr) && GetLastError() == ERROR_CLASS_DOES_NOT_EXIST));
    const TestWindow none('a', WS_POPUP, {0, 0, 5, 5}, nullptr, "KelTestPassing");
    const TestWindow orphan('a', WS_CHILD, {0, 0, 5, 5});
    CHECK(GetLastError() == ERROR_TLW_WITH_WSCHILD);
    const TestWindow stray('a', WS_CHILD, {0, 0, 5, 5}, kNone);
    CHECK(GetLastError() == ERROR_INVALID_WINDOW_HANDLE);
    CHECK((none.handle == nullptr && orphan.handle == nullptr && stray.handle == nullptr));
}

TEST_CASE("a frame takes its share of the window") {
    const std::tuple<DWORD, DWORD, const char*, const char*> rows[] = {
        {WS_POPUP, 0, "0 0 0 0", "0 0 200 100"},
        {WS_POPUP, WS_EX_CLIENTEDGE, "-2 -2 2 2", "2 2 198 98"},
        {WS_POPUP | WS_BORDER, WS_EX_STATICEDGE, "-2 -2 2 2", "2 2 198 98"},
        {WS_POPUP | WS_DLGFRAME, 0, "-3 -3 3 3", "3 3 197 97"},
        {WS_POPUP | WS_CAPTION, WS_EX_TOOLWINDOW, "-3 -19 3 3", "3 19 197 97"},
        {WS_POPUP | WS_THICKFRAME, WS_EX_DLGMODALFRAME, "-4 -4 4 4", "4 4 196 96"},
        {WS_OVERLAPPED, 0, "0 0 0 0", "3 22 197 97"},
        {WS_OVERLAPPEDWINDOW, WS_EX_CLIENTEDGE, "-6 -25 6 6", "6 25 194 94"},
        {WS_CHILD | WS_CAPTION, WS_EX_STATICEDGE, "-2 -21 2 2", "2 21 198 98"},
    };
    const TestWindow parent('a', WS_POPUP, {0, 0, 300, 300});
    // AdjustWindowRectEx grows nothing by so much; the client area has that place in a window of 200 x 100.
    for (const auto& [style, exStyle, grown, client] : rows) {
        CAPTURE(grown);
        RECT rect = {0, 0, 0, 0};
        CHECK((AdjustWindowRectEx(&rect, style, FALSE, exStyle) && Text(rect) == grown));
        const TestWindow window('b', style, {10, 20, 210, 120}, style & WS_CHILD ? parent.handle : nullptr,
                                "KelTestPlain", exStyle);
        POINT corner = {0, 0};
        CHECK((PlaceOf(window) == "10 20 210 120" && GetClientRect(window, &rect)));
        CHECK(ClientToScreen(window, &corner));
        OffsetRect(&rect, corner.x - 10, corner.y - 20);
        CHECK(Text(rect) == client);
        CHECK((ScreenToClient(window, &corner) && corner.x == 0 && corner.y == 0));
    }
}

TEST_CASE("messages come in their order, and a refused window is none") {
    Log();
    {
        const TestWindow top('a', kTop, {0, 0, 50, 50});
        const TestWindow owned('o', WS_POPUP, {0, 0, 5, 5}, top);
        CHECK((GetParent(owned) == top.handle && GetParent(top) == nullptr));
        Log();
        TestWindow child('b', kChild, {0, 0, 20, 20}, top);
        TestWindow grandchild('c', kChild, {0, 0, 10, 10}, child);
        CHECK(Log() == "bc bs bm cc cs cm ");
        CHECK((GetParent(grandchild) == child.handle && !DestroyWindow(kNone)));
        CHECK((UpdateWindow(top) && Log() == "ap bp cp "));
        CHECK((UpdateWindow(top) && Log().empty()));
        child.handle = grandchild.handle = nullptr;
    }
    CHECK(Log() == "od on ad bd cd cn bn an ");
    for (const UINT message : {WM_NCCREATE, WM_CREATE}) {
        g_refused = message;
        const TestWindow refused('r', WS_POPUP, {0, 0, 5, 5});
        g_refused = 0;
        CHECK(refused.handle == nullptr);
        CHECK(Log() == (message == WM_CREATE ? "rc rn " : "rn "));
    }
}

TEST_CASE("places: moving, sizing, showing") {
    const TestWindow top('a', kTop, {10, 20, 110, 100});
    const TestWindow child('b', kChild, {5, 5, 25, 25}, top, "KelTestBare");
    UpdateWindow(top);
    Log();
    CHECK((SetWindowPos(top, nullptr, 30, 40, 0, 0, SWP_NOSIZE | SWP_NOZORDER) && Log() == "am "));
    CHECK((SetWindowPos(top, nullptr, 0, 0, 120, 90, SWP_NOMOVE | SWP_NOZORDER) && Log() == "as "));
    CHECK(PlaceOf(child) == "35 45 55 65");
    UpdateWindow(top);
    CHECK((SetWindowPos(child, nullptr, 0, 0, 21, 20, SWP_NOMOVE | SWP_NOZORDER) && Update(child) == "0 0 21 20"));
    Log();
    CHECK(MoveWindow(child, 30, 30, 10, 10, TRUE));
    CHECK(Log().find("bm bs ") != std::string::npos);
    UpdateWindow(top);
    CHECK((IsWindowVisible(child) && ShowWindow(top, SW_HIDE) && !ShowWindow(top, SW_HIDE)));
    CHECK((!IsWindowVisible(child) && InvalidateRect(top, nullptr, TRUE) && Update(top) == "none"));
    CHECK((!ShowWindow(top, SW_SHOWNA) && Update(top) == "0 0 120 90" && Update(child) == "0 0 10 10"));
    CHECK((UpdateWindow(top) && ShowWindow(child, SW_HIDE) && Update(top) == "30 30 40 40"));
    CHECK((GetWindowLongPtrA(top, -100) == 0 && GetLastError() == ERROR_INVALID_INDEX));
}

TEST_CASE("what is to be painted is added and taken away") {
    const TestWindow top('a', kTop, {0, 0, 100, 80});
    const TestWindow child('b', kChild, {80, 20, 130, 50}, top);
    UpdateWindow(top);
    const RECT part = {90, 25, 95, 40}, reversed = {50, 50, 40, 40}, outside = {150, 0, 160, 10};
    CHECK((InvalidateRect(top, &part, FALSE) && Update(top) == "90 25 95 40" && Update(child) == "10 5 15 20"));
    CHECK((ValidateRect(child, nullptr) && Update(child) == "none"));
    CHECK((InvalidateRect(top, &reversed, FALSE) && Update(top) == "40 25 95 50"));
    CHECK((ValidateRect(top, &part) && Update(top) == "40 40 50 50"));
    CHECK((ValidateRect(top, nullptr) && InvalidateRect(top, &outside, FALSE) && Update(top) == "none"));
    const Owned region(CreateRectRgn(1, 2, 3, 4));
    CHECK((InvalidateRgn(top, region, FALSE) && Update(top) == "1 2 3 4"));
    CHECK((InvalidateRgn(top, nullptr, FALSE) && GetUpdateRgn(top, region, FALSE) == SIMPLEREGION));
    CHECK((GetRgnBox(region, &const_cast<RECT&>(outside)) == SIMPLEREGION && Text(outside) == "0 0 100 80"));
    CHECK((ValidateRgn(top, nullptr) && Update(top) == "none" && Update(child) == "none"));
    const TestWindow clipping('c', kTop | WS_CLIPCHILDREN, {0, 0, 100, 80});
    const TestWindow clipped('d', kChild, {0, 0, 10, 10}, clipping);
    UpdateWindow(clipping);
    CHECK((InvalidateRect(clipping, nullptr, TRUE) && Update(clipped) == "none"));
    CHECK(
        (!InvalidateRect(kNone, nullptr, TRUE) && !ValidateRect(kNone, nullptr) && !GetUpdateRect(kNone, nullptr, 0)));
}

TEST_CASE("painting is clipped to the update region and erased when that is due") {
    const TestWindow top('a', kTop, {0, 0, 100, 80});
    const TestWindow bare('b', kTop, {0, 0, 100, 80}, nullptr, "KelTestBare");
    for (const HWND window : {top.handle, bare.handle}) {
        UpdateWindow(window);
        Flood(window, kInk);
    }
    const RECT part = {5, 6, 20, 30};
    PAINTSTRUCT paint, nested;
    InvalidateRect(top, &part, TRUE);
    const HDC dc = BeginPaint(top, &paint);
    CHECK((dc != nullptr && paint.hdc == dc && !paint.fErase && Text(paint.rcPaint) == "5 6 20 30"));
    CHECK((PixelOf(top, 5, 6) == kBack && PixelOf(top, 4, 6) == kInk && PixelOf(top, 20, 29) == kInk));
    CHECK((SetPixel(dc, 5, 6, kInk) == kInk && PixelOf(top, 5, 6) == kInk));
    CHECK((Reaches(dc, 19, 29) && !Reaches(dc, 4, 6) && !Reaches(dc, 20, 29)));
    SetPixel(dc, 20, 29, 0);
    CHECK(PixelOf(top, 20, 29) == kInk);
    CHECK((BeginPaint(top, &nested) != nullptr && Text(nested.rcPaint) == "0 0 0 0"));
    RECT box;
    CHECK((GetClipBox(nested.hdc, &box) == NULLREGION && EndPaint(top, &nested) && EndPaint(top, &paint)));
    CHECK((!EndPaint(top, nullptr) && BeginPaint(top, nullptr) == nullptr));
    CHECK((BeginPaint(nullptr, &paint) == nullptr && GetLastError() == ERROR_INVALID_WINDOW_HANDLE));
    InvalidateRect(bare, &part, TRUE);
    CHECK((BeginPaint(bare, &paint) && paint.fErase && EndPaint(bare, &paint) && PixelOf(bare, 5, 6) == kInk));
    InvalidateRect(bare, &part, FALSE);
    CHECK((BeginPaint(bare, &paint) && !paint.fErase && EndPaint(bare, &paint)));
}

TEST_CASE("contexts of windows reach what the window shows") {
    const TestWindow top('a', kTop | WS_BORDER, {0, 0, 102, 82});
    const TestWindow clipping('b', kTop | WS_CLIPCHILDREN, {0, 0, 100, 80});
    for (const HWND parent : {top.handle, clipping.handle}) {
        const TestWindow first('c', kChild | WS_CLIPSIBLINGS, {10, 10, 40, 40}, parent);
        const TestWindow second('d', kChild | WS_CLIPSIBLINGS, {30, 10, 60, 40}, parent);
        const TestWindow edge('e', kChild, {90, 70, 120, 100}, parent);
        UpdateWindow(parent);
        Flood(first, RGB(1, 1, 1));
        Flood(second, RGB(2, 2, 2));
        Flood(edge, RGB(3, 3, 3));
        CHECK(Reaches(parent, 35, 15) == (parent == top));
        CHECK((PixelOf(first, 25, 5) == RGB(1, 1, 1) && PixelOf(second, 10, 5) == RGB(2, 2, 2)));
        CHECK((!Reaches(second, 9, 5) && Reaches(edge, 9, 9) && !Reaches(edge, 10, 0)));
        for (int twice = 0; twice < 2; ++twice) {
            CHECK(SetWindowPos(first, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE));
            CHECK((Reaches(second, 9, 5) && Reaches(first, 19, 5) && !Reaches(first, 25, 5)));
        }
        Flood(parent, kInk);
        CHECK((PixelOf(first, 0, 0) == kInk) == (parent == top));
        CHECK(PixelOf(parent, 5, 5) == kInk);
    }
    const HDC whole = GetWindowDC(top), client = GetDC(top);
    SetPixel(client, 0, 0, kBack);
    CHECK((GetPixel(whole, 1, 1) == kBack && Reaches(whole, 101, 0) && !Reaches(whole, 102, 0)));
    BitBlt(client, 1, 1, 99, 79, client, 0, 0, SRCCOPY);
    CHECK((GetPixel(client, 1, 1) == kBack && GetPixel(client, 2, 2) == kInk));
    CHECK((GetObjectType(client) == OBJ_DC && GetDeviceCaps(client, BITSPIXEL) == 32));
    CHECK((ReleaseDC(top, whole) == 1 && ReleaseDC(top, whole) == 0 && ReleaseDC(nullptr, client) == 1));
    CHECK((GetDC(kNone) == nullptr && GetLastError() == ERROR_INVALID_WINDOW_HANDLE));
    ShowWindow(top, SW_HIDE);
    CHECK(!Reaches(top, 0, 0));
}

TEST_CASE("a context outlives its window and draws nothing") {
    HDC dc;
    {
        const TestWindow top('a', kTop, {0, 0, 10, 10});
        dc = GetDC(top);
        CHECK(SetPixel(dc, 1, 1, kInk) == kInk);
    }
    CHECK((SetPixel(dc, 1, 1, 0) == CLR_INVALID && GetPixel(dc, 1, 1) == CLR_INVALID));
    const RECT all = {0, 0, 10, 10};
    FillRect(dc, &all, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    ReleaseDC(nullptr, dc);
}

TEST_CASE("a failing call leaves nothing behind") {
    RegisterClasses();
    kel::test::WithEachCallFailing(ERROR_NOT_ENOUGH_MEMORY, [] {
        const TestWindow top('a', WS_OVERLAPPEDWINDOW | WS_VISIBLE, {0, 0, 60, 60});
        if (!top.handle)
            return;
        const TestWindow child('b', kChild, {0, 0, 10, 10}, top);
        UpdateWindow(top);
        PAINTSTRUCT paint;
        InvalidateRect(top, nullptr, TRUE);
        if (BeginPaint(top, &paint))
            EndPaint(top, &paint);
        if (const HDC dc = GetWindowDC(top))
            ReleaseDC(top, dc);
        MoveWindow(child, 1, 1, 5, 5, TRUE);
    });
}
