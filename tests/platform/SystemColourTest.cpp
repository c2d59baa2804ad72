#include "TestWindow.h"

TEST_CASE("system colours are changed, told of and painted") {
    const TestWindow window('a', kTop, {0, 0, 10, 10}, nullptr, "KelTestInfo");
    UpdateWindow(window);
    Log();
    const COLORREF old[] = {GetSysColor(COLOR_INFOBK), GetSysColor(COLOR_HOTLIGHT), 0};
    const COLORREF wanted[] = {RGB(1, 2, 3), RGB(4, 5, 6), RGB(7, 8, 9)};
    const INT indexes[] = {COLOR_INFOBK, COLOR_HOTLIGHT, 99};
    CHECK(SetSysColors(3, indexes, wanted));
    CHECK((GetSysColor(COLOR_INFOBK) == wanted[0] && GetSysColor(COLOR_HOTLIGHT) == wanted[1]));
    CHECK((GetSysColor(99) == 0 && GetSysColor(-1) == 0));
    CHECK(Log() == "ay ap ");
    const WindowContext dc(window);
    CHECK(GetPixel(dc, 5, 5) == wanted[0]);
    const HBRUSH brush = GetSysColorBrush(COLOR_HOTLIGHT);
    CHECK(Told<LOGBRUSH>(brush).lbColor == wanted[1]);
    const RECT all = {0, 0, 10, 10};
    CHECK((FillRect(dc, &all, brush) && GetPixel(dc, 5, 5) == wanted[1]));
    CHECK((GetSysColorBrush(99) == nullptr && GetSysColorBrush(-1) == nullptr));
    CHECK(SetSysColors(2, indexes, old));
    CHECK((GetSysColor(COLOR_INFOBK) == old[0] && !SetSysColors(1, nullptr, nullptr)));
}
