#include "tests/bitmap/MemoryPicture.h"

#include <doctest/doctest.h>

#include <random>

namespace {

// The place of a virtual member in its object's first table.
template <class Member>
std::size_t SlotOf(Member member) {
    std::ptrdiff_t offset = 0;
    std::memcpy(&offset, &member, sizeof offset);
    return static_cast<std::size_t>(offset - 1) / sizeof(void*);
}

struct Slots : GDIBitmap {
    static std::size_t OfDetach() { return SlotOf(&Slots::Detach); }
};

constexpr unsigned long kNoPixel = 0xFFFFFFFF;

} // namespace

TEST_CASE("the virtual members stand in their documented order") {
    using Mode = IBitmap::BM_Mode;
    using Scale = XSize<double>;
    using DrawByMode = bool (IBitmap::*)(HDC, const Rect&, Mode, Scale) const;
    using DrawPart = bool (IBitmap::*)(HDC, const Rect&, const Rect&, unsigned long) const;
    using TransparentByMode = bool (GDIBitmap::*)(HDC, const Rect&, unsigned long, Mode, Scale) const;
    using TransparentPart = bool (GDIBitmap::*)(HDC, const Rect&, const Rect&, unsigned long) const;
    using AlphaByMode = bool (GDIBitmap::*)(HDC, const Rect&, double, bool, Mode, Scale) const;
    using AlphaPart = bool (GDIBitmap::*)(HDC, const Rect&, const Rect&, double, bool) const;
    const std::size_t slots[] = {// behind the three of IUnknown
                                 SlotOf(&IBitmapData::GetWidth),
                                 SlotOf(&IBitmapData::GetHeight),
                                 SlotOf(&IBitmapData::GetBitsPerPixel),
                                 SlotOf(&IBitmapData::GetScanlineSize),
                                 SlotOf(&IBitmapData::GetBitmapInfo),
                                 SlotOf(&IBitmapData::GetBitmapBits),
                                 SlotOf(&IBitmap::GetClone),
                                 SlotOf(DrawByMode(&IBitmap::Draw)),
                                 SlotOf(DrawPart(&IBitmap::Draw)),
                                 SlotOf(&IBitmap::SetEmpty),
                                 SlotOf(&IBitmap::IsEmpty),
                                 SlotOf(&IBitmap::GetDibClone),
                                 SlotOf<bool (IBitmap::*)(void*, int)>(&IBitmap::SetDib),
                                 SlotOf<bool (IBitmap::*)(void*)>(&IBitmap::SetDib),
                                 SlotOf(&IBitmap::CreateBitmap),
                                 SlotOf(&IBitmap::IsEqual),
                                 SlotOf(&IBitmap::AssignBitmap),
                                 SlotOf(&IBitmap::CombineBitmap),
                                 SlotOf(&IBitmap::AlphaShadeBitmap),
                                 SlotOf(&IBitmap::ClearSurface),
                                 SlotOf(&IBitmap::GetDimension),
                                 SlotOf(&IBitmap::GetPixel),
                                 SlotOf(&IBitmap::ContainsColor),
                                 SlotOf(&IBitmap::Resize),
                                 SlotOf(&IBitmap::Prescale),
                                 SlotOf(&IBitmap::LockSurface),
                                 SlotOf(&IBitmap::LockSurfaceModify),
                                 SlotOf(&IBitmap::UnlockSurface),
                                 SlotOf(&IBitmap::HasPalette),
                                 SlotOf(&IBitmap::GetNumPaletteEntries),
                                 SlotOf(&IBitmap::LockPalette),
                                 SlotOf(&IBitmap::LockPaletteModify),
                                 SlotOf(&IBitmap::UnlockPalette),
                                 Slots::OfDetach(),
                                 SlotOf(TransparentByMode(&GDIBitmap::TransparentDraw)),
                                 SlotOf(TransparentPart(&GDIBitmap::TransparentDraw)),
                                 SlotOf(AlphaByMode(&GDIBitmap::AlphaDraw)),
                                 SlotOf(AlphaPart(&GDIBitmap::AlphaDraw))};
    for (std::size_t i = 0; i < std::size(slots); ++i)
        CHECK(slots[i] == i + 3);
}

TEST_CASE("rows, colour tables and colours are measured as documented") {
    const int widths[][2] = {{1, 4}, {24, 4}, {32, 4}, {33, 8}, {0, 0}, {-1, 0}, {-64, -4}};
    for (const auto& row : widths)
        CHECK(MemoryPicture::WidthBytes(row[0]) == row[1]);
    const int rows[][3] = {{3, 24, 12}, {5, 24, 16}, {9, 1, 4}, {2, 8, 4}, {3, 16, 8}, {3, 4, 4}};
    for (const auto& row : rows)
        CHECK(MemoryPicture({row[0], 1}, row[1]).GetScanlineSize() == row[2]);
    const int tables[][3] = {{8, 0, 1024}, {8, 10, 40}, {24, 0, 0}, {24, 3, 12}, {1, 0, 8}, {4, 0, 64}, {16, 0, 0}};
    for (const auto& row : tables) {
        BITMAPINFOHEADER header = {};
        header.biBitCount = static_cast<WORD>(row[0]);
        header.biClrUsed = static_cast<DWORD>(row[1]);
        CHECK(MemoryPicture().CalculateTableSize(&header) == row[2]);
    }
    CHECK(BitmapBase::DibRGB(0xFF112233) == 0x332211);
    CHECK(MemoryPicture().GetScanlineSize() == 0);
    CHECK(MemoryPicture().GetBitmapInfo() == nullptr);
    CHECK(MemoryPicture().GetBitmapBits() == nullptr);
}

TEST_CASE("pixels and colours are found at every depth that has them") {
    for (const int bits : {1, 4, 8, 16, 24, 32}) {
        CAPTURE(bits);
        MemoryPicture picture({11, 3}, bits);
        const bool hasColors = bits >= 24;
        RowOf(picture, 2)[0] = 0x10;
        RowOf(picture, 2)[1] = 0x20;
        RowOf(picture, 2)[2] = 0x30;
        CHECK(picture.GetPixel(0, 2) == (hasColors ? 0x102030 : bits == 1 ? 0 : kNoPixel));
        CHECK(picture.GetPixel(3, 2) == (hasColors ? 0 : bits == 1 ? 1 : kNoPixel));
        for (const auto& outside : {Size(-1, 0), Size(11, 0), Size(0, -1), Size(0, 3)})
            CHECK(picture.GetPixel(outside.cx, outside.cy) == kNoPixel);
        if (hasColors) {
            SetPixelOf(picture, 10, 0, 0x00ABCDEF);
            CHECK(picture.GetPixel(10, 0) == 0xABCDEF);
        }
        CHECK(picture.ContainsColor(0xFFABCDEF) == hasColors);
        CHECK_FALSE(picture.ContainsColor(0xEFCDAB));
        picture.deniesMemory = true;
        CHECK(picture.GetPixel(10, 0) == kNoPixel);
        CHECK_FALSE(picture.ContainsColor(0xABCDEF));
    }
}

TEST_CASE("shading follows its formula inside the clip, with and without a mask") {
    std::mt19937 random(4);
    const struct {
        Rect area;
        unsigned long tint;
        int alpha;
        bool masked;
    } cases[] = {
        {{0, 0, 21, 5}, 0xFFFFFF, 128, false}, {{-9, -9, 99, 99}, 0x123456, 200, false},
        {{3, 1, 8, 4}, 0xFF, 1, false},        {{50, 0, 60, 5}, 0xFF, 255, false},
        {{11, 1, 21, 4}, 0x80FF00, 64, true},  {{3, 0, 17, 5}, 0x1F, 255, true},
        {{0, 0, 21, 5}, 0x4080C0, 77, true},   {{0, 0, 0, 0}, 0xFF, 9, true},
    };
    for (const auto& row : cases) {
        CAPTURE(row.alpha);
        MemoryPicture picture({21, 5}, 32);
        MemoryPicture mask({21, 5}, 1);
        for (int y = 0; y < 5; ++y) {
            for (int x = 0; x < 84; ++x)
                RowOf(picture, y)[x] = static_cast<unsigned char>(random());
            for (int x = 0; x < 21; ++x)
                SetPixelOf(mask, x, y, random() & 1);
        }
        MemoryPicture shaded(picture);
        REQUIRE(shaded.AlphaShadeBitmap(row.area, row.tint, static_cast<unsigned char>(row.alpha),
                                        row.masked ? &mask : nullptr));
        const int left = row.masked ? row.area.left & ~7 : row.area.left;
        for (int i = 0; i < 21 * 5 * 4; ++i) {
            const int x = i / 4 % 21;
            const int y = i / 84;
            const int channel = i % 4;
            int expected = RowOf(picture, y)[i % 84];
            const bool inside = x >= left && x < row.area.right && y >= row.area.top && y < row.area.bottom;
            if (inside && (!row.masked || mask.GetPixel(x, y) == 1)) {
                const int tint = static_cast<int>(row.tint >> (channel < 3 ? 16 - 8 * channel : 0) & 0xFF);
                if (channel < 3)
                    expected = (row.alpha * 256 / 255 * tint + expected * (256 - row.alpha)) >> 8;
                else if (!row.masked)
                    expected = 0;
            }
            REQUIRE(static_cast<int>(RowOf(shaded, y)[i % 84]) == expected);
        }
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
    mask.deniesMemory = true;
    CHECK_FALSE(wide.AlphaShadeBitmap(area, 1, 1, &mask));
    CHECK_FALSE(indexed.Combine1BitTo8Bit(mask, 0, true));
    rgb.deniesMemory = true;
    CHECK_FALSE(rgb.CombineBitmap(MemoryPicture({21, 5}, 24), 0));
    for (MemoryPicture* const picture : {&wide, &indexed})
        CHECK(BytesOf(*picture) == std::vector<unsigned char>(BytesOf(*picture).size(), 0));
}

TEST_CASE("bit planes gather in one picture of depth 8") {
    MemoryPicture planes({11, 2}, 8), mask({11, 2}, 1);
    SetPixelOf(mask, 10, 1, 1);
    CHECK(planes.Combine1BitTo8Bit(mask, 3, false));
    CHECK(planes.Combine1BitTo8Bit(mask, 7, true));
    for (int i = 0; i < 22; ++i)
        CHECK(static_cast<int>(RowOf(planes, i / 11)[i % 11]) == (i == 21 ? 8 : 128));
}

TEST_CASE_TEMPLATE("combining replaces the key's pixels alone", Picture, MemoryPicture, GDIBitmap) {
    for (const int bits : {24, 32}) {
        for (const bool sameSize : {true, false}) {
            CAPTURE(bits);
            CAPTURE(sameSize);
            Picture picture;
            REQUIRE(picture.CreateBitmap({7, 5}, bits));
            Paint(picture);
            for (const Size& at : {Size(0, 0), Size(3, 2), Size(6, 4)})
                SetPixelOf(picture, at.cx, at.cy, 0xFF00FF);
            MemoryPicture other(sameSize ? Size(7, 5) : Size(3, 3), sameSize ? bits : 24);
            Paint(other, 0x500000);
            Picture combined(picture);
            REQUIRE(combined.CombineBitmap(other, 0xFF00FF));
            for (int i = 0; i < 35; ++i) {
                const int x = i % 7, y = i / 7;
                const unsigned long before = picture.GetPixel(x, y);
                const bool covered = sameSize || (x >= 2 && x < 5 && y >= 1 && y < 4);
                const unsigned long placed = !covered   ? 0
                                             : sameSize ? other.GetPixel(x, y)
                                                        : other.GetPixel(x - 2, y - 1);
                CHECK(combined.GetPixel(x, y) == (before == 0xFF00FF ? placed : before));
            }
        }
    }
}
