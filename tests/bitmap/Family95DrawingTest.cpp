// A program of its own: the library asks for the system's family once per process.
#include "tests/bitmap/Canvas.h"

#include <kelcore/platform/testing.h>
#include <kelcore/runtime/system.h>

namespace {

constexpr unsigned long kUnder = 0x203040;

// A surface of one colour, under a system of the 95 family.
GDIBitmap PlainPaper() {
    kel::platform::ReportVersion(VER_PLATFORM_WIN32_WINDOWS, 4, 10);
    REQUIRE(SysInfo::GetSystem() == SysInfo::Win98);
    GDIBitmap paper;
    REQUIRE((paper.CreateBitmap({12, 8}, 32) && paper.ExtClearSurface(kUnder)));
    return paper;
}

} // namespace

TEST_CASE("on the 95 family transparent drawing goes by masks, stretched or not") {
    GDIBitmap picture = Painted({6, 4}, 32);
    SetPixelOf(picture, 2, 1, kKey);
    SetPixelOf(picture, 3, 3, kKey);
    for (const int factor : {1, 2}) {
        CAPTURE(factor);
        const Canvas canvas(PlainPaper());
        const Rect target(1, 1, 1 + 3 * factor, 1 + 3 * factor);
        CHECK(picture.TransparentDraw(canvas.dc, target, Rect(1, 1, 4, 4), kKey));
        CheckTarget(canvas, target, ShownFrom(picture, 1, 1, factor));
    }
}

TEST_CASE("on the 95 family alpha drawing spares the last column and row and refuses thin sources") {
    const GDIBitmap picture = Painted({6, 4}, 32);
    const Canvas canvas(PlainPaper());
    for (const Rect& thin : {Rect(0, 0, 1, 4), Rect(2, 1, 5, 2)})
        CHECK_FALSE(picture.AlphaDraw(canvas.dc, Rect(0, 0, 5, 5), thin, 1.0, false));
    CHECK(picture.AlphaDraw(canvas.dc, Rect(2, 3, 6, 6), Rect(1, 1, 5, 4), 1.0, false));
    CheckTarget(canvas, {2, 3, 5, 5}, ShownFrom(picture, 1, 1, 1));
    Rect clip;
    GetClipBox(canvas.dc, &clip);
    CHECK(clip.right == 12);
}

TEST_CASE("on the 95 family a mask of another size is made from a rescaled picture") {
    PlainPaper();
    GDIBitmap picture = Painted({6, 4}, 24);
    SetPixelOf(picture, 5, 3, kKey);
    CheckPixels(GDIBitmap::CreateMaskBmp(picture, {12, 8}, kKey, false),
                [](int x, int y) { return x >= 10 && y >= 6 ? 1UL : 0UL; });
}
