#include "TestWindow.h"

#include <kelcore/platform/testing.h>
#include <kelcore/platform/windowpictures.h>

#include <thread>

TEST_CASE("a window is a picture with its frame, and nobody else's") {
    const std::size_t before = kel::platform::OpenWindows();
    TestWindow top('t', WS_OVERLAPPED | WS_VISIBLE, {5, 5, 65, 55}, nullptr, "KelTestWindow");
    TestWindow child('c', kChild | WS_BORDER, {-1, 20, 8, 29}, top, "KelTestWindow");
    UpdateWindow(top);
    const std::tuple<HWND, int, int, COLORREF> rows[] = {
        {top, 0, 0, GetSysColor(COLOR_3DLIGHT)},       {top, 59, 49, GetSysColor(COLOR_3DDKSHADOW)},
        {top, 3, 3, GetSysColor(COLOR_ACTIVECAPTION)}, {top, 30, 30, GetSysColor(COLOR_WINDOW)},
        {top, 3, 42, GetSysColor(COLOR_WINDOWFRAME)},  {child, 0, 4, 0},
        {child, 8, 4, GetSysColor(COLOR_WINDOWFRAME)}, {child, 4, 4, GetSysColor(COLOR_WINDOW)},
    };
    for (const auto& [window, x, y, colour] : rows) {
        const Owned picture(kel::platform::WindowPicture(window));
        const MemoryContext dc(picture);
        CAPTURE(x);
        CAPTURE(y);
        CHECK(GetPixel(dc, x, y) == colour);
    }
    std::thread([&top] {
        RECT rect;
        CHECK((IsWindow(top) && !GetClientRect(top, &rect) && GetLastError() == ERROR_ACCESS_DENIED));
        CHECK((GetDC(top) == nullptr && !DestroyWindow(top)));
    }).join();
    CHECK((kel::platform::OpenWindows() == before + 2 && DestroyWindow(top)));
    CHECK(kel::platform::OpenWindows() == before);
    CHECK((kel::platform::WindowPicture(top) == nullptr && GetLastError() == ERROR_INVALID_WINDOW_HANDLE));
    top.handle = child.handle = nullptr;
}
