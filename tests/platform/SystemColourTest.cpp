#include "Drawing.h"

namespace {

std::string g_told;

LRESULT CALLBACK Listen(HWND window, UINT message, WPARAM wide, LPARAM data) {
    if (message == WM_SYSCOLORCHANGE || message == WM_PAINT)
        g_told += message == WM_PAINT ? "p" : "y";
    return DefWindowProcA(window, message, wide, data);
}

} // namespace

TEST_CASE("system colours are changed, told of and painted") {
    WNDCLASSA c = {};
    c.lpfnWndProc = Listen;
    c.lpszClassName = "KelTestColours";
    c.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<ULONG_PTR>(COLOR_INFOBK + 1));
    REQUIRE(RegisterClassA(&c) != 0);
    const HWND window = CreateWindowExA(0, c.lpszClassName, "", WS_POPUP | WS_VISIBLE, 0, 0, 10, 10, nullptr, nullptr,
                                        nullptr, nullptr);
    UpdateWindow(window);
    g_told.clear();
    const COLORREF old[] = {GetSysColor(COLOR_INFOBK), GetSysColor(COLOR_HOTLIGHT), 0};
    const COLORREF wanted[] = {RGB(1, 2, 3), RGB(4, 5, 6), RGB(7, 8, 9)};
    const INT indexes[] = {COLOR_INFOBK, COLOR_HOTLIGHT, 99};
    CHECK(SetSysColors(3, indexes, wanted));
    CHECK((GetSysColor(COLOR_INFOBK) == wanted[0] && GetSysColor(COLOR_HOTLIGHT) == wanted[1]));
    CHECK((GetSysColor(99) == 0 && GetSysColor(-1) == 0));
    CHECK(g_told == "yp");
    const HDC dc = GetDC(window);
    CHECK(GetPixel(dc, 5, 5) == wanted[0]);
    const HBRUSH brush = GetSysColorBrush(COLOR_HOTLIGHT);
    LOGBRUSH described = {};
    CHECK((GetObjectA(brush, sizeof described, &described) && described.lbColor == wanted[1]));
    const RECT all = {0, 0, 10, 10};
    CHECK((FillRect(dc, &all, brush) && GetPixel(dc, 5, 5) == wanted[1]));
    CHECK((GetSysColorBrush(99) == nullptr && GetSysColorBrush(-1) == nullptr));
    ReleaseDC(window, dc);
    CHECK(SetSysColors(2, indexes, old));
    CHECK((GetSysColor(COLOR_INFOBK) == old[0] && !SetSysColors(1, nullptr, nullptr)));
    CHECK((DestroyWindow(window) && UnregisterClassA(c.lpszClassName, nullptr)));
}
