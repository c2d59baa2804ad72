// A program of its own: the library asks for the system's family once per process.
#include "tests/bitmap/Pictures.h"

#include <kelcore/platform/testing.h>
#include <kelcore/runtime/system.h>

namespace {

constexpr unsigned long kKey = 0xFF00FF;
constexpr unsigned long kUnder = 0x203040;

// A 32-bit surface of one colour to draw on, under a system of the 95 family.
struct Canvas {
    Canvas() {
        kel::platform::ReportVersion(VER_PLATFORM_WIN32_WINDOWS, 4, 10);
        REQUIRE(SysInfo::GetSystem() == SysInfo::Win98);
        REQUIRE((picture.CreateBitmap({12, 8}, 32) && picture.ExtClearSurface(kUnder)));
        previous = SelectObject(dc, picture.GetHandle());
    }
    ~Canvas() {
        SelectObject(dc, previous);
        DeleteDC(dc);
    }
    GDIBitmap picture;
    HDC dc = CreateCompatibleDC(nullptr);
    HGDIOBJ previous = nullptr;
};

} // namespace

TEST_CASE("on the 95 family transparent drawing goes by masks, stretched or not") {
    GDIBitmap picture = Painted({6, 4}, 32);
    SetPixelOf(picture, 2, 1, kKey);
    SetPixelOf(picture, 3, 3, kKey);
    for (const int factor : {1, 2}) {
        CAPTURE(factor);
        Canvas canvas;
        CHECK(picture.TransparentDraw(canvas.dc, Rect(1, 1, 1 + 3 * factor, 1 + 3 * factor), Rect(1, 1, 4, 4), kKey));
        CheckPixels(canvas.picture, [&](int x, int y) {
            const bool inside = x >= 1 && y >= 1 && x <= 3 * factor && y <= 3 * factor;
            const unsigned long own = picture.GetPixel(1 + (x - 1) / factor, 1 + (y - 1) / factor);
            return inside && own != kKey ? own : kUnder;
        });
    }
}

TEST_CASE("on the 95 family alpha drawing spares the last column and row and refuses thin sources") {
    const GDIBitmap picture = Painted({6, 4}, 32);
    Canvas canvas;
    for (const Rect& thin : {Rect(0, 0, 1, 4), Rect(2, 1, 5, 2)})
        CHECK_FALSE(picture.AlphaDraw(canvas.dc, Rect(0, 0, 5, 5), thin, 1.0, false));
    CHECK(picture.AlphaDraw(canvas.dc, Rect(2, 3, 6, 6), Rect(1, 1, 5, 4), 1.0, false));
    CheckPixels(canvas.picture, [&](int x, int y) {
        return x >= 2 && y >= 3 && x < 5 && y < 5 ? picture.GetPixel(x - 1, y - 2) : kUnder;
    });
    Rect clip;
    GetClipBox(canvas.dc, &clip);
    CHECK(clip.right == 12);
}

TEST_CASE("on the 95 family a mask of another size is made from a rescaled picture") {
    const Canvas family;
    GDIBitmap picture = Painted({6, 4}, 24);
    SetPixelOf(picture, 5, 3, kKey);
    CheckPixels(GDIBitmap::CreateMaskBmp(picture, {12, 8}, kKey, false),
                [](int x, int y) { return x >= 10 && y >= 6 ? 1UL : 0UL; });
}
