#include "tests/bitmap/Pictures.h"

#include <string>

namespace {

constexpr char kPlain32[] = "\0\0\xFF\0\0\xFF\0\0\xFF\0\0\0";
constexpr char kPlain16[] = "\0\x7C\0\0\xE0\x03\0\0\x1F\0\0\0";
constexpr char k565[] = "\0\xF8\0\0\xE0\x07\0\0\x1F\0\0\0";

// A packed bitmap whose table and rows count up from 1.
struct Packed {
    int width, height, bits;
    std::size_t payload;
    DWORD colors = 0;
    const char* masks = nullptr;
    DWORD headerBytes = 40;
    DWORD compression = masks ? BI_BITFIELDS : BI_RGB;

    std::string Bytes() const {
        const BITMAPINFOHEADER header = {headerBytes, width, height, 1, WORD(bits), compression, 0, 0, 0, colors, 0};
        std::string bytes(reinterpret_cast<const char*>(&header), sizeof header);
        bytes.append(masks ? masks : "", masks ? 12 : 0);
        bytes.append(headerBytes == 108 ? 108 - 52 : 0, '\0');
        for (std::size_t i = 1; i <= payload; ++i)
            bytes += static_cast<char>(i);
        return bytes;
    }
};

// From an address that fits no integer.
bool Import(IBitmap& picture, const Packed& packed) {
    std::string bytes = 'x' + packed.Bytes();
    return picture.SetDib(bytes.data() + 1, static_cast<int>(bytes.size() - 1));
}

} // namespace

TEST_CASE_TEMPLATE("a whole packed bitmap is taken over", Picture, MemoryPicture, GDIBitmap) {
    const std::tuple<Packed, int, int> cases[] = {{{9, 2, 1, 8 + 8}, 9, 2},
                                                  {{9, 2, 1, 4 + 8, 1}, 5, 1},
                                                  {{3, 2, 4, 64 + 8}, 65, 16},
                                                  {{3, 2, 8, 64 + 8, 16}, 65, 16},
                                                  {{3, 2, 16, 16}, 1, 0},
                                                  {{3, 2, 24, 24}, 1, 0},
                                                  {{3, 2, 24, 12 + 24, 3}, 13, 0},
                                                  {{3, 2, 32, 24 + 9}, 1, 0},
                                                  {{3, -2, 24, 24}, 13, 0},
                                                  {{3, 2, 32, 24, 0, kPlain32}, 1, 0},
                                                  {{3, 2, 16, 16, 0, kPlain16}, 1, 0},
                                                  {{3, 2, 32, 24, 0, kPlain32, 108}, 1, 0}};
    // The first byte is that of the bottom row; entries of the table come from the block.
    for (const auto& row : cases) {
        CAPTURE(&row - cases);
        const auto& [packed, firstByte, entries] = row;
        Picture picture;
        REQUIRE(Import(picture, packed));
        CHECK(picture.GetWidth() == static_cast<unsigned>(packed.width));
        CHECK((picture.GetHeight() == 2 && picture.GetBitsPerPixel() == packed.bits));
        CHECK(BytesOf(picture)[0] == firstByte);
        const auto* const table = reinterpret_cast<const unsigned char*>(picture.LockPalette());
        for (int i = 0; i < 4 * picture.GetNumPaletteEntries(); ++i)
            CHECK(table[i] == (i < 4 * entries ? i + 1 : 0));
    }
}

TEST_CASE_TEMPLATE("what is no whole packed bitmap is refused and changes nothing", Picture, MemoryPicture, GDIBitmap) {
    std::vector<Packed> cases = {{3, 2, 24, 23},
                                 {3, 2, 8, 1024 + 7},
                                 {3, 2, 8, 1028 + 8, 257},
                                 {3, 2, 24, 99, 0x40000000},
                                 {3, 2, 24, 99, 0xFFFFFFFF},
                                 {3, 2, 24, 99, 0, nullptr, 12},
                                 {3, 2, 24, 99, 0, nullptr, 0xFFFFFFFF},
                                 {3, 2, 8, 1024 + 8, 0, nullptr, 40, 1},
                                 {3, 2, 32, 0, 0, nullptr, 40, BI_BITFIELDS},
                                 {3, 2, 16, 16, 0, k565},
                                 {3, 2, 24, 24, 0, kPlain32},
                                 {3, 2, 32, 23, 0, kPlain32},
                                 {3, 2, 32, 99, 0, kPlain32, 48}};
    const int sizes[][3] = {{0, 2, 24},         {-3, 2, 24},         {3, 0, 24}, {3, kLeast, 24},
                            {kMost, kMost, 32}, {0x10000000, 1, 32}, {3, 2, 0},  {0x10000, 0x10000, 1},
                            {3, 2, 48},         {0x8000, 0x8000, 32}};
    for (const auto& [width, height, bits] : sizes)
        cases.push_back({width, height, bits, 99});
    Picture picture;
    REQUIRE(Import(picture, {3, 2, 24, 24}));
    for (const Packed& packed : cases) {
        CAPTURE(&packed - cases.data());
        CHECK_FALSE(Import(picture, packed));
        CHECK(BytesOf(picture)[23] == 24);
    }
    std::string bytes = cases[0].Bytes();
    for (const int size : {0, -1, 39})
        CHECK_FALSE(picture.SetDib(bytes.data(), size));
    CHECK_FALSE(picture.SetDib(nullptr, 64));
    CHECK(BytesOf(picture)[23] == 24);

    MemoryPicture denying;
    denying.deniesMemory = true;
    CHECK_FALSE(Import(denying, {3, 2, 24, 24}));
    CHECK(denying.IsEmpty());
}

TEST_CASE("a picture class that makes another picture than it was asked for gets no rows") {
    struct : MemoryPicture {
        bool CreateBitmap(const Size& size, int bits) override {
            return MemoryPicture::CreateBitmap(Size(size.cx & 0xFF, size.cy & 0xFF), bits);
        }
    } small;
    CHECK(Import(small, {255, 1, 1, 8 + 32}));
    CHECK_FALSE(Import(small, {0x104, 1, 1, 8 + 36}));
    CHECK(small.IsEmpty());
    CHECK_FALSE(Import(small, {1, 0x101, 1, 8 + 4 * 0x101}));
    CHECK(small.IsEmpty());
}

TEST_CASE("a movable block goes in and comes out again") {
    struct Overriding : MemoryPicture {
        using MemoryPicture::SetDib;
        bool SetDib(void* dib, int size) override { return (asked = size) != 0 && MemoryPicture::SetDib(dib, size); }
        int asked = 0;
    } other;
    GDIBitmap picture;
    REQUIRE(Import(picture, {3, 2, 24, 24}));
    const HGLOBAL block = picture.GetDibClone();
    REQUIRE(GlobalSize(block) >= 64);
    CHECK(std::memcmp(GlobalLock(block), Packed{3, 2, 24, 24}.Bytes().data(), 64) == 0);
    GlobalUnlock(block);
    CHECK((other.SetDib(block) && BytesOf(other) == BytesOf(picture)));
    CHECK(other.asked == static_cast<int>(GlobalSize(block)));
    struct : MemoryPicture {
        using MemoryPicture::SetDib;
        bool SetDib(void*, int) override { throw 1; }
    } throwing;
    CHECK_THROWS(throwing.SetDib(block));
    CHECK((GlobalFlags(block) & GMEM_LOCKCOUNT) == 0);
    GlobalFree(block);
    CHECK_FALSE(other.SetDib(nullptr));
    CHECK(GDIBitmap().GetDibClone() == nullptr);
}
