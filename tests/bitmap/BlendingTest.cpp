#include "tests/bitmap/MemoryPicture.h"

#include <doctest/doctest.h>

#include <cstdlib>

static_assert(sizeof(void*) != 4 || (sizeof(BitmapBase::DibSrc) == 16 && sizeof(GDIBitmap::HBitmapSrc) == 12 &&
                                     sizeof(GDIBitmap::TransparentSrc) == 12 && sizeof(GDIBitmap::AlphaSrc) == 12));

namespace {

using Scale = XSize<double>;

// A 32-bit picture to draw on.
struct Canvas {
    Canvas() : dc(CreateCompatibleDC(nullptr)) {
        REQUIRE(picture.CreateBitmap({20, 12}, 32));
        Paint(picture, 0x334455);
        before = picture;
        previous = SelectObject(dc, picture.GetHandle(true));
        REQUIRE(previous);
    }
    ~Canvas() {
        SelectObject(dc, previous);
        DeleteDC(dc);
    }
    GDIBitmap picture;
    GDIBitmap before;
    HDC dc;
    HGDIOBJ previous = nullptr;
};

int Channel(unsigned long color, int shift) {
    return static_cast<int>(color >> shift & 0xFF);
}

// Blending may round either way.
bool IsBlend(unsigned long result, unsigned long over, double alpha, unsigned long under, double kept) {
    for (const int shift : {0, 8, 16}) {
        const double exact = Channel(over, shift) * alpha + Channel(under, shift) * kept;
        if (std::abs(Channel(result, shift) - exact) > 1.01)
            return false;
    }
    return true;
}

// Checks every pixel: @p covered answers the source pixel's column and row, or -1 outside the target.
template <class Expect>
void CheckPixels(const Canvas& canvas, const Rect& target, Expect expect) {
    for (int i = 0; i < 20 * 12; ++i) {
        const int x = i % 20, y = i / 20;
        CAPTURE(x);
        CAPTURE(y);
        const bool inside = x >= target.left && x < target.right && y >= target.top && y < target.bottom;
        const unsigned long under = canvas.before.GetPixel(x, y);
        const unsigned long shown = canvas.picture.GetPixel(x, y);
        if (inside)
            REQUIRE(expect(x - target.left, y - target.top, under, shown));
        else
            REQUIRE(shown == under);
    }
}

} // namespace

TEST_CASE("drawing copies pixels, stretched by nearest neighbours, for both kinds of picture") {
    GDIBitmap picture;
    REQUIRE(picture.CreateBitmap({4, 3}, 24));
    Paint(picture);
    GDIBitmap system;
    REQUIRE(system.CreateBitmap(picture, {4, 3}, 0, IBitmap::BM_Stretch, {1, 1}, 0));
    for (const GDIBitmap* const drawn : {&picture, &system}) {
        Canvas canvas;
        CHECK(drawn->Draw(canvas.dc, {3, 2, 11, 8}, IBitmap::BM_Stretch, {1, 1}));
        CheckPixels(canvas, {3, 2, 11, 8}, [&](int x, int y, unsigned long, unsigned long shown) {
            return shown == picture.GetPixel(x / 2, y / 2);
        });
        CHECK(GetStretchBltMode(canvas.dc) == COLORONCOLOR);
        CHECK(drawn->Draw(canvas.dc, {3, 2, 11, 8}, canvas.before.GetDimension().cx ? Rect(1, 1, 3, 2) : Rect(),
                          SRCCOPY));
        CheckPixels(canvas, {3, 2, 11, 8}, [&](int x, int, unsigned long, unsigned long shown) {
            return shown == picture.GetPixel(1 + x / 4, 1);
        });
        CHECK_FALSE(drawn->Draw(nullptr, {3, 2, 11, 8}, {0, 0, 4, 3}, SRCCOPY));
    }
    CHECK(GDIBitmap().Draw(nullptr, {0, 0, 9, 9}, IBitmap::BM_Fit, {1, 1}));
    CHECK_FALSE(GDIBitmap().Draw(nullptr, {0, 0, 9, 9}, {0, 0, 1, 1}, SRCCOPY));
}

TEST_CASE("transparent drawing leaves out one colour") {
    for (const int bits : {8, 24, 32}) {
        CAPTURE(bits);
        GDIBitmap picture;
        REQUIRE(picture.CreateBitmap({6, 4}, bits));
        if (bits == 8) {
            picture.LockPaletteModify()[0] = {1, 2, 3, 0};
            picture.LockPaletteModify()[5] = {0xFF, 0, 0xFF, 0};
        } else {
            Paint(picture);
        }
        for (const Size& at : {Size(0, 0), Size(3, 2), Size(5, 3)})
            SetPixelOf(picture, at.cx, at.cy, bits == 8 ? 5 : 0xFF00FF);
        GDIBitmap rgb;
        REQUIRE(rgb.CreateBitmap(picture, {6, 4}, 24, IBitmap::BM_Stretch, {1, 1}, 0));
        Canvas canvas;
        CHECK(picture.TransparentDraw(canvas.dc, {2, 1, 14, 9}, 0xFF00FF, IBitmap::BM_Center, {2, 2}));
        CheckPixels(canvas, {2, 1, 14, 9}, [&](int x, int y, unsigned long under, unsigned long shown) {
            const unsigned long own = rgb.GetPixel(x / 2, y / 2);
            return shown == (own == 0xFF00FF ? under : own);
        });
        Canvas other;
        CHECK(picture.TransparentDraw(other.dc, {7, 5, 10, 7}, Rect(3, 2, 6, 4), 0xFF00FF));
        CheckPixels(other, {7, 5, 10, 7}, [&](int x, int y, unsigned long under, unsigned long shown) {
            const unsigned long own = rgb.GetPixel(3 + x, 2 + y);
            return shown == (own == 0xFF00FF ? under : own);
        });
        CHECK_FALSE(picture.TransparentDraw(nullptr, {0, 0, 1, 1}, Rect(0, 0, 1, 1), 0));
    }
    CHECK_FALSE(GDIBitmap().TransparentDraw(nullptr, {0, 0, 1, 1}, Rect(0, 0, 1, 1), 0));
}

TEST_CASE("alpha drawing blends by the opacity, and by the pixels' own alpha") {
    GDIBitmap picture;
    REQUIRE(picture.CreateBitmap({6, 4}, 32));
    Paint(picture);
    GDIBitmap keyed(picture);
    REQUIRE(keyed.SetAlphaChannel({0, 0, 3, 4}, picture.GetPixel(1, 1), 0x0000FF, 0.5));
    for (const double opacity : {1.0, 0.5, 0.0}) {
        CAPTURE(opacity);
        const double whole = static_cast<int>(opacity * 255) / 255.0;
        Canvas canvas;
        CHECK(picture.AlphaDraw(canvas.dc, {2, 1, 14, 9}, opacity, false, IBitmap::BM_Stretch, {1, 1}));
        CheckPixels(canvas, {2, 1, 14, 9}, [&](int x, int y, unsigned long under, unsigned long shown) {
            return IsBlend(shown, picture.GetPixel(x / 2, y / 2), whole, under, 1 - whole);
        });
        Canvas other;
        CHECK(keyed.AlphaDraw(other.dc, {5, 5, 8, 9}, Rect(0, 0, 3, 4), opacity, true));
        CheckPixels(other, {5, 5, 8, 9}, [&](int x, int y, unsigned long under, unsigned long shown) {
            const double alpha = x == 1 && y == 1 ? 127 / 255.0 : 0;
            return IsBlend(shown, 0x0000FF, alpha * whole, under, 1 - alpha * whole);
        });
    }
    CHECK_FALSE(picture.AlphaDraw(nullptr, {0, 0, 1, 1}, Rect(0, 0, 1, 1), 1, false));
    CHECK(GDIBitmap::AlphaSrc(nullptr, true, 7).m_byOpacity == 7);
}
