#include "Drawing.h"

#include <climits>

namespace {

/// Size, depth and bytes of a row, as text.
std::string Shape(HBITMAP bitmap) {
    BITMAP facts{};
    if (GetObjectA(bitmap, sizeof facts, &facts) == 0)
        return "none";
    return std::to_string(facts.bmWidth) + "x" + std::to_string(facts.bmHeight) + "x" +
           std::to_string(facts.bmBitsPixel) + " row " + std::to_string(facts.bmWidthBytes);
}

static_assert(sizeof(void*) != 4 || (sizeof(BITMAP) == 24 && sizeof(DIBSECTION) == 84));

} // namespace

TEST_CASE("device-dependent bitmaps have the next depth and rows of whole words") {
    constexpr DWORD kEither = ~0u; // short memory or a wrong argument, by the width of addresses
    const std::tuple<int, int, UINT, UINT, DWORD, const char*> rows[] = {
        {5, 3, 1, 1, 0, "5x3x1 row 2"},
        {5, 3, 1, 15, 0, "5x3x16 row 10"},
        {0, 3, 1, 32, 0, "1x1x1 row 2"},
        {-5, -3, 1, 32, 0, "5x3x32 row 20"},
        {5, 3, 1, 33, ERROR_INVALID_PARAMETER, "none"},
        {5, 3, 0, 1, ERROR_INVALID_PARAMETER, "none"},
        {INT_MAX, 1, 1, 1, ERROR_INVALID_PARAMETER, "none"},
        {30000, 30000, 1, 32, kEither, "none"},
    };
    for (const auto& [width, height, planes, bits, error, shape] : rows) {
        CAPTURE(width);
        CAPTURE(bits);
        const Owned bitmap(CreateBitmap(width, height, planes, bits, nullptr));
        if (!bitmap && error != kEither)
            CHECK(GetLastError() == error);
        CHECK(Shape(bitmap) == shape);
    }
}

TEST_CASE("sections take the formats there are") {
    const DWORD kFields = BI_BITFIELDS;
    const std::pair<DibInfo, const char*> rows[] = {
        {{5, 3, 1}, "5x3x1 row 4"},
        {{5, -3, 8}, "5x3x8 row 8"},
        {{5, 3, 24}, "5x3x24 row 16"},
        {DibInfo(5, 3, 16, kFields).Masks(0xF800, 0x07E0, 0x001F), "5x3x16 row 12"},
        {DibInfo(5, -3, 32, kFields).Masks(0xFF0000, 0xFF00, 0xFF), "5x3x32 row 20"},
    };
    for (const auto& [info, shape] : rows) {
        CAPTURE(info.header.biBitCount);
        const Section section(info);
        CHECK((Shape(section.handle) == shape && section.bytes != nullptr));
    }
    DibInfo shortened(5, 3, 24);
    shortened.header.biSize = 20;
    const DibInfo refused[] = {shortened,        {5, 3, 32, kFields},  {5, 3, 24, kFields}, {5, 3, 8, BI_RLE8},
                               {5, 3, 15},       {0, 3, 24},           {5, 0, 24},          {-5, 3, 24},
                               {5, INT_MIN, 24}, {INT_MAX, INT_MAX, 1}};
    for (const DibInfo& info : refused) {
        CAPTURE(&info - refused);
        const Section section(info);
        CHECK((section.handle == nullptr && section.bytes == nullptr));
    }
}

TEST_CASE("a section tells its header, masks and address") {
    DibInfo info(5, -3, 8);
    info.header.biClrUsed = 10;
    const Section indexed(info);
    const DIBSECTION facts = Told<DIBSECTION>(indexed.handle);
    const BITMAPINFOHEADER& told = facts.dsBmih;
    CHECK((facts.dsBm.bmBits == indexed.bytes && told.biHeight == 3)); // in either order of rows
    CHECK((told.biCompression == BI_RGB && told.biSizeImage == 24 && told.biClrUsed == 256));
    const DIBSECTION words = Told<DIBSECTION>(Section(5, 3, 16).handle);
    CHECK((words.dsBmih.biCompression == BI_BITFIELDS && words.dsBitfields[0] == 0x7C00));
    const Section fields(DibInfo(5, 3, 16, BI_BITFIELDS).Masks(0xF800, 0x07E0, 0x001F));
    CHECK(Told<DIBSECTION>(fields.handle).dsBitfields[1] == 0x07E0);
}

TEST_CASE("compatible bitmaps follow the screen, or the bitmap in the context") {
    const auto shapeOf = [](HDC dc, int width, int height) {
        return Shape(Owned(CreateCompatibleBitmap(dc, width, height)));
    };
    const WindowContext screen;
    CHECK((shapeOf(screen, -5, 3) == "5x3x32 row 20" && shapeOf(screen, 0, 3) == "1x1x1 row 2"));
    CHECK((shapeOf(MemoryContext(), 5, 3) == "5x3x1 row 2" && shapeOf(nullptr, 5, 3) == "none"));
    DibInfo info(2, -2, 8);
    info.table[7] = {1, 2, 3, 0};
    const Section section(info);
    const Owned alike(CreateCompatibleBitmap(MemoryContext(section.handle), 5, 3));
    CHECK(Told<DIBSECTION>(alike).dsBm.bmWidthBytes == 8);
    RGBQUAD colour{};
    CHECK((GetDIBColorTable(MemoryContext(alike), 7, 1, &colour) == 1 && colour.rgbRed == 3));
}

TEST_CASE("the colour table of the selected section is read and written") {
    const Section eight(2, 2, 8), four(2, 2, 4), deep(2, 2, 24);
    const MemoryContext memory;
    RGBQUAD colours[300]{};
    colours[0] = {1, 2, 3, 0};
    const std::tuple<HBITMAP, UINT, UINT, UINT> rows[] = {
        {eight.handle, 250, 20, 6}, {eight.handle, 256, 1, 0}, {four.handle, 0, 300, 16}, {deep.handle, 0, 256, 0}};
    CHECK(GetDIBColorTable(memory, 0, 2, colours) == 0);
    for (const auto& [bitmap, start, count, result] : rows) {
        CAPTURE(start);
        const HGDIOBJ before = SelectObject(memory, bitmap);
        colours[0] = {1, 2, 3, 0};
        CHECK(SetDIBColorTable(memory, start, count, colours) == result);
        colours[0] = {};
        CHECK(GetDIBColorTable(memory, start, count, colours) == result);
        CHECK(colours[0].rgbRed == (result != 0 ? 3 : 0));
        SelectObject(memory, before);
    }
}

TEST_CASE("raw bits are rows from the top, padded to words") {
    const BYTE given[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 99, 10, 11, 12, 13, 14, 15, 16, 17, 18, 99};
    BITMAP facts{0, 3, 2, /*not looked at*/ 12, 1, 24, const_cast<BYTE*>(given)};
    const Owned device(CreateBitmap(3, 2, 1, 24, given)), described(CreateBitmapIndirect(&facts));
    const Section section(3, 2, 24);
    CHECK(SetBitmapBits(section.handle, sizeof given, given) == sizeof given);
    CHECK(Hex(section.bytes, 9) == "0a0b0c0d0e0f101112"); // bottom-up
    for (const HBITMAP bitmap : {device.handle, described.handle, section.handle}) {
        BYTE got[32]{};
        CHECK((GetBitmapBits(bitmap, 0, nullptr) == 20 && GetBitmapBits(bitmap, 100, got) == 20));
        CHECK((Hex(got, 9) == "000102030405060708" && Hex(got + 10, 9) == "0a0b0c0d0e0f101112"));
        CHECK(SetBitmapBits(bitmap, static_cast<DWORD>(-3), "\x63\x62\x61") == 3);
        CHECK((GetBitmapBits(bitmap, 4, got) == 4 && Hex(got, 5) == "6362610304"));
    }
    facts.bmType = 7;
    CHECK((CreateBitmapIndirect(&facts) == nullptr && GetBitmapBits(nullptr, 4, nullptr) == 0));
}

TEST_CASE("bitmaps that cannot be made leave nothing") {
    kel::test::WithEachCallFailing(ERROR_NOT_ENOUGH_MEMORY, [] {
        void* bits = &bits;
        const Owned section(CreateDIBSection(nullptr, DibInfo(3, 3, 24), DIB_RGB_COLORS, &bits, nullptr, 0));
        CHECK((bits != nullptr) == (section != nullptr));
        const MemoryContext dc;
        const Owned alike(CreateCompatibleBitmap(dc, 3, 3));
        DibInfo info(3, 3, 24);
        const BYTE pixels[36]{};
        const Owned filled(CreateDIBitmap(dc, &info.header, CBM_INIT, pixels, info, DIB_RGB_COLORS));
        BYTE got[36];
        const int lines = GetDIBits(dc, filled, 0, 3, got, info, DIB_RGB_COLORS);
        CHECK((lines == 3 || *kel::test::FaultedCall() != '\0' || !kel::test::FaultsAvailable()));
    });
}
