#include "tests/bitmap/Canvas.h"

#include <cstdlib>

static_assert(sizeof(void*) != 4 || (sizeof(BitmapBase::DibSrc) == 16 && sizeof(GDIBitmap::HBitmapSrc) == 12 &&
                                     sizeof(GDIBitmap::TransparentSrc) == 12 && sizeof(GDIBitmap::AlphaSrc) == 12));

namespace {

constexpr Rect kWhole(0, 0, 20, 12);

// Whether each channel is the blend, which may be rounded either way.
bool IsBlend(unsigned long shown, unsigned long over, double alpha, unsigned long under, double kept) {
    const auto channel = [](unsigned long color, int shift) { return static_cast<double>(color >> shift & 0xFF); };
    bool fits = true;
    for (const int shift : {0, 8, 16})
        fits &= std::abs(channel(shown, shift) - channel(over, shift) * alpha - channel(under, shift) * kept) < 1.01;
    return fits;
}

} // namespace

TEST_CASE("drawing copies pixels, stretched by nearest neighbours, for both kinds of picture") {
    const GDIBitmap picture = Painted({4, 3}, 24);
    const GDIBitmap device = OnDevice(picture);
    const Rect target(3, 2, 11, 8);
    for (const GDIBitmap* const drawn : {&picture, &device}) {
        Canvas canvas;
        CHECK(drawn->Draw(canvas.dc, target, IBitmap::BM_Stretch, {1, 1}));
        CheckTarget(canvas, target, ShownFrom(picture, 0, 0, 2));
        CHECK(GetStretchBltMode(canvas.dc) == COLORONCOLOR);
        CHECK(drawn->Draw(canvas.dc, target, Rect(1, 1, 3, 2), NOTSRCCOPY));
        CheckTarget(canvas, target, [&](int x, int, unsigned long, unsigned long shown) {
            return shown == (picture.GetPixel(1 + x / 4, 1) ^ 0xFFFFFF);
        });
        CHECK_FALSE(drawn->Draw(nullptr, target, {0, 0, 4, 3}, SRCCOPY));
    }
    CHECK(GDIBitmap().Draw(nullptr, target, IBitmap::BM_Fit, {1, 1}));
    CHECK_FALSE(GDIBitmap().Draw(nullptr, target, {0, 0, 1, 1}, SRCCOPY));

    Canvas canvas;
    picture.Draw(canvas.dc, target, Rect(0, kLeast, 4, kLeast + 3), SRCCOPY);
    CheckTarget(canvas, Rect(), ShownFrom(picture, 0, 0, 1));
}

TEST_CASE("transparent drawing leaves out one colour") {
    for (const int bits : {8, 24, 32}) {
        CAPTURE(bits);
        GDIBitmap picture = Painted({6, 4}, bits);
        if (bits == 8) {
            for (unsigned char i = 0; i < 255; ++i)
                picture.LockPaletteModify()[i] = {i, 9, 9, 0};
            picture.LockPaletteModify()[255] = {0xFF, 0, 0xFF, 0};
        }
        for (const Size& at : {Size(0, 0), Size(3, 2), Size(5, 3)})
            SetPixelOf(picture, at.cx, at.cy, bits == 8 ? 255 : kKey);
        const GDIBitmap rgb = InColours(picture);
        Canvas whole, part;
        CHECK(picture.TransparentDraw(whole.dc, {2, 1, 14, 9}, kKey, IBitmap::BM_Center, {2, 2}));
        CheckTarget(whole, {2, 1, 14, 9}, ShownFrom(rgb, 0, 0, 2));
        CHECK(picture.TransparentDraw(part.dc, {7, 5, 10, 7}, Rect(3, 2, 6, 4), kKey));
        CheckTarget(part, {7, 5, 10, 7}, ShownFrom(rgb, 3, 2, 1));
        CHECK_FALSE(picture.TransparentDraw(nullptr, kWhole, Rect(0, 0, 1, 1), 0));
    }
    CHECK_FALSE(GDIBitmap().TransparentDraw(nullptr, kWhole, Rect(0, 0, 1, 1), 0));
}

TEST_CASE("alpha drawing blends by the opacity, and by the pixels' own alpha") {
    const GDIBitmap picture = Painted({6, 4}, 32);
    GDIBitmap keyed(picture);
    REQUIRE(keyed.SetAlphaChannel({0, 0, 3, 4}, picture.GetPixel(1, 1), 0x0000FF, 0.5));
    for (const double opacity : {1.0, 0.5, 0.0}) {
        CAPTURE(opacity);
        const double whole = static_cast<int>(opacity * 255) / 255.0;
        Canvas canvas, other;
        CHECK(picture.AlphaDraw(canvas.dc, {2, 1, 14, 9}, opacity, false, IBitmap::BM_Stretch, {1, 1}));
        CheckTarget(canvas, {2, 1, 14, 9}, [&](int x, int y, unsigned long under, unsigned long shown) {
            return IsBlend(shown, picture.GetPixel(x / 2, y / 2), whole, under, 1 - whole);
        });
        CHECK(keyed.AlphaDraw(other.dc, {5, 5, 8, 9}, Rect(0, 0, 3, 4), opacity, true));
        CheckTarget(other, {5, 5, 8, 9}, [&](int x, int y, unsigned long under, unsigned long shown) {
            const double alpha = x == 1 && y == 1 ? 127 / 255.0 * whole : 0;
            return IsBlend(shown, 0x0000FF, alpha, under, 1 - alpha);
        });
    }
    CHECK_FALSE(picture.AlphaDraw(nullptr, kWhole, Rect(0, 0, 1, 1), 1, false));
}
