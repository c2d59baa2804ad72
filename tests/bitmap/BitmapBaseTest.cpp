#include "tests/bitmap/Pictures.h"

namespace {

// The place of a virtual member in its object's first table, behind the three of IUnknown.
template <class Member>
std::ptrdiff_t SlotOf(Member member) {
    std::ptrdiff_t offset = 0;
    std::memcpy(&offset, &member, sizeof offset);
    return (offset - 1) / static_cast<std::ptrdiff_t>(sizeof(void*)) - 3;
}

struct Slots : GDIBitmap {
    static std::ptrdiff_t OfDetach() { return SlotOf(&Slots::Detach); }
};

constexpr unsigned long kNoPixel = 0xFFFFFFFF;

} // namespace

TEST_CASE("the virtual members stand in their documented order") {
    using Mode = IBitmap::BM_Mode;
    using Scale = XSize<double>;
    CHECK((SlotOf(&IBitmapData::GetWidth) == 0 && SlotOf(&IBitmapData::GetBitmapBits) == 5));
    CHECK(SlotOf(&IBitmap::GetClone) == 6);
    CHECK(SlotOf<bool (IBitmap::*)(HDC, const Rect&, Mode, Scale) const>(&IBitmap::Draw) == 7);
    CHECK(SlotOf<bool (IBitmap::*)(HDC, const Rect&, const Rect&, unsigned long) const>(&IBitmap::Draw) == 8);
    CHECK(SlotOf<bool (IBitmap::*)(void*, int)>(&IBitmap::SetDib) == 12);
    CHECK((SlotOf(&IBitmap::GetPixel) == 21 && SlotOf(&IBitmap::UnlockPalette) == 32));
    CHECK(Slots::OfDetach() == 33);
    CHECK(SlotOf<bool (GDIBitmap::*)(HDC, const Rect&, const Rect&, double, bool) const>(&GDIBitmap::AlphaDraw) == 37);
}

TEST_CASE("rows end at whole numbers of four bytes") {
    for (const auto& [bits, bytes] : {std::pair(1, 4), {24, 4}, {32, 4}, {33, 8}, {0, 0}, {-1, 0}, {-64, -4}})
        CHECK(MemoryPicture::WidthBytes(bits) == bytes);
    CHECK(MemoryPicture().GetScanlineSize() == 0);
}

TEST_CASE("pixels and colours are found at every depth that has them") {
    for (const int bits : {1, 4, 8, 16, 24, 32}) {
        CAPTURE(bits);
        MemoryPicture picture({11, 3}, bits);
        const bool hasColors = bits >= 24;
        std::memcpy(RowOf(picture, 2), "\x10\x20\x30", 3);
        CHECK(picture.GetPixel(0, 2) == (hasColors ? 0x102030 : bits == 1 ? 0 : kNoPixel));
        CHECK(picture.GetPixel(3, 2) == (hasColors ? 0 : bits == 1 ? 1 : kNoPixel));
        for (const auto& outside : {Size(-1, 0), Size(11, 0), Size(0, -1), Size(0, 3)})
            CHECK(picture.GetPixel(outside.cx, outside.cy) == kNoPixel);
        std::memcpy(RowOf(picture, 0) + (hasColors ? 10 * bits / 8 : 0), "\xAB\xCD\xEF", 3);
        CHECK(picture.ContainsColor(0xFFABCDEF) == hasColors);
        CHECK_FALSE(picture.ContainsColor(0xEFCDAB));
        picture.deniesMemory = true;
        CHECK(picture.GetPixel(10, 0) == kNoPixel);
        CHECK_FALSE(picture.ContainsColor(0xABCDEF));
    }
}

TEST_CASE("shading tints the clipped area, with a mask from a multiple of 8 on") {
    const std::pair<Rect, bool> cases[] = {{{-9, -9, 99, 99}, false}, {{3, 1, 8, 4}, false}, {{50, 0, 60, 5}, false},
                                           {{11, 1, 20, 4}, true},    {{3, 0, 17, 5}, true}, {{0, 0, 0, 0}, true}};
    for (const auto& [area, masked] : cases) {
        CAPTURE(area.left);
        MemoryPicture shaded({21, 5}, 32), mask({21, 5}, 1);
        for (int y = 0; y < 5; ++y)
            std::memcpy(RowOf(mask, y), "\xA5\xFF\x0F", 3);
        REQUIRE(shaded.AlphaShadeBitmap(area, 0x4080FF, 64, masked ? &mask : nullptr));
        const int left = masked ? area.left & ~7 : area.left;
        CheckPixels(shaded, [&](int x, int y) {
            const bool inside = x >= left && x < area.right && y >= area.top && y < area.bottom;
            return inside && (!masked || mask.GetPixel(x, y) == 1) ? 0x10203FUL : 0UL;
        });
    }
}

TEST_CASE("shading, combining and bit planes refuse what does not fit") {
    MemoryPicture wide({21, 5}, 32), rgb({21, 5}, 24), indexed({21, 5}, 8), mask({21, 5}, 1), small({20, 5}, 1);
    const Rect area(0, 0, 9, 9);
    CHECK(MemoryPicture().AlphaShadeBitmap(area, 1, 0, &indexed));
    CHECK_FALSE(MemoryPicture().AlphaShadeBitmap(area, 1, 1, nullptr));
    CHECK_FALSE(rgb.AlphaShadeBitmap(area, 1, 1, nullptr));
    for (MemoryPicture* const unfit : {&small, &indexed})
        CHECK_FALSE(wide.AlphaShadeBitmap(area, 1, 1, unfit));
    CHECK_FALSE(indexed.CombineBitmap(indexed, 0));
    CHECK_FALSE(rgb.Combine1BitTo8Bit(mask, 0, false));
    CHECK_FALSE(indexed.Combine1BitTo8Bit(small, 0, false));
    for (const int bit : {-1, 8})
        CHECK_FALSE(indexed.Combine1BitTo8Bit(mask, bit, true));
    mask.deniesMemory = rgb.deniesMemory = true;
    CHECK_FALSE(wide.AlphaShadeBitmap(area, 1, 1, &mask));
    CHECK_FALSE(indexed.Combine1BitTo8Bit(mask, 0, true));
    CHECK_FALSE(rgb.CombineBitmap(MemoryPicture({21, 5}, 24), 0));
    for (MemoryPicture* const picture : {&wide, &indexed})
        CHECK(BytesOf(*picture) == std::vector<unsigned char>(BytesOf(*picture).size(), 0));
}

TEST_CASE("a picture that throws leaves the other one unlocked") {
    struct Counting : MemoryPicture {
        using MemoryPicture::MemoryPicture;
        const void* LockSurface() const override { return throws ? throw 1 : (++locks, MemoryPicture::LockSurface()); }
        void* LockSurfaceModify() override { return const_cast<void*>(LockSurface()); }
        void UnlockSurface() const override {
            --locks;
            if (throwsLate)
                throw 1;
        }
        mutable int locks = 0;
        bool throws = false, throwsLate = false;
    };
    Counting wide({5, 5}, 32), other({5, 5}, 32), indexed({5, 5}, 8), mask({5, 5}, 1);
    const Rect all(0, 0, 9, 9);
    CHECK((wide.AlphaShadeBitmap(all, 1, 1, &mask) && indexed.Combine1BitTo8Bit(mask, 0, false)));
    CHECK(wide.CombineBitmap(other, 0));
    mask.throws = true;
    CHECK_THROWS(wide.AlphaShadeBitmap(all, 1, 1, &mask));
    mask.throws = false;
    mask.throwsLate = other.throwsLate = true;
    CHECK_THROWS(wide.AlphaShadeBitmap(all, 1, 1, &mask));
    CHECK_THROWS(wide.CombineBitmap(other, 0));
    indexed.throws = wide.throws = true;
    CHECK_THROWS(indexed.Combine1BitTo8Bit(mask, 0, false));
    CHECK_THROWS(wide.CombineBitmap(other, 0));
    for (const Counting* const picture : {&wide, &other, &indexed, &mask})
        CHECK(picture->locks == 0);
}

TEST_CASE("bit planes gather in one picture of depth 8") {
    MemoryPicture planes({11, 2}, 8), mask({11, 2}, 1);
    RowOf(mask, 1)[1] = 0x20; // the last pixel
    CHECK((planes.Combine1BitTo8Bit(mask, 3, false) && planes.Combine1BitTo8Bit(mask, 7, true)));
    for (int i = 0; i < 22; ++i)
        CHECK(int{RowOf(planes, i / 11)[i % 11]} == (i == 21 ? 8 : 128));
}

TEST_CASE_TEMPLATE("combining replaces the key's pixels alone", Picture, MemoryPicture, GDIBitmap) {
    for (const int bits : {24, 32}) {
        for (const bool sameSize : {true, false}) {
            auto picture = Painted<Picture>({7, 5}, bits);
            for (const Size& at : {Size(0, 0), Size(3, 2), Size(6, 4)})
                SetPixelOf(picture, at.cx, at.cy, 0xFF00FF);
            const auto other = Painted<MemoryPicture>(sameSize ? Size(7, 5) : Size(3, 3), sameSize ? bits : 24, 99);
            Picture combined(picture);
            REQUIRE(combined.CombineBitmap(other, 0xFF00FF));
            CheckPixels(combined, [&](int x, int y) {
                const unsigned long was = picture.GetPixel(x, y);
                const unsigned long placed = sameSize ? other.GetPixel(x, y) : other.GetPixel(x - 2, y - 1);
                return was != 0xFF00FF ? was : placed == kNoPixel ? 0 : placed;
            });
        }
    }
}
