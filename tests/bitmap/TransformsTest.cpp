#include "tests/bitmap/Pictures.h"

#include <cmath>

TEST_CASE("prescaling makes the size that the picture would have in the target, below the limit") {
    const std::tuple<Size, Size, int, XSize<double>, double, Size> cases[] = {
        {{100, 100}, {200, 200}, 0, {1, 1}, 5.0, {200, 200}},
        {{100, 100}, {200, 200}, 0, {1, 1}, 4.0, {}},
        {{100, 100}, {200, 200}, 2, {1, 1}, 4.1, {200, 200}},
        {{150, 100}, {100, 100}, 0, {1, 1}, 0.1, {100, 100}},
        {{200, 100}, {100, 100}, 1, {1, 1}, 1.0, {100, 50}},
        {{200, 100}, {100, 100}, 1, {1, 1}, 0.25, {}},
        {{200, 100}, {100, 100}, 1, {1, 3}, 1.0, {67, 100}},
        {{40, 30}, {50, 100}, 3, {2, 2}, 9.0, {50, 60}},
        {{40, 30}, {50, 100}, 4, {2, 2}, 9.0, {50, 60}},
        {{40, 30}, {50, 100}, 3, {2, 2}, 2.5, {}},
        {{40, 30}, {50, 100}, 5, {1, 1}, 9.0, {}},
        {{40, 30}, {0, 100}, 0, {1, 1}, 9.0, {}},
        {{40, 30}, {50, 100}, 0, {0, 1}, 9.0, {}},
        {{40, 30}, {50, 100}, 0, {1, -1}, 9.0, {}},
        {{40, 30}, {50, 100}, 3, {1, 0.001}, 9.0, {}},
        {{40, 30}, {50, 100}, 3, {std::nan(""), 1}, 9.0, {}}};
    for (const auto& row : cases) {
        CAPTURE(&row - cases);
        const auto& [source, area, mode, scale, limit, result] = row; // (0, 0) for none
        GDIBitmap picture = Painted(source, 24);
        const GDIBitmap before(picture);
        const Rect target(7, 7, 7 + area.cx, 7 + area.cy);
        const bool made = picture.Prescale(target, IBitmap::BM_Mode(mode), scale, limit);
        CHECK(made == (result.cx != 0));
        CHECK(picture.GetDimension().cx == (made ? result.cx : source.cx));
        CHECK(picture.GetDimension().cy == (made ? result.cy : source.cy));
        CHECK((picture == before) == !made);
    }
    CHECK(GDIBitmap::CreatePrescaledBmp(GDIBitmap(), {0, 0, 9, 9}, IBitmap::BM_Fit, {1, 1}, 9).IsEmpty());
    for (int mode = 0; mode <= 4; ++mode)
        CHECK_FALSE(Painted({2, 2}, 24).Prescale(kEverything, IBitmap::BM_Mode(mode), {1e9, 1e9}, 9));
}

TEST_CASE("rendering places the picture on the background, at any depth that fits") {
    const GDIBitmap source = Painted({4, 2}, 24);
    GDIBitmap centred, indexed;
    REQUIRE(centred.CreateBitmap(source, {8, 6}, 32, IBitmap::BM_Center, {1, 1}, 0x123456));
    CheckPixels(centred, [&](int x, int y) {
        const unsigned long pixel = source.GetPixel(x - 2, y - 2);
        return pixel == 0xFFFFFFFF ? 0x123456 : pixel;
    });
    REQUIRE(indexed.CreateBitmap({4, 2}, 8));
    auto denying = Painted<MemoryPicture>({4, 2}, 24);
    denying.deniesMemory = true;
    CHECK_FALSE(indexed.CreateBitmap(indexed, {4, 2}, 4, IBitmap::BM_Stretch, {1, 1}, 0));
    CHECK_FALSE(indexed.CreateBitmap(indexed, {4, 0}, 8, IBitmap::BM_Stretch, {1, 1}, 0));
    CHECK_FALSE(indexed.CreateBitmap(denying, {4, 2}, 24, IBitmap::BM_Stretch, {1, 1}, 0));
    CHECK(indexed.GetBitsPerPixel() == 8);
}

TEST_CASE("resizing and cropping replace this picture alone") {
    const GDIBitmap original = Painted({10, 6}, 32);
    GDIBitmap picture(original);
    CHECK((picture.Resize({20, 12}) && !picture.Resize({0, 12})));
    CheckPixels(picture, [&](int x, int y) { return original.GetPixel(x / 2, y / 2); });
    picture = original;
    CHECK(picture.Crop({3, 1, 5, 99}));
    CHECK((picture.GetDimension().cx == 2 && picture.GetDimension().cy == 5));
    CheckPixels(picture, [&](int x, int y) { return original.GetPixel(x + 3, y + 1); });
    CHECK_FALSE(picture.Crop({200, 200, 300, 300}));
    CHECK((picture.IsEmpty() && picture.Crop({0, 0, 1, 1}) && original.GetDimension().cx == 10));
}

TEST_CASE("filling reaches every pixel of the area") {
    GDIBitmap picture = Painted({5, 3}, 24), indexed;
    CHECK(picture.ClearSurface(0xA5));
    CHECK(BytesOf(picture) == std::vector<unsigned char>(48, 0xA5));
    CHECK(picture.ExtClearSurface(0x0000FF, {1, 1, 3, 99}));
    CheckPixels(picture, [](int x, int y) { return x >= 1 && x < 3 && y >= 1 ? 0x0000FFUL : 0xA5A5A5UL; });
    REQUIRE(indexed.CreateBitmap({5, 3}, 8));
    indexed.LockPaletteModify()[200] = {9, 8, 7, 0};
    CHECK((indexed.ExtClearSurface(0x090807) && RowOf(indexed, 0)[4] == 200));
    CHECK_FALSE((GDIBitmap().ClearSurface(0) || GDIBitmap().ExtClearSurface(0)));
}

TEST_CASE("the disabled style greys all but the colour to keep") {
    const unsigned long before[] = {0x000000, 0xFFFFFF, 0x5A3C1E, 0xFF00FF, 0x0000FF};
    const unsigned long after[] = {0x808080, 0xD5D5D5, 0x949494, 0xFF00FF, 0x9C9C9C};
    for (const int bits : {24, 32}) {
        GDIBitmap picture = Painted({5, 1}, bits), indexed;
        for (int x = 0; x < 5; ++x)
            SetPixelOf(picture, x, 0, before[x]);
        CHECK(picture.SetStyleDisabled(0xFF00FF));
        CheckPixels(picture, [&](int x, int) { return after[x]; });
        CHECK((picture.SetStyleDisabled(0xFF808080) && picture.GetPixel(0, 0) == 0xAAAAAA));
        CHECK((indexed.SetStyleDisabled(0) && indexed.CreateBitmap({5, 2}, 8) && !indexed.SetStyleDisabled(0)));
    }
}

TEST_CASE("a mask is white where the source has the colour") {
    for (const int bits : {24, 32}) {
        GDIBitmap picture = Painted({35, 5}, bits);
        SetPixelOf(picture, 0, 0, 0xFF00FF);
        SetPixelOf(picture, 34, 3, 0xFF00FF);
        const auto marked = [&](int x, int y) { return picture.GetPixel(x, y) == 0xFF00FF ? 1UL : 0UL; };
        const GDIBitmap mask = picture.CreateMaskBmp(0xFF00FF);
        GDIBitmap inverted(mask);
        CHECK((mask.GetBitsPerPixel() == 1 && mask.LockPalette()[1].rgbGreen == 255 && inverted.Invert()));
        CheckPixels(mask, marked);
        CheckPixels(inverted, [&](int x, int y) { return 1 - marked(x, y); });
        GDIBitmap device = GDIBitmap::CreateMaskBmp(picture, {70, 10}, 0xFF00FF, true);
        GDIBitmap resized(device), cropped(device);
        CHECK((resized.Resize({35, 5}) && cropped.Crop({60, 4, 70, 10})));
        CheckPixels(resized, marked);
        CheckPixels(cropped, [&](int x, int y) { return marked(30 + x / 2, 2 + y / 2); });
        CHECK((device.LockSurface() == nullptr && device.GetBitsPerPixel() == 1 && device.ConvertSysBitmap2DIB()));
        CheckPixels(device, [&](int x, int y) { return marked(x / 2, y / 2); });
    }
    CHECK(GDIBitmap().CreateMaskBmp(0).IsEmpty());
    CHECK(GDIBitmap::CreateMaskBmp(Painted({2, 2}, 24), {0, 2}, 0, false).IsEmpty());
    CHECK_FALSE(GDIBitmap().Invert());
}

TEST_CASE("alpha is written by key") {
    const GDIBitmap picture = Painted({6, 4}, 32);
    GDIBitmap opaque(picture), overlay(picture), rgb = Painted({2, 2}, 24);
    const unsigned long key = picture.GetPixel(2, 1);
    REQUIRE(opaque.SetAlphaTransparence(key, 0.3));
    REQUIRE(overlay.SetAlphaChannel({1, 1, 5, 99}, key, 0x000080FF, 0.5));
    REQUIRE(overlay.SetAlphaChannel({9, 9, 10, 10}, 0, 0, 1));
    for (int i = 0; i < 24; ++i) {
        const int x = i % 6, y = i / 6;
        const unsigned int was = BitmapBase::DibRGB(picture.GetPixel(x, y));
        const bool isKey = x == 2 && y == 1;
        const bool inside = x >= 1 && x < 5 && y >= 1;
        unsigned int pixels[2];
        std::memcpy(&pixels[0], RowOf(opaque, y) + 4 * x, 4);
        std::memcpy(&pixels[1], RowOf(overlay, y) + 4 * x, 4);
        CHECK(pixels[0] == (isKey ? 0 : was | 0xFF000000));
        CHECK(pixels[1] == (!inside ? was : isKey ? 0x7F7F3F00 : 0));
    }
    CHECK_FALSE((rgb.SetAlphaTransparence(0, 1) || rgb.SetAlphaChannel({0, 0, 2, 2}, 0, 0, 1)));
}
