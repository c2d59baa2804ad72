// A program of its own: the library asks for the system's family once per process.
#include "tests/gdi/Canvas.h"

#include <doctest/doctest.h>
#include <kelcore/platform/testing.h>
#include <kelcore/runtime/system.h>

#include <cstdlib>

namespace {

// The narrow calls are asked in a double-byte page.
const bool g_page = setenv("KELCORE_ACP", "932", /*overwrite*/ 1) == 0;

int Advance(HDC dc, UINT ch) {
    int width = 0;
    CHECK(GetCharWidthW(dc, ch, ch, &width));
    return width;
}

} // namespace

TEST_CASE("on the 95 family characters are measured by their bytes, or whole where the code page lacks them") {
    REQUIRE((g_page && GetACP() == 932));
    kel::platform::ReportVersion(VER_PLATFORM_WIN32_WINDOWS, 4, 10);
    REQUIRE(SysInfo::GetSystem() == SysInfo::Win98);
    const DC dc(CreateCompatibleDC(nullptr), nullptr);
    const Font font(Arial(-40));
    const HGDIOBJ previous = SelectObject(dc.m_hDC, font.m_hFont);
    const struct {
        unsigned short ch;
        UINT code; // 0: there is none, or it is white
    } rows[] = {{'f', 'f'}, {0x42F, 0x8460}, {0xFF71, 0xB1}, {0xE9, 0}, {' ', 0}};
    for (const auto& row : rows) {
        CAPTURE(row.ch);
        ABC abc = {1, 2, 3}, expected = {0, 0, 0};
        CHECK(dc.GetCharABCWidth(row.ch, abc));
        expected.abcB = static_cast<UINT>(Advance(dc.m_hDC, row.ch));
        if (row.code != 0)
            CHECK(GetCharABCWidthsA(dc.m_hDC, row.code, row.code, &expected));
        CHECK(abc == expected);
    }
    SelectObject(dc.m_hDC, previous);
}
