#include "Drawing.h"

namespace {

constexpr int kHeight = 6;
constexpr std::size_t kRowBytes = 12; // of 4 pixels of 24 bits

/// The first byte of each of @p count rows.
std::string FirstBytes(const BYTE* bytes, int count) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += (i == 0 ? "" : " ") + Hex(bytes + static_cast<std::size_t>(i) * kRowBytes, 1);
    return text;
}

/// Converts one row: what @p pixels of the DIB @p from become in @p to.
std::string Converted(DibInfo from, const char* pixels, DibInfo to, std::size_t count) {
    const MemoryContext memory;
    const Section target(to);
    std::memset(target.bytes, 0, count);
    CHECK(SetDIBits(memory, target.handle, 0, 1, pixels, from, DIB_RGB_COLORS) == 1);
    return Hex(target.bytes, count);
}

DibInfo Table(int bits, std::initializer_list<COLORREF> colours) {
    DibInfo info(8, 1, bits);
    RGBQUAD* entry = info.table;
    for (const COLORREF colour : colours)
        *entry++ = {GetBValue(colour), GetGValue(colour), GetRValue(colour), 0};
    return info;
}

} // namespace

TEST_CASE("rows are fetched and stored by their number from the bottom") {
    BYTE given[30 * kRowBytes]{};
    for (std::size_t i = 0; i < 30; ++i)
        given[i * kRowBytes] = static_cast<BYTE>(i + 1);
    const Section numbered(4, kHeight, 24);
    std::memcpy(numbered.bytes, given, kHeight * kRowBytes);
    const MemoryContext memory;
    const struct {
        UINT start, lines;
        int height, got;
        const char* fetched; // ee: untouched
        int set;
        const char* stored;
    } rows[] = {
        {0, 100, 6, 6, "01 02 03 04 05 06 ee", 6, "01 02 03 04 05 06"},
        {2, 3, 6, 3, "03 04 05 ee ee ee ee", 3, "ee ee 01 02 03 ee"},
        {6, 1, 6, 1, "ee ee ee ee ee ee ee", 0, "ee ee ee ee ee ee"},
        {2, 3, -6, 3, "05 04 03 ee ee ee ee", 3, "ee ee 03 02 01 ee"},
        {4, 6, -6, 2, "06 05 ee ee ee ee ee", 6, "ee ee ee ee 06 05"},
        {1, 6, 3, 2, "05 06 ee ee ee ee ee", 2, "ee ee ee ee 01 02"},
        {0, 6, -3, 3, "06 05 04 ee ee ee ee", 6, "ee ee ee ee ee ee"},
        {2, 6, 10, 4, "00 00 01 02 03 04 ee", 6, "03 04 05 06 ee ee"},
    };
    for (const auto& [start, lines, height, got, fetched, set, stored] : rows) {
        INFO(start, " ", lines, " ", height);
        BYTE room[12 * kRowBytes];
        std::memset(room, 0xEE, sizeof room);
        DibInfo info(4, height, 24);
        CHECK(GetDIBits(memory, numbered.handle, start, lines, room, info, DIB_RGB_COLORS) == got);
        CHECK(FirstBytes(room, 7) == fetched);
        const Section target(4, kHeight, 24);
        std::memset(target.bytes, 0xEE, kHeight * kRowBytes);
        CHECK(SetDIBits(memory, target.handle, start, lines, given, DibInfo(4, height, 24), DIB_RGB_COLORS) == set);
        CHECK(FirstBytes(target.bytes, kHeight) == stored);
    }
    CHECK(SetDIBits(memory, numbered.handle, 0, 1, given, DibInfo(-4, 6, 24), DIB_RGB_COLORS) == 0);
}

TEST_CASE("rows of other widths are cut, or filled with zeros") {
    const Section section(4, 1, 24);
    std::memcpy(section.bytes, "\x01\x02\x03\x04\x05\x06\x07\x08\x09\x0a\x0b\x0c", 12);
    const MemoryContext memory;
    BYTE got[24];
    std::memset(got, 0xEE, sizeof got);
    CHECK(GetDIBits(memory, section.handle, 0, 1, got, DibInfo(5, 1, 24), DIB_RGB_COLORS) == 1);
    CHECK(Hex(got, 17) == "0102030405060708090a0b0c00000000ee");
    CHECK(SetDIBits(memory, section.handle, 0, 1, "\x21\x22\x23\x24\x25\x26\x27\x28", DibInfo(2, 1, 24),
                    DIB_RGB_COLORS) == 1);
    CHECK(Hex(section.bytes, 12) == "2122232425260708090a0b0c");
    // A bit beside the last whole byte of a row stays as it was.
    const Section bits(Table(1, {0, RGB(255, 255, 255)}));
    bits.bytes[0] = 0xFF;
    DibInfo narrow = Table(1, {0, RGB(255, 255, 255)});
    narrow.header.biWidth = 5;
    CHECK(SetDIBits(memory, bits.handle, 0, 1, "\x50\0\0", narrow, DIB_RGB_COLORS) == 1);
    CHECK(Hex(bits.bytes, 1) == "57");
}

TEST_CASE("colours are matched from depth to depth") {
    const DWORD kFields = BI_BITFIELDS;
    const DibInfo mono = Table(1, {RGB(0, 0, 0), RGB(255, 255, 255)});
    const DibInfo four = Table(4, {RGB(0, 0, 0), RGB(255, 0, 0), RGB(0, 255, 0), RGB(0, 0, 255), RGB(255, 255, 255)});
    DibInfo two = Table(8, {RGB(1, 2, 3), RGB(4, 5, 6)});
    two.header.biClrUsed = 2;
    const DibInfo deep(4, 1, 24);
    const DibInfo word(4, 1, 16);
    const DibInfo word565 = DibInfo(4, 1, 16, kFields).Masks(0xF800, 0x07E0, 0x001F);
    const DibInfo quad(2, 1, 32);
    CHECK(Converted(two, "\0\x01\x02\xc8", deep, 12) == "030201060504000000000000"); // beyond the table: black
    CHECK(Converted(word, "\x21\x04\xff\x7f\x10\x42\x00\x40", deep, 12) == "080808ffffff848484000084");
    CHECK(Converted(word565, "\x21\x04\xff\x7f\x10\x42\x00\x40", deep, 12) == "088600ffff7b844142000042");
    CHECK(Converted(deep, "\x07\x08\x09\x0f\x10\x04\xff\xfe\xfd\xfc\xfb\x03", word, 8) == "20044100ff7fff03");
    CHECK(Converted(quad, "\x01\x02\x03\x04\x05\x06\x07\x08", quad, 8) == "0102030405060708"); // the fourth byte, too
    CHECK(Converted(deep, "\x01\x02\x03\x04\x05\x06\0\0\0\0\0", DibInfo(4, 1, 32), 8) == "0102030004050600");
    CHECK(Converted(deep, "\0\0\0\xff\xff\xff\x7f\x7f\x7f\x80\x80\x80", mono, 1) == "50");
    CHECK(Converted(deep, "\0\0\xf0\0\xf0\0\xf0\0\0\xff\xff\xf0", four, 2) == "1234");
    CHECK(Converted(mono, "\x5a\0\0", Table(1, {RGB(255, 255, 255), RGB(0, 0, 0)}), 1) == "a5");
}

TEST_CASE("device-dependent monochrome bitmaps are black and white, whatever the context's colours") {
    const MemoryContext memory;
    SetTextColor(memory, RGB(255, 0, 0));
    SetBkColor(memory, RGB(0, 255, 0));
    const Owned bitmap(CreateBitmap(4, 1, 1, 1, nullptr));
    const char given[] = "\0\0\0\xff\xff\xff\0\0\xff\xff\xff\0";
    CHECK(SetDIBits(memory, bitmap, 0, 1, given, DibInfo(4, 1, 24), DIB_RGB_COLORS) == 1);
    BYTE got[12];
    CHECK((GetBitmapBits(bitmap, 2, got) == 2 && got[0] == 0x50));
    CHECK(GetDIBits(memory, bitmap, 0, 1, got, DibInfo(4, 1, 24), DIB_RGB_COLORS) == 1);
    CHECK(Hex(got, 12) == "000000ffffff000000ffffff");
}

TEST_CASE("a query tells the header, another one the colour table") {
    const MemoryContext memory;
    for (const int bits : {1, 4, 8, 16, 24, 32}) {
        CAPTURE(bits);
        const Owned bitmap(CreateBitmap(5, 3, 1, static_cast<UINT>(bits), nullptr));
        DibInfo info(0, 0, 0);
        std::memset(&info.header.biWidth, 0xCC, sizeof info - sizeof info.header.biSize);
        info.header.biBitCount = 0;
        CHECK(GetDIBits(memory, bitmap, 0, 0, nullptr, info, DIB_RGB_COLORS) == 3);
        CHECK((info.header.biWidth == 5 && info.header.biHeight == 3 && info.header.biBitCount == bits));
        CHECK(info.header.biCompression == (bits == 16 || bits == 32 ? BI_BITFIELDS : BI_RGB));
        CHECK(info.header.biSizeImage == static_cast<DWORD>((5 * bits + 31) / 32 * 4 * 3));
        CHECK(info.table[0].rgbRed == 0xCC);
    }
    const Section section(Table(8, {RGB(9, 8, 7)}));
    const Owned device(CreateBitmap(5, 3, 1, 32, nullptr));
    const std::tuple<HBITMAP, int, int, COLORREF> rows[] = {
        {section.handle, 8, 0, RGB(9, 8, 7)},       {section.handle, 4, 1, RGB(128, 0, 0)},
        {device.handle, 1, 1, RGB(255, 255, 255)},  {device.handle, 4, 7, RGB(128, 128, 128)},
        {device.handle, 8, 7, RGB(192, 192, 192)},  {device.handle, 8, 245, RGB(160, 192, 192)},
        {device.handle, 8, 246, RGB(255, 251, 240)}};
    for (const auto& [bitmap, bits, index, colour] : rows) {
        CAPTURE(bits);
        CAPTURE(index);
        DibInfo info(7, 9, bits);
        CHECK(GetDIBits(memory, bitmap, 0, 3, nullptr, info, DIB_RGB_COLORS) == 1);
        CHECK(info.Colour(index) == colour);
        CHECK(info.header.biSizeImage == static_cast<DWORD>((7 * bits + 31) / 32 * 4 * 9));
    }
    DibInfo masks(5, 3, 32, BI_BITFIELDS);
    CHECK(GetDIBits(memory, device, 0, 0, nullptr, masks, DIB_RGB_COLORS) == 1);
    CHECK(Hex(masks.table, 12) == "0000ff0000ff0000ff000000");
    // Palette indices: 0, 1, 2 … into the palette of the context, which begins again after its last entry.
    DibInfo indices(4, 1, 8);
    CHECK(GetDIBits(memory, device, 0, 1, nullptr, indices, DIB_PAL_COLORS) == 1);
    CHECK(Hex(indices.table, 6) == "000001000200");
    const Section colours(4, 1, 24);
    CHECK(SetDIBits(memory, colours.handle, 0, 1, "\x01\x07\x13\x19", indices, DIB_PAL_COLORS) == 1);
    CHECK(Hex(colours.bytes, 12) == "000080c0c0c0ffffff800080");
}

TEST_CASE("transfers refuse what is no DIB") {
    const MemoryContext memory;
    const Section section(2, 2, 24);
    BYTE room[64]{};
    const auto get = [&](HDC dc, HBITMAP bitmap, DibInfo info) {
        return GetDIBits(dc, bitmap, 0, 2, room, info, DIB_RGB_COLORS);
    };
    DibInfo planes(2, 2, 24);
    planes.header.biPlanes = 0;
    DibInfo longer(2, 2, 24);
    longer.header.biSize = 41;
    CHECK((get(memory, section.handle, DibInfo(2, 2, 24)) == 2 && get(memory, section.handle, longer) == 2));
    for (const DibInfo& wrong : {planes, DibInfo(2, 2, 7), DibInfo(2, 2, 24, BI_RLE8), DibInfo(2, 2, 24, BI_BITFIELDS)})
        CHECK(get(memory, section.handle, wrong) == 0);
    CHECK((get(nullptr, section.handle, DibInfo(2, 2, 24)) == 0 && get(memory, nullptr, DibInfo(2, 2, 24)) == 0));
}

TEST_CASE("bitmaps are made from DIBs") {
    DibInfo info(2, -1, 24);
    const Owned bitmap(
        CreateDIBitmap(WindowContext(), &info.header, CBM_INIT, "\x01\x02\x03\x04\x05\x06\0\0", info, DIB_RGB_COLORS));
    BYTE got[8]{};
    CHECK(GetBitmapBits(bitmap, sizeof got, got) == sizeof got);
    CHECK(Hex(got, 8) == "0102030004050600");
    const Owned mono(CreateDIBitmap(MemoryContext(), &info.header, 0, nullptr, nullptr, DIB_RGB_COLORS));
    CHECK(Told<BITMAP>(mono).bmBitsPixel == 1);
}
