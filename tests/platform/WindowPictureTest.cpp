#include "Drawing.h"

#include <kelcore/platform/testing.h>
#include <kelcore/platform/windowpictures.h>

#include <thread>

TEST_CASE("a window is a picture with its frame, and nobody else's") {
    WNDCLASSA c = {};
    c.lpfnWndProc = DefWindowProcA;
    c.lpszClassName = "KelTestPicture";
    c.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<ULONG_PTR>(COLOR_WINDOW + 1));
    REQUIRE(RegisterClassA(&c) != 0);
    const std::size_t before = kel::platform::OpenWindows();
    const HWND top = CreateWindowExA(0, c.lpszClassName, "top", WS_OVERLAPPED | WS_VISIBLE, 5, 5, 60, 50, nullptr,
                                     nullptr, nullptr, nullptr);
    const HWND child = CreateWindowExA(0, c.lpszClassName, "", WS_CHILD | WS_VISIBLE | WS_BORDER, -1, 20, 9, 9, top,
                                       nullptr, nullptr, nullptr);
    UpdateWindow(top);
    const struct {
        HWND window;
        int x, y;
        COLORREF colour;
    } rows[] = {
        {top, 0, 0, GetSysColor(COLOR_3DLIGHT)},       {top, 59, 49, GetSysColor(COLOR_3DDKSHADOW)},
        {top, 3, 3, GetSysColor(COLOR_ACTIVECAPTION)}, {top, 30, 30, GetSysColor(COLOR_WINDOW)},
        {top, 3, 42, GetSysColor(COLOR_WINDOWFRAME)},  {child, 0, 4, 0},
        {child, 8, 4, GetSysColor(COLOR_WINDOWFRAME)}, {child, 4, 4, GetSysColor(COLOR_WINDOW)},
    };
    for (const auto& row : rows) {
        const HBITMAP picture = kel::platform::WindowPicture(row.window);
        const MemoryContext dc(picture);
        CAPTURE(row.x);
        CAPTURE(row.y);
        CHECK(GetPixel(dc, row.x, row.y) == row.colour);
        SelectObject(dc, GetStockObject(NULL_BRUSH));
        DeleteObject(picture);
    }
    std::thread([top] {
        RECT rect;
        CHECK((IsWindow(top) && !GetClientRect(top, &rect) && GetLastError() == ERROR_ACCESS_DENIED));
        CHECK((GetDC(top) == nullptr && !DestroyWindow(top)));
    }).join();
    CHECK((kel::platform::OpenWindows() == before + 2 && DestroyWindow(top)));
    CHECK((kel::platform::OpenWindows() == before && UnregisterClassA(c.lpszClassName, nullptr)));
    CHECK((kel::platform::WindowPicture(top) == nullptr && GetLastError() == ERROR_INVALID_WINDOW_HANDLE));
}
