// A program of its own: the library asks for the system's family once per process.
#include "tests/bitmap/MemoryPicture.h"

#include <doctest/doctest.h>
#include <kelcore/platform/testing.h>
#include <kelcore/runtime/system.h>

namespace {

void Become95() {
    kel::platform::ReportVersion(VER_PLATFORM_WIN32_WINDOWS, 4, 10);
    REQUIRE(SysInfo::GetSystem() == SysInfo::Win98);
}

// A 32-bit surface of one colour, selected into a device context.
struct Canvas {
    Canvas() : dc(CreateCompatibleDC(nullptr)) {
        REQUIRE((picture.CreateBitmap({12, 8}, 32) && picture.ExtClearSurface(kUnder)));
        previous = SelectObject(dc, picture.GetHandle());
    }
    ~Canvas() {
        SelectObject(dc, previous);
        DeleteDC(dc);
    }
    static constexpr unsigned long kUnder = 0x203040;
    GDIBitmap picture;
    HDC dc;
    HGDIOBJ previous;
};

} // namespace

TEST_CASE("on the 95 family transparent drawing goes by masks, stretched or not") {
    Become95();
    GDIBitmap picture;
    REQUIRE(picture.CreateBitmap({6, 4}, 32));
    Paint(picture);
    SetPixelOf(picture, 2, 1, 0xFF00FF);
    SetPixelOf(picture, 3, 3, 0xFF00FF);
    for (const int factor : {1, 2}) {
        CAPTURE(factor);
        Canvas canvas;
        const Rect target(1, 1, 1 + 3 * factor, 1 + 3 * factor);
        CHECK(picture.TransparentDraw(canvas.dc, target, Rect(1, 1, 4, 4), 0xFF00FF));
        for (int i = 0; i < 12 * 8; ++i) {
            const int x = i % 12, y = i / 12;
            const bool inside = x >= 1 && y >= 1 && x < target.right && y < target.bottom;
            const unsigned long own = picture.GetPixel(1 + (x - 1) / factor, 1 + (y - 1) / factor);
            CHECK(canvas.picture.GetPixel(x, y) == (inside && own != 0xFF00FF ? own : Canvas::kUnder));
        }
    }
}

TEST_CASE("on the 95 family alpha drawing spares the last column and row and refuses thin sources") {
    Become95();
    GDIBitmap picture;
    REQUIRE(picture.CreateBitmap({6, 4}, 32));
    Paint(picture);
    Canvas canvas;
    for (const Rect& thin : {Rect(0, 0, 1, 4), Rect(2, 1, 5, 2)})
        CHECK_FALSE(picture.AlphaDraw(canvas.dc, Rect(0, 0, 5, 5), thin, 1.0, false));
    CHECK(picture.AlphaDraw(canvas.dc, Rect(2, 3, 6, 6), Rect(1, 1, 5, 4), 1.0, false));
    for (int i = 0; i < 12 * 8; ++i) {
        const int x = i % 12, y = i / 12;
        const bool inside = x >= 2 && y >= 3 && x < 5 && y < 5;
        CHECK(canvas.picture.GetPixel(x, y) == (inside ? picture.GetPixel(x - 1, y - 2) : Canvas::kUnder));
    }
    Rect clip;
    GetClipBox(canvas.dc, &clip);
    CHECK(clip.right == 12);
}

TEST_CASE("on the 95 family a mask of another size is made from a rescaled picture") {
    Become95();
    GDIBitmap picture;
    REQUIRE(picture.CreateBitmap({6, 4}, 24));
    SetPixelOf(picture, 5, 3, 0xFF00FF);
    const GDIBitmap mask = GDIBitmap::CreateMaskBmp(picture, {12, 8}, 0xFF00FF, false);
    for (int i = 0; i < 12 * 8; ++i)
        CHECK(mask.GetPixel(i % 12, i / 12) == (i % 12 >= 10 && i / 12 >= 6));
}
