#include "tests/bitmap/MemoryPicture.h"

#include <limits>
#include <string>

namespace {

// A packed bitmap: bytes of table and rows count up from 1.
struct Packed {
    BITMAPINFOHEADER header = {40, 3, 2, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    std::string between; // masks, or the rest of a longer header
    std::size_t payload = 0;
    std::size_t lead = 0; // bytes in front, to misalign the block

    std::string Bytes() const {
        std::string bytes(lead, 'x');
        bytes.append(reinterpret_cast<const char*>(&header), sizeof header);
        bytes += between;
        for (std::size_t i = 1; i <= payload; ++i)
            bytes += static_cast<char>(i);
        return bytes;
    }
};

bool Import(IBitmap& picture, const Packed& packed) {
    std::string bytes = packed.Bytes();
    return picture.SetDib(bytes.data() + packed.lead, static_cast<int>(bytes.size() - packed.lead));
}

Packed Of(int width, int height, int bits, DWORD colors, std::size_t payload) {
    Packed packed;
    packed.header.biWidth = width;
    packed.header.biHeight = height;
    packed.header.biBitCount = static_cast<WORD>(bits);
    packed.header.biClrUsed = colors;
    packed.payload = payload;
    return packed;
}

Packed BitFields(int bits, const char (&masks)[13], DWORD headerBytes, std::size_t payload) {
    Packed packed = Of(3, 2, bits, 0, payload);
    packed.header.biCompression = BI_BITFIELDS;
    packed.header.biSize = headerBytes;
    packed.between.assign(masks, 12);
    packed.between.append(headerBytes > 52 ? headerBytes - 52 : 0, '\0');
    return packed;
}

constexpr char k32[] = "\0\0\xFF\0\0\xFF\0\0\xFF\0\0\0";
constexpr char k555[] = "\0\x7C\0\0\xE0\x03\0\0\x1F\0\0\0";
constexpr char k565[] = "\0\xF8\0\0\xE0\x07\0\0\x1F\0\0\0";

constexpr int kMost = std::numeric_limits<int>::max();
constexpr int kLeast = std::numeric_limits<int>::min();

} // namespace

TEST_CASE_TEMPLATE("a whole packed bitmap is taken over", Picture, MemoryPicture, GDIBitmap) {
    const struct {
        Packed packed;
        int firstByte; // of the bottom row
        int entries;   // that come from the block
    } cases[] = {
        {Of(9, 2, 1, 0, 8 + 8), 9, 2},      {Of(9, 2, 1, 1, 4 + 8), 5, 1},       {Of(3, 2, 4, 0, 64 + 8), 65, 16},
        {Of(3, 2, 8, 16, 64 + 8), 65, 16},  {Of(3, 2, 16, 0, 16), 1, 0},         {Of(3, 2, 24, 0, 24), 1, 0},
        {Of(3, 2, 24, 3, 12 + 24), 13, 0},  {Of(3, 2, 32, 0, 24 + 9), 1, 0},     {Of(3, -2, 24, 0, 24), 13, 0},
        {BitFields(32, k32, 40, 24), 1, 0}, {BitFields(16, k555, 40, 16), 1, 0}, {BitFields(32, k32, 108, 24), 1, 0}};
    for (const auto& row : cases) {
        const BITMAPINFOHEADER& header = row.packed.header;
        CAPTURE(header.biBitCount);
        CAPTURE(header.biSize);
        for (const std::size_t lead : {0, 1}) {
            Packed packed = row.packed;
            packed.lead = lead;
            Picture picture;
            REQUIRE(Import(picture, packed));
            CHECK(picture.GetWidth() == static_cast<unsigned>(header.biWidth));
            CHECK(picture.GetHeight() == 2);
            CHECK(picture.GetBitsPerPixel() == header.biBitCount);
            CHECK(BytesOf(picture)[0] == row.firstByte);
            const auto entries = picture.GetNumPaletteEntries();
            const auto* const table = reinterpret_cast<const unsigned char*>(picture.LockPalette());
            for (int i = 0; i < 4 * entries; ++i)
                CHECK(table[i] == (i < 4 * row.entries ? i + 1 : 0));
        }
    }
}

TEST_CASE_TEMPLATE("what is no whole packed bitmap is refused and changes nothing", Picture, MemoryPicture, GDIBitmap) {
    Packed core = Of(3, 2, 24, 0, 24);
    core.header.biSize = 12;
    Packed farHeader = Of(3, 2, 24, 0, 24);
    farHeader.header.biSize = 0xFFFFFFFF;
    Packed compressed = Of(3, 2, 8, 0, 1024 + 8);
    compressed.header.biCompression = 1;
    Packed noMasks = BitFields(32, k32, 40, 0);
    noMasks.between.clear();
    const Packed cases[] = {Of(3, 2, 24, 0, 23),
                            Of(3, 2, 8, 0, 1024 + 7),
                            Of(0, 2, 24, 0, 99),
                            Of(-3, 2, 24, 0, 99),
                            Of(3, 0, 24, 0, 99),
                            Of(3, kLeast, 24, 0, 99),
                            Of(kMost, kMost, 32, 0, 99),
                            Of(0x10000000, 1, 32, 0, 99),
                            Of(0x10000, 0x10000, 1, 0, 99),
                            Of(0x8000, 0x8000, 32, 0, 99),
                            Of(3, 2, 0, 0, 99),
                            Of(3, 2, 2, 0, 99),
                            Of(3, 2, 48, 0, 99),
                            Of(3, 2, 8, 257, 1028 + 8),
                            Of(3, 2, 1, 0xFFFFFFFF, 99),
                            Of(3, 2, 24, 0x40000000, 99),
                            Of(3, 2, 24, 0xFFFFFFFF, 99),
                            core,
                            farHeader,
                            compressed,
                            noMasks,
                            BitFields(16, k565, 40, 16),
                            BitFields(24, k32, 40, 24),
                            BitFields(32, k32, 40, 23),
                            BitFields(32, k32, 48, 99)};
    Picture picture;
    REQUIRE(Import(picture, Of(3, 2, 24, 0, 24)));
    for (const Packed& packed : cases) {
        CAPTURE(&packed - cases);
        CHECK_FALSE(Import(picture, packed));
        CHECK(BytesOf(picture)[23] == 24);
    }
    std::string bytes = cases[0].Bytes();
    CHECK_FALSE(picture.SetDib(nullptr, 64));
    CHECK_FALSE(picture.SetDib(bytes.data(), 0));
    CHECK_FALSE(picture.SetDib(bytes.data(), -1));
    CHECK_FALSE(picture.SetDib(bytes.data(), 39));
    CHECK(BytesOf(picture)[23] == 24);

    MemoryPicture denying;
    denying.deniesMemory = true;
    CHECK_FALSE(Import(denying, Of(3, 2, 24, 0, 24)));
    CHECK(denying.IsEmpty());
}

TEST_CASE("a movable block goes in and comes out again") {
    GDIBitmap picture;
    REQUIRE(Import(picture, Of(3, 2, 24, 0, 24)));
    const HGLOBAL block = picture.GetDibClone();
    REQUIRE(block);
    const std::string expected = Of(3, 2, 24, 0, 24).Bytes();
    CHECK(GlobalSize(block) >= 64);
    CHECK((std::memcmp(GlobalLock(block), expected.data(), 64) == 0 && GlobalUnlock(block) == FALSE));

    struct Overriding : MemoryPicture {
        using MemoryPicture::SetDib;
        bool SetDib(void* dib, int size) override { return (asked = size) != 0 && MemoryPicture::SetDib(dib, size); }
        int asked = 0;
    } other;
    CHECK(other.SetDib(block));
    CHECK(other.asked == static_cast<int>(GlobalSize(block)));
    CHECK(BytesOf(other) == BytesOf(picture));
    GlobalFree(block);
    CHECK_FALSE(other.SetDib(nullptr));
    CHECK(GDIBitmap().GetDibClone() == nullptr);
}
