#include "tests/bitmap/Pictures.h"
#include "tests/support/AllocationMeter.h"
#include "tests/support/Faults.h"

TEST_CASE("copies share a picture until one of them changes it") {
    for (const int bits : {1, 8, 24, 32}) {
        CAPTURE(bits);
        GDIBitmap first;
        REQUIRE(first.CreateBitmap({5, 3}, bits));
        if (bits <= 8)
            first.LockPaletteModify()[1] = {1, 2, 3, 0};
        GDIBitmap second(first), third;
        third = second;
        third = *&third;
        CHECK((first == second && third == first && first.IsEqual(third)));
        CHECK(first.DetachBitmap() == nullptr);
        RowOf(second, 1)[0] = 0xFF;
        CHECK((second != first && third == first && !second.IsEqual(first)));
        CHECK(BytesOf(first) == std::vector<unsigned char>(BytesOf(second).size(), 0));
        CHECK((bits > 8 || second.LockPalette()[1].rgbRed == 3));
        third.SetEmpty();
        CHECK((third.IsEmpty() && !first.IsEmpty()));
        const HBITMAP bitmap = first.GetHandle();
        CHECK(first.DetachBitmap() == bitmap);
        CHECK((first.IsEmpty() && DeleteObject(bitmap)));
    }
    GDIBitmap empty;
    GDIBitmap copy(empty);
    CHECK((copy == empty && copy.CreateBitmap({1, 1}, 32) && empty.IsEmpty()));
    CHECK_FALSE(empty.IsEqual(MemoryPicture()));
    IBitmap* const clone = copy.GetClone();
    CHECK((copy.IsEqual(*clone) && clone->AddRef() == 2 && clone->Release() == 1 && clone->Release() == 0));
}

TEST_CASE("a copy allocates nothing, and of all changes to it the first alone makes a picture") {
    const GDIBitmap dib = Painted({6, 4}, 24), device = OnDevice(dib);
    for (const GDIBitmap* const original : {&dib, &device}) {
        const std::size_t allocated = AllocatedSoFar();
        GDIBitmap copy(*original), other(copy);
        other = *original;
        const std::size_t allocatedByCopies = AllocatedSoFar() - allocated;
        CHECK(allocatedByCopies == 0);
        const std::size_t handles = kel::test::OpenHandles();
        const HBITMAP own = copy.GetHandle(true);
        CHECK((own != other.GetHandle() && other == *original));
        CHECK((copy.Invert() && copy.ExtClearSurface(1) && copy.LockPaletteModify() && copy.GetHandle(true) == own));
        CHECK(kel::test::OpenHandles() == handles + (kel::test::FaultsAvailable() ? 1 : 0));
    }
}

TEST_CASE("sizes that cannot be leave a picture empty") {
    const std::pair<Size, int> cases[] = {{{0, 10}, 24}, {{10, -1}, 24},    {{0, 10}, 0},          {{kMost, kMost}, 32},
                                          {{1, 1}, 64},  {{1, 1}, 0x10018}, {{0x10000, 0x8000}, 8}};
    for (const auto& [size, bits] : cases) {
        GDIBitmap picture = Painted({2, 2}, 24), system = Painted({2, 2}, 24);
        CHECK_FALSE((picture.CreateBitmap(size, bits) || system.CreateSysBitmap(size, bits)));
        CHECK((picture.IsEmpty() && system.IsEmpty()));
    }
}

TEST_CASE("a picture in the display's own format has no memory until it is converted") {
    const GDIBitmap painted = Painted({6, 4}, 32);
    GDIBitmap picture = OnDevice(painted);
    CHECK((!picture.IsEmpty() && picture.GetBitsPerPixel() == 0 && picture.LockSurface() == nullptr));
    CHECK_FALSE(picture.ClearSurface(0));
    const HGLOBAL block = picture.GetDibClone();
    MemoryPicture cloned;
    REQUIRE(cloned.SetDib(block));
    CheckPixels(cloned, PixelsOf(painted));
    GlobalFree(block);

    GDIBitmap changed(picture);
    CHECK((changed.ExtClearSurface(0x00FF00) && changed.LockSurface() == nullptr && changed.ConvertSysBitmap2DIB()));
    CheckPixels(changed, [](int, int) { return 0x00FF00UL; });
    CHECK((picture.ConvertSysBitmap2DIB() && picture.ConvertSysBitmap2DIB()));
    CHECK(picture.GetBitsPerPixel() == cloned.GetBitsPerPixel());
    CheckPixels(picture, PixelsOf(painted));
    CHECK(GDIBitmap().ConvertSysBitmap2DIB());
}

TEST_CASE("bitmaps of others are copied, attached and given away") {
    const GDIBitmap painted = Painted({6, 4}, 32);
    const HBITMAP foreign = OnDevice(painted).DetachBitmap();
    CheckPixels(GDIBitmap(foreign), PixelsOf(painted));
    const GDIBitmap part(foreign, {2, 1, 99, 3});
    CHECK((part.GetDimension().cx == 4 && part.GetDimension().cy == 2));
    CheckPixels(part, [&](int x, int y) { return painted.GetPixel(x + 2, y + 1); });
    CHECK(GDIBitmap(foreign, {7, 0, 9, 9}).IsEmpty());

    GDIBitmap picture;
    picture.AttachBitmap(foreign);
    CHECK((picture.GetHandle() == foreign && picture.LockSurface() == nullptr));
    CHECK(picture.GetBitsPerPixel() == GDIBitmap(foreign).GetBitsPerPixel());
    GDIBitmap copy(picture);
    CHECK(copy.GetHandle(true) != foreign);
    CheckPixels(copy, PixelsOf(painted));
    CHECK((picture.Invert() && picture.ConvertSysBitmap2DIB()));
    CheckPixels(picture, [&](int x, int y) { return painted.GetPixel(x, y) ^ 0xFFFFFF; });
    picture.AttachBitmap(nullptr);
    CHECK((picture.IsEmpty() && picture.GetHandle(true) == nullptr));
}

TEST_CASE("pictures of depth 8 and less keep their colours on every road") {
    for (const int bits : {1, 4, 8}) {
        CAPTURE(bits);
        GDIBitmap picture;
        REQUIRE(picture.CreateBitmap({4, 2}, bits));
        picture.LockPaletteModify()[0] = {0x40, 0x80, 0xC0, 0};
        picture.LockPaletteModify()[1] = {0xFF, 0x00, 0xFF, 0};
        std::memcpy(RowOf(picture, 0), bits == 1 ? "\x40\0" : bits == 4 ? "\x01\0" : "\0\x01", 2); // pixel 1
        GDIBitmap resized(picture), cropped(picture), assigned, copied(picture.GetHandle());
        const HGLOBAL block = picture.GetDibClone();
        MemoryPicture other;
        CHECK((resized.Resize({8, 4}) && cropped.Crop({0, 0, 3, 1})));
        CHECK((other.SetDib(block) && assigned.AssignBitmap(other)));
        GlobalFree(block);
        for (const GDIBitmap* const shown : {&picture, &resized, &cropped, &assigned, &copied}) {
            CHECK(shown->GetBitsPerPixel() == bits);
            const int factor = shown == &resized ? 2 : 1;
            CheckPixels(InColours(*shown),
                        [&](int x, int y) { return x / factor == 1 && y / factor == 0 ? 0xFF00FFUL : 0x4080C0UL; });
        }
        CheckPixels(picture.CreateMaskBmp(0xFF00FF), [](int x, int y) { return x == 1 && y == 0 ? 1UL : 0UL; });
    }
}

TEST_CASE("a picture of another class is copied, and refused without memory") {
    auto other = Painted<MemoryPicture>({5, 4}, 24);
    GDIBitmap picture = Painted({2, 2}, 32), sharing;
    CHECK(picture.AssignBitmap(other));
    CheckPixels(picture, PixelsOf(other));
    CHECK((sharing.AssignBitmap(picture) && sharing == picture));
    other.deniesMemory = true;
    CHECK_FALSE(picture.AssignBitmap(other));
    CheckPixels(picture, [](int, int) { return 0UL; });
    CHECK_FALSE(sharing.AssignBitmap(MemoryPicture()));
    CHECK(sharing.GetPixel(0, 0) == 0x010203);
}
