#include "tests/bitmap/MemoryPicture.h"

#include <doctest/doctest.h>

#include <cmath>

namespace {

GDIBitmap Painted(const Size& size, int bits) {
    GDIBitmap picture;
    REQUIRE(picture.CreateBitmap(size, bits));
    Paint(picture);
    return picture;
}

} // namespace

TEST_CASE("prescaling makes the size that the picture would have in the target, below the limit") {
    const struct {
        Size source;
        Rect target;
        int mode;
        XSize<double> scale;
        double limit;
        Size result; // (0, 0) for none
    } cases[] = {
        {{100, 100}, {0, 0, 200, 200}, 0, {1, 1}, 5.0, {200, 200}},
        {{100, 100}, {0, 0, 200, 200}, 0, {1, 1}, 4.0, {0, 0}},
        {{100, 100}, {0, 0, 200, 200}, 2, {1, 1}, 4.1, {200, 200}},
        {{150, 100}, {0, 0, 100, 100}, 0, {1, 1}, 0.1, {100, 100}},
        {{200, 100}, {0, 0, 100, 100}, 1, {1, 1}, 1.0, {100, 50}},
        {{200, 100}, {0, 0, 100, 100}, 1, {1, 1}, 0.25, {0, 0}},
        {{200, 100}, {0, 0, 100, 100}, 1, {1, 3}, 1.0, {67, 100}},
        {{40, 30}, {0, 0, 50, 100}, 3, {2, 2}, 9.0, {50, 60}},
        {{40, 30}, {0, 0, 50, 100}, 4, {2, 2}, 9.0, {50, 60}},
        {{40, 30}, {0, 0, 50, 100}, 3, {2, 2}, 2.5, {0, 0}},
        {{40, 30}, {0, 0, 50, 100}, 5, {1, 1}, 9.0, {0, 0}},
        {{40, 30}, {0, 0, 0, 100}, 0, {1, 1}, 9.0, {0, 0}},
        {{40, 30}, {0, 0, 50, 100}, 0, {0, 1}, 9.0, {0, 0}},
        {{40, 30}, {0, 0, 50, 100}, 0, {1, -1}, 9.0, {0, 0}},
        {{40, 30}, {0, 0, 50, 100}, 3, {1, 0.001}, 9.0, {0, 0}},
        {{40, 30}, {0, 0, 50, 100}, 3, {std::nan(""), 1}, 9.0, {0, 0}},
    };
    for (const auto& row : cases) {
        CAPTURE(&row - cases);
        GDIBitmap picture;
        REQUIRE(picture.CreateBitmap(row.source, 24));
        const GDIBitmap before(picture);
        const bool made = picture.Prescale(row.target, IBitmap::BM_Mode(row.mode), row.scale, row.limit);
        CHECK(made == (row.result.cx != 0));
        CHECK(picture.GetDimension().cx == (made ? row.result.cx : row.source.cx));
        CHECK(picture.GetDimension().cy == (made ? row.result.cy : row.source.cy));
        CHECK((picture == before) == !made);
    }
    CHECK(GDIBitmap::CreatePrescaledBmp(GDIBitmap(), {0, 0, 9, 9}, IBitmap::BM_Fit, {1, 1}, 9).IsEmpty());
}

TEST_CASE("rendering places the picture on the background, at any depth that fits") {
    const GDIBitmap source = Painted({4, 2}, 24);
    GDIBitmap centred;
    REQUIRE(centred.CreateBitmap(source, {8, 6}, 32, IBitmap::BM_Center, {1, 1}, 0x123456));
    for (int i = 0; i < 48; ++i) {
        const int x = i % 8, y = i / 8;
        const bool covered = x >= 2 && x < 6 && y >= 2 && y < 4;
        CHECK(centred.GetPixel(x, y) == (covered ? source.GetPixel(x - 2, y - 2) : 0x123456));
    }
    GDIBitmap indexed;
    REQUIRE(indexed.CreateBitmap({4, 2}, 8));
    CHECK(GDIBitmap().CreateBitmap(indexed, {4, 2}, 24, IBitmap::BM_Stretch, {1, 1}, 0));
    CHECK_FALSE(indexed.CreateBitmap(indexed, {4, 2}, 4, IBitmap::BM_Stretch, {1, 1}, 0));
    CHECK_FALSE(indexed.CreateBitmap(indexed, {4, 0}, 8, IBitmap::BM_Stretch, {1, 1}, 0));
    MemoryPicture denying({4, 2}, 24);
    denying.deniesMemory = true;
    CHECK_FALSE(indexed.CreateBitmap(denying, {4, 2}, 24, IBitmap::BM_Stretch, {1, 1}, 0));
    CHECK(indexed.GetBitsPerPixel() == 8);
}

TEST_CASE("resizing and cropping replace this picture alone") {
    const GDIBitmap original = Painted({10, 6}, 32);
    GDIBitmap picture(original);
    CHECK(picture.Resize({20, 12}));
    CHECK(picture.GetPixel(19, 11) == original.GetPixel(9, 5));
    CHECK_FALSE(picture.Resize({0, 12}));
    CHECK(picture.GetDimension().cx == 20);
    picture = original;
    CHECK(picture.Crop({3, 1, 5, 99}));
    CHECK(picture.GetDimension().cx == 2);
    CHECK(picture.GetDimension().cy == 5);
    CHECK(picture.GetPixel(1, 4) == original.GetPixel(4, 5));
    CHECK_FALSE(picture.Crop({200, 200, 300, 300}));
    CHECK(picture.IsEmpty());
    CHECK(picture.Crop({0, 0, 1, 1}));
    CHECK(original.GetDimension().cx == 10);
}

TEST_CASE("filling reaches every pixel of the area") {
    GDIBitmap picture = Painted({5, 3}, 24);
    CHECK(picture.ClearSurface(0xA5));
    CHECK(BytesOf(picture) == std::vector<unsigned char>(48, 0xA5));
    CHECK(picture.ExtClearSurface(0x0000FF, {1, 1, 3, 99}));
    for (int i = 0; i < 15; ++i)
        CHECK(picture.GetPixel(i % 5, i / 5) == (i % 5 >= 1 && i % 5 < 3 && i / 5 >= 1 ? 0x0000FF : 0xA5A5A5));
    GDIBitmap indexed;
    REQUIRE(indexed.CreateBitmap({5, 3}, 8));
    indexed.LockPaletteModify()[200] = {9, 8, 7, 0};
    CHECK(indexed.ExtClearSurface(0x090807));
    CHECK(RowOf(indexed, 0)[4] == 200);
    CHECK_FALSE(GDIBitmap().ClearSurface(0));
    CHECK_FALSE(GDIBitmap().ExtClearSurface(0));
}

TEST_CASE("the disabled style greys all but the colour to keep") {
    const unsigned long colors[][2] = {
        {0x000000, 128}, {0xFFFFFF, 213}, {0x5A3C1E, 148}, {0xFF00FF, 0xFF00FF}, {0x0000FF, 156}};
    for (const int bits : {24, 32}) {
        GDIBitmap picture;
        REQUIRE(picture.CreateBitmap({5, 2}, bits));
        for (int x = 0; x < 5; ++x)
            SetPixelOf(picture, x, 1, colors[x][0]);
        CHECK(picture.SetStyleDisabled(0xFF00FF));
        for (int x = 0; x < 5; ++x)
            CHECK(picture.GetPixel(x, 1) == (colors[x][1] < 256 ? colors[x][1] * 0x010101 : colors[x][1]));
        CHECK(RowOf(picture, 0)[15] == 0);
        CHECK(picture.SetStyleDisabled(0xFF808080));
        CHECK(picture.GetPixel(0, 1) == 0xAAAAAA);
    }
    GDIBitmap indexed;
    CHECK(indexed.SetStyleDisabled(0));
    REQUIRE(indexed.CreateBitmap({5, 2}, 8));
    CHECK_FALSE(indexed.SetStyleDisabled(0));
}

TEST_CASE("a mask is white where the source has the colour") {
    for (const int bits : {24, 32}) {
        GDIBitmap picture = Painted({35, 5}, bits);
        SetPixelOf(picture, 0, 0, 0xFF00FF);
        SetPixelOf(picture, 34, 3, 0xFF00FF);
        GDIBitmap mask = picture.CreateMaskBmp(0xFF00FF);
        REQUIRE(mask.GetBitsPerPixel() == 1);
        CHECK(mask.LockPalette()[1].rgbGreen == 255);
        GDIBitmap inverted(mask);
        CHECK(inverted.Invert());
        for (int i = 0; i < 35 * 5; ++i) {
            const bool marked = i == 0 || i == 3 * 35 + 34;
            CHECK(mask.GetPixel(i % 35, i / 35) == marked);
            CHECK(inverted.GetPixel(i % 35, i / 35) == !marked);
        }
        GDIBitmap device = GDIBitmap::CreateMaskBmp(picture, {70, 10}, 0xFF00FF, true);
        CHECK(device.LockSurface() == nullptr);
        CHECK(device.GetBitsPerPixel() == 1);
        CHECK(device.ConvertSysBitmap2DIB());
        CHECK(device.GetPixel(1, 1) == 1);
        CHECK(device.GetPixel(69, 7) == 1);
        CHECK(device.GetPixel(69, 8) == 0);
    }
    CHECK(GDIBitmap().CreateMaskBmp(0).IsEmpty());
    CHECK(GDIBitmap::CreateMaskBmp(Painted({2, 2}, 24), {0, 2}, 0, false).IsEmpty());
    CHECK_FALSE(GDIBitmap().Invert());
}

TEST_CASE("alpha is written by key") {
    GDIBitmap picture;
    REQUIRE(picture.CreateBitmap({6, 4}, 32));
    Paint(picture);
    SetPixelOf(picture, 2, 1, 0x030201);
    SetPixelOf(picture, 5, 3, 0x030201);
    GDIBitmap opaque(picture);
    REQUIRE(opaque.SetAlphaTransparence(0x030201, 0.3));
    REQUIRE(picture.SetAlphaChannel({1, 1, 5, 99}, 0x030201, 0x000080FF, 0.5));
    for (int i = 0; i < 24; ++i) {
        const int x = i % 6, y = i / 6;
        unsigned int was = 0, key = 0, overlay = 0;
        const bool isKey = (x == 2 && y == 1) || (x == 5 && y == 3);
        const bool inside = x >= 1 && x < 5 && y >= 1;
        was = BitmapBase::DibRGB(isKey ? 0x030201UL : 0x010203UL * static_cast<unsigned>(i + 1));
        std::memcpy(&key, RowOf(opaque, y) + 4 * x, 4);
        std::memcpy(&overlay, RowOf(picture, y) + 4 * x, 4);
        CHECK(key == (isKey ? 0 : was | 0xFF000000));
        CHECK(overlay == (!inside ? was : isKey ? 0x7F7F3F00 : 0));
    }
    CHECK(picture.SetAlphaChannel({9, 9, 10, 10}, 0, 0, 1));
    GDIBitmap rgb = Painted({2, 2}, 24);
    CHECK_FALSE(rgb.SetAlphaTransparence(0, 1));
    CHECK_FALSE(rgb.SetAlphaChannel({0, 0, 2, 2}, 0, 0, 1));
}
