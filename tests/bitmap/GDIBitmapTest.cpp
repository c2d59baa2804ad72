#include "tests/bitmap/MemoryPicture.h"

#include <doctest/doctest.h>

namespace {

GDIBitmap Painted(const Size& size, int bits) {
    GDIBitmap picture;
    REQUIRE(picture.CreateBitmap(size, bits));
    Paint(picture);
    return picture;
}

// A device-dependent copy in a depth that the device has.
HBITMAP DeviceCopy(const GDIBitmap& picture) {
    GDIBitmap system;
    REQUIRE(system.CreateBitmap(picture, picture.GetDimension(), 0, IBitmap::BM_Stretch, {1, 1}, 0));
    const HBITMAP bitmap = system.DetachBitmap();
    REQUIRE(bitmap);
    return bitmap;
}

bool SamePixels(const IBitmap& a, const IBitmap& b) {
    const Size size = a.GetDimension();
    for (int i = 0; i < size.cx * size.cy; ++i) {
        if (a.GetPixel(i % size.cx, i / size.cx) != b.GetPixel(i % size.cx, i / size.cx))
            return false;
    }
    return size.cx == b.GetDimension().cx && size.cy == b.GetDimension().cy;
}

} // namespace

TEST_CASE("copies share a picture until one of them changes it") {
    for (const int bits : {1, 8, 24, 32}) {
        CAPTURE(bits);
        GDIBitmap first;
        REQUIRE(first.CreateBitmap({5, 3}, bits));
        SetPixelOf(first, 2, 1, 1);
        if (bits <= 8)
            first.LockPaletteModify()[1] = {1, 2, 3, 0};
        GDIBitmap second(first);
        GDIBitmap third;
        third = second;
        third = *&third;
        CHECK((first == second && third == first));
        CHECK(first.IsEqual(third));
        CHECK(first.DetachBitmap() == nullptr);
        CHECK(second.LockSurface() == first.LockSurface());
        SetPixelOf(second, 2, 1, 0);
        CHECK((second != first && third == first));
        CHECK_FALSE(second.IsEqual(first));
        CHECK(BytesOf(first) != BytesOf(second));
        CHECK(BytesOf(first) == BytesOf(third));
        if (bits <= 8)
            CHECK(second.LockPalette()[1].rgbRed == 3);
        third.SetEmpty();
        CHECK((third.IsEmpty() && !first.IsEmpty()));
        const HBITMAP bitmap = first.GetHandle();
        CHECK(first.DetachBitmap() == bitmap);
        CHECK((first.IsEmpty() && DeleteObject(bitmap)));
    }
    GDIBitmap empty;
    GDIBitmap copy(empty);
    CHECK(copy == empty);
    CHECK(copy.CreateBitmap({1, 1}, 32));
    CHECK(empty.IsEmpty());
    CHECK_FALSE(empty.IsEqual(MemoryPicture()));
}

TEST_CASE("a clone is counted by itself") {
    const GDIBitmap picture = Painted({3, 3}, 32);
    IBitmap* const clone = picture.GetClone();
    CHECK(picture.IsEqual(*clone));
    CHECK(clone->AddRef() == 2);
    CHECK(clone->Release() == 1);
    CHECK(clone->Release() == 0);
    CHECK(picture.GetPixel(0, 0) == 0x010203);
}

TEST_CASE("new pictures are blank, and sizes that cannot be leave the picture empty") {
    for (const int bits : {1, 4, 8, 16, 24, 32}) {
        GDIBitmap picture;
        REQUIRE(picture.CreateBitmap({2, 2}, bits));
        CHECK(picture.GetBitsPerPixel() == bits);
        CHECK(picture.GetNumPaletteEntries() == (bits <= 8 ? 1 << bits : 0));
        CHECK(picture.HasPalette() == (bits <= 8));
        CHECK(BytesOf(picture) == std::vector<unsigned char>(2 * picture.GetScanlineSize(), 0));
        CHECK(picture.GetBitmapBits() == picture.LockSurface());
        CHECK(picture.GetBitmapInfo()->bmiHeader.biClrUsed == 0);
    }
    const struct {
        Size size;
        int bits;
    } cases[] = {{{0, 10}, 24},          {{10, -1}, 24}, {{0, 10}, 0},     {{0x7FFFFFFF, 0x7FFFFFFF}, 32},
                 {{0x10000, 0x8000}, 8}, {{1, 1}, 64},   {{1, 1}, 0x10018}};
    for (const auto& row : cases) {
        for (const bool system : {false, true}) {
            GDIBitmap picture = Painted({2, 2}, 24);
            CHECK_FALSE(
                (system ? picture.CreateSysBitmap(row.size, row.bits) : picture.CreateBitmap(row.size, row.bits)));
            CHECK(picture.IsEmpty());
            CHECK(picture.GetBitsPerPixel() == 0);
            CHECK(picture.GetDimension().cx == 0);
        }
    }
}

TEST_CASE("a picture in the display's own format has no memory until it is converted") {
    const GDIBitmap painted = Painted({6, 4}, 32);
    GDIBitmap picture;
    REQUIRE(picture.CreateBitmap(painted, {6, 4}, 0, IBitmap::BM_Stretch, {1, 1}, 0));
    CHECK_FALSE(picture.IsEmpty());
    CHECK(picture.GetBitsPerPixel() == 0);
    CHECK(picture.LockSurface() == nullptr);
    CHECK_FALSE(picture.ClearSurface(0));
    const HGLOBAL block = picture.GetDibClone();
    MemoryPicture cloned;
    CHECK(cloned.SetDib(block));
    CHECK(SamePixels(cloned, painted));
    GlobalFree(block);

    GDIBitmap changed(picture);
    CHECK(changed.ExtClearSurface(0x00FF00));
    CHECK(changed.LockSurface() == nullptr);
    CHECK(changed.ConvertSysBitmap2DIB());
    CHECK(changed.GetPixel(5, 3) == 0x00FF00);
    CHECK(picture.ConvertSysBitmap2DIB());
    CHECK(picture.GetBitsPerPixel() == cloned.GetBitsPerPixel());
    CHECK(SamePixels(picture, painted));
    CHECK(picture.ConvertSysBitmap2DIB());
    CHECK(GDIBitmap().ConvertSysBitmap2DIB());
}

TEST_CASE("bitmaps of others are copied, attached and given away") {
    const GDIBitmap painted = Painted({6, 4}, 32);
    const HBITMAP foreign = DeviceCopy(painted);
    CHECK(SamePixels(GDIBitmap(foreign), painted));
    const GDIBitmap part(foreign, {2, 1, 99, 3});
    CHECK(part.GetDimension().cx == 4);
    CHECK(part.GetDimension().cy == 2);
    CHECK(part.GetPixel(0, 0) == painted.GetPixel(2, 1));
    CHECK(GDIBitmap(foreign, {7, 0, 9, 9}).IsEmpty());

    GDIBitmap picture;
    picture.AttachBitmap(foreign);
    CHECK(picture.GetHandle() == foreign);
    CHECK(picture.GetBitsPerPixel() == GDIBitmap(foreign).GetBitsPerPixel());
    CHECK(picture.LockSurface() == nullptr);
    GDIBitmap copy(picture);
    CHECK(copy.GetHandle(true) != foreign);
    CHECK(copy.LockSurface() != nullptr);
    CHECK(SamePixels(copy, painted));
    CHECK((picture.Invert() && picture.Invert()));
    CHECK(picture.ConvertSysBitmap2DIB());
    CHECK(SamePixels(picture, painted));
    picture = HBITMAP(nullptr);
    CHECK(picture.IsEmpty());
    picture.AttachBitmap(nullptr);
    CHECK(picture.IsEmpty());
    CHECK(picture.GetHandle(true) == nullptr);
}

TEST_CASE("pictures of depth 8 and less keep their colours on every road") {
    for (const int bits : {1, 4, 8}) {
        CAPTURE(bits);
        GDIBitmap picture;
        REQUIRE(picture.CreateBitmap({4, 2}, bits));
        picture.LockPaletteModify()[0] = {0x40, 0x80, 0xC0, 0};
        picture.LockPaletteModify()[1] = {0xFF, 0x00, 0xFF, 0};
        RowOf(picture, 0)[0] = bits == 1 ? 0x40 : 0x01; // a pixel of colour 1 beside pixels of colour 0
        const int marked = bits == 8 ? 0 : 1;
        const auto colorAt = [&](const IBitmap& shown, int x) {
            GDIBitmap rgb;
            REQUIRE(rgb.CreateBitmap(shown, shown.GetDimension(), 24, IBitmap::BM_Stretch, {1, 1}, 0));
            return rgb.GetPixel(x, 0);
        };
        GDIBitmap resized(picture), cropped(picture), assigned;
        CHECK(resized.Resize({8, 4}));
        CHECK(cropped.Crop({0, 0, 3, 1}));
        CHECK(assigned.AssignBitmap([&] {
            MemoryPicture other;
            const HGLOBAL block = picture.GetDibClone();
            CHECK(other.SetDib(block));
            GlobalFree(block);
            return other;
        }()));
        GDIBitmap copied(picture.GetHandle());
        for (const GDIBitmap* const shown : {&picture, &resized, &cropped, &assigned, &copied}) {
            CAPTURE(shown->GetDimension().cx);
            CHECK(shown->GetBitsPerPixel() == bits);
            CHECK(colorAt(*shown, shown == &resized ? 2 * marked : marked) == 0xFF00FF);
            CHECK(colorAt(*shown, 2 + 2 * (shown == &resized)) == 0x4080C0);
        }
        const GDIBitmap mask = picture.CreateMaskBmp(0xFF00FF);
        CHECK(mask.GetPixel(marked, 0) == 1);
        CHECK(mask.GetPixel(2, 0) == 0);
    }
}

TEST_CASE("a picture of another class is copied, and refused without memory") {
    MemoryPicture other({5, 4}, 24);
    Paint(other);
    GDIBitmap picture = Painted({2, 2}, 32);
    CHECK(picture.AssignBitmap(other));
    CHECK(SamePixels(picture, other));
    GDIBitmap sharing;
    CHECK(sharing.AssignBitmap(picture));
    CHECK(sharing == picture);
    other.deniesMemory = true;
    CHECK_FALSE(picture.AssignBitmap(other));
    CHECK(picture.GetDimension().cx == 5);
    CHECK(picture.GetPixel(1, 1) == 0);
    CHECK_FALSE(sharing.AssignBitmap(MemoryPicture()));
    CHECK(sharing.GetPixel(0, 0) == 0x010203);
}
