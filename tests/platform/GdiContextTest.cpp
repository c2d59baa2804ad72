#include "Drawing.h"

namespace {

/// A clip box and its kind, as text.
std::string Box(HDC dc) {
    RECT box{9, 9, 9, 9};
    const int kind = GetClipBox(dc, &box);
    const std::string kinds[] = {"? ", "none ", "one ", "many "};
    return kinds[kind] + Text(box);
}

} // namespace

TEST_CASE("contexts of the screen are given back, memory contexts deleted") {
    const HDC screen = GetDC(nullptr);
    REQUIRE(screen != nullptr);
    CHECK((GetDeviceCaps(screen, BITSPIXEL) == 32 && GetDeviceCaps(screen, 999) == 0));
    CHECK(Box(screen) == "one 0 0 " + std::to_string(GetDeviceCaps(screen, HORZRES)) + " " +
                             std::to_string(GetDeviceCaps(screen, VERTRES)));
    CHECK((ReleaseDC(nullptr, screen) == 1 && ReleaseDC(nullptr, screen) == 0));
    const HDC memory = CreateCompatibleDC(nullptr);
    CHECK((ReleaseDC(nullptr, memory) == 0 && GetDeviceCaps(memory, BITSPIXEL) == 32));
    CHECK((DeleteDC(memory) && !DeleteDC(memory)));
    CHECK(GetLastError() == ERROR_INVALID_HANDLE);
    CHECK(CreateCompatibleDC(memory) == nullptr);
    CHECK(GetDC(reinterpret_cast<HWND>(0x1234)) == nullptr);
    CHECK(GetLastError() == ERROR_INVALID_WINDOW_HANDLE);
}

TEST_CASE("modes of a context are one of theirs") {
    const MemoryContext memory;
    const std::tuple<int(WINAPI*)(HDC, int), int(WINAPI*)(HDC), int, int, int> modes[] = {
        {SetBkMode, GetBkMode, TRANSPARENT, OPAQUE, OPAQUE},
        {SetROP2, GetROP2, R2_BLACK, R2_WHITE, R2_COPYPEN},
        {SetStretchBltMode, GetStretchBltMode, BLACKONWHITE, HALFTONE, BLACKONWHITE},
        {SetPolyFillMode, GetPolyFillMode, ALTERNATE, WINDING, ALTERNATE},
    };
    for (const auto& [set, get, first, last, atStart] : modes) {
        CAPTURE(last);
        for (const int wrong : {first - 1, last + 1})
            CHECK((set(memory, wrong) == 0 && GetLastError() == ERROR_INVALID_PARAMETER));
        CHECK((set(memory, last) == atStart && get(memory) == last && set(nullptr, last) == 0));
    }
}

TEST_CASE("states come back by number and by distance") {
    const Section one(8, 8, 32);
    const Section two(6, 6, 32);
    const MemoryContext memory(one.handle);
    CHECK(!RestoreDC(memory, -1));
    CHECK(SaveDC(memory) == 1);
    SetTextColor(memory, 5);
    SelectObject(memory, two.handle);
    SetViewportOrgEx(memory, 1, 1, nullptr);
    IntersectClipRect(memory, 0, 0, 2, 2);
    CHECK(SaveDC(memory) == 2);
    SetTextColor(memory, 6);
    CHECK(SaveDC(memory) == 3);
    SetTextColor(memory, 7);
    for (const int wrong : {0, 4, -4})
        CHECK(!RestoreDC(memory, wrong));
    CHECK(GetTextColor(memory) == 7);
    CHECK(RestoreDC(memory, -2));
    CHECK((GetTextColor(memory) == 5 && GetCurrentObject(memory, OBJ_BITMAP) == two.handle));
    CHECK(Box(memory) == "one 0 0 2 2");
    CHECK(SaveDC(memory) == 2);
    CHECK(RestoreDC(memory, 1));
    CHECK((GetTextColor(memory) == 0 && GetCurrentObject(memory, OBJ_BITMAP) == one.handle));
    CHECK(Box(memory) == "one 0 0 8 8");
    CHECK(!(RestoreDC(memory, -1) || SaveDC(nullptr) || RestoreDC(nullptr, 1)));
    const MemoryContext other;
    CHECK(SelectObject(other, two.handle) != nullptr); // states that were dropped hold nothing
}

TEST_CASE("the clip region narrows, loses rectangles and is bounded by the bitmap") {
    const Section bitmap(20, 10, 32);
    const MemoryContext memory(bitmap.handle);
    const std::tuple<int(WINAPI*)(HDC, int, int, int, int), RECT, int, const char*, bool> steps[] = {
        {IntersectClipRect, {2, 2, 8, 8}, SIMPLEREGION, "one 2 2 8 8", false},
        {ExcludeClipRect, {4, 4, 5, 5}, COMPLEXREGION, "many 2 2 8 8", false},
        {ExcludeClipRect, {0, 0, 20, 20}, NULLREGION, "none 0 0 0 0", true},
        {IntersectClipRect, {8, 8, 2, 2}, SIMPLEREGION, "one 2 2 8 8", true},
        {ExcludeClipRect, {15, 0, 40, 40}, SIMPLEREGION, "one 0 0 15 10", false},
        {IntersectClipRect, {50, 50, 60, 60}, NULLREGION, "none 0 0 0 0", true},
    };
    for (const auto& [narrow, rect, kind, box, last] : steps) {
        CAPTURE(std::string(box));
        CHECK(narrow(memory, rect.left, rect.top, rect.right, rect.bottom) == kind);
        CHECK(Box(memory) == box);
        if (last) // of those on one region
            CHECK((SelectClipRgn(memory, nullptr) == SIMPLEREGION && Box(memory) == "one 0 0 20 10"));
    }
    // The region is copied.
    const HRGN region = CreateRectRgn(4, 4, 1, 1);
    CHECK(SelectObject(memory, region) == reinterpret_cast<HGDIOBJ>(SIMPLEREGION));
    CHECK(DeleteObject(region));
    CHECK(Box(memory) == "one 1 1 4 4");
    CHECK(SelectClipRgn(memory, region) == ERROR);
    CHECK(Box(nullptr) == "? 9 9 9 9");
}
