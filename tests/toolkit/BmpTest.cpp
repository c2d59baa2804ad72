#include "tests/toolkit/Toolkit.h"

#include <string_view>

using namespace kel::test;

namespace {

/// A bitmap file: its header, and everything behind that.
Bytes FileOf(const Bytes& header, const Bytes& rest, DWORD pixelsAt) {
    Bytes file = {'B', 'M'};
    Append(file, static_cast<DWORD>(14 + header.size() + rest.size()));
    Append(file, DWORD{0});
    Append(file, pixelsAt);
    file.insert(file.end(), header.begin(), header.end());
    file.insert(file.end(), rest.begin(), rest.end());
    return file;
}

Bytes InfoHeader(const Shape& shape) {
    Bytes header;
    Append(header, HeaderOf(shape));
    header.resize(shape.headerBytes);
    return header;
}

Bytes CoreHeader(WORD width, WORD height, WORD depth) {
    Bytes header;
    Append(header, DWORD{12});
    for (const WORD field : {width, height, WORD{1}, depth})
        Append(header, field);
    return header;
}

Bytes operator+(Bytes a, const Bytes& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

struct Row {
    const char* name;
    Bytes file;
    Shape picture; ///< bottom row first, with a 40-byte header
    Bytes behind;  ///< the header: colours and rows
};

const Bytes kTwoColours = {1, 2, 3, 0, 4, 5, 6, 0};
const Bytes kTwoCoreColours = {1, 2, 3, 4, 5, 6};

Bytes Runs(const Shape& shape, const Bytes& runs) {
    return FileOf(InfoHeader(shape), kTwoColours + runs, 62);
}

const Shape k8Runs = {4, 2, 8, 2, 40, BI_RLE8};
const Shape k4Runs = {5, 2, 4, 2, 40, BI_RLE4};

} // namespace

TEST_CASE("bitmap files of every kind become packed bitmaps with the rows from the bottom") {
    const Row rows[] = {
        {"1 bit",
         FileOf(InfoHeader({9, 2, 1}), kTwoColours + Bytes{0xAA, 0x80, 0, 0, 0x55, 0, 0, 0}, 62),
         {9, 2, 1},
         kTwoColours + Bytes{0xAA, 0x80, 0, 0, 0x55, 0, 0, 0}},
        {"1 bit, OS/2",
         FileOf(CoreHeader(1, 1, 1), kTwoCoreColours + Bytes{0x80, 0, 0, 0}, 32),
         {1, 1, 1},
         kTwoColours + Bytes{0x80, 0, 0, 0}},
        {"header of 16 bytes",
         FileOf({16, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 0}, kTwoColours + Bytes{0x80, 0, 0, 0}, 38),
         {1, 1, 1},
         kTwoColours + Bytes{0x80, 0, 0, 0}},
        {"2 bits",
         FileOf(InfoHeader({5, 1, 2, 2}), kTwoColours + Bytes{0x1B, 0x40, 0, 0}, 62),
         {5, 1, 4, 2},
         kTwoColours + Bytes{0x01, 0x23, 0x10, 0}},
        {"4 bits, from the top",
         FileOf(InfoHeader({3, -2, 4, 2}), kTwoColours + Bytes{0x01, 0x10, 0, 0, 0x11, 0, 0, 0}, 62),
         {3, 2, 4, 2},
         kTwoColours + Bytes{0x11, 0, 0, 0, 0x01, 0x10, 0, 0}},
        {"8 bits, no offset",
         FileOf(InfoHeader({2, 1, 8, 2}), kTwoColours + Bytes{1, 0, 9, 9}, 0),
         {2, 1, 8, 2},
         kTwoColours + Bytes{1, 0, 9, 9}},
        {"16 bits",
         FileOf(InfoHeader({2, 1, 16}), {0x1F, 0x7C, 0xE0, 0x03}, 54),
         {2, 1, 24},
         {255, 0, 255, 0, 255, 0, 0, 0}},
        {"16 bits, 5-6-5",
         FileOf(InfoHeader({2, 1, 16, 0, 40, BI_BITFIELDS}),
                Bytes{0, 0xF8, 0, 0, 0xE0, 0x07, 0, 0, 0x1F, 0, 0, 0} + Bytes{0x00, 0xF8, 0x00, 0x04}, 66),
         {2, 1, 24},
         {0, 0, 255, 0, 130, 0, 0, 0}},
        {"16 bits, 4-4-4-4",
         FileOf(InfoHeader({1, 1, 16, 0, 40, 6}),
                Bytes{0, 0x0F, 0, 0, 0xF0, 0, 0, 0, 0x0F, 0, 0, 0, 0, 0xF0, 0, 0} + Bytes{0x21, 0x83, 0, 0}, 70),
         {1, 1, 32},
         {17, 34, 51, 136}},
        {"24 bits, table skipped",
         FileOf(InfoHeader({1, 1, 24, 2}), kTwoColours + Bytes{7, 8, 9, 0}, 62),
         {1, 1, 24},
         {7, 8, 9, 0}},
        {"24 bits, OS/2, offset too small", FileOf(CoreHeader(1, 1, 24), {7, 8, 9, 0}, 3), {1, 1, 24}, {7, 8, 9, 0}},
        {"32 bits", FileOf(InfoHeader({1, 1, 32}), {7, 8, 9, 10}, 54), {1, 1, 32}, {7, 8, 9, 10}},
        {"32 bits, 10 a channel",
         FileOf(InfoHeader({1, 1, 32, 0, 40, BI_BITFIELDS}),
                Bytes{0, 0, 0xF0, 0x3F, 0, 0xFC, 0x0F, 0, 0xFF, 0x03, 0, 0} + Bytes{0xFC, 0x03, 0xF0, 0x1F}, 66),
         {1, 1, 32},
         {255, 0, 127, 0}},
        {"8-bit runs",
         Runs(k8Runs, {3, 1, 0, 2, 1, 1, 0, 3, 0, 1, 1, 0, 0, 1}),
         {4, 2, 8, 2},
         kTwoColours + Bytes{1, 1, 1, 0, 0, 0, 0, 0}},
        {"8-bit runs, single pixels",
         Runs(k8Runs, {0, 3, 0, 1, 1, 0, 0, 0, 9, 1, 0, 1}),
         {4, 2, 8, 2},
         kTwoColours + Bytes{0, 1, 1, 0, 1, 1, 1, 1}},
        {"8-bit runs, no end", Runs(k8Runs, {0, 0, 4, 1}), {4, 2, 8, 2}, kTwoColours + Bytes{0, 0, 0, 0, 1, 1, 1, 1}},
        {"4-bit runs",
         Runs(k4Runs, {5, 0x10, 0, 0, 0, 5, 0x01, 0x01, 0x10, 0, 0, 1}),
         {5, 2, 4, 2},
         kTwoColours + Bytes{0x10, 0x10, 0x10, 0, 0x01, 0x01, 0x10, 0}},
    };
    const Control control;
    for (const Row& row : rows) {
        CAPTURE(std::string_view(row.name));
        REQUIRE(control.Load(row.file) == toolkit::kLoaded);
        Bytes expected;
        Append(expected, HeaderOf({row.picture.width, row.picture.height, row.picture.depth,
                                   row.picture.colours == 2 && row.picture.depth == 1 ? 0 : row.picture.colours}));
        const Bytes picture = control.Picture();
        CHECK(Bytes(picture.begin(), picture.begin() + 40) == expected);
        CHECK(Bytes(picture.begin() + 40, picture.end()) == row.behind);
    }
}

TEST_CASE("damaged bitmap files are told from files of unknown kinds") {
    const Bytes whole = FileOf(InfoHeader({2, 2, 24}), Bytes(16), 54);
    const Control control;
    for (std::size_t size = 1; size < whole.size(); ++size) {
        CAPTURE(size);
        const SHORT status = control.Load({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)});
        CHECK(status == (size < 19 ? toolkit::kUnknown : toolkit::kDamaged));
    }
    const struct {
        const char* name;
        Bytes file;
        SHORT status;
    } rows[] = {
        {"no width", FileOf(InfoHeader({0, 2, 24}), Bytes(16), 54), toolkit::kDamaged},
        {"rows of 4 GiB", FileOf(InfoHeader({0x40000000, 1, 32}), Bytes(16), 54), toolkit::kDamaged},
        {"3 bits", FileOf(InfoHeader({2, 2, 3}), Bytes(16), 54), toolkit::kDamaged},
        {"JPEG within", FileOf(InfoHeader({2, 2, 24, 0, 40, 4}), Bytes(16), 54), toolkit::kDamaged},
        {"masks with gaps",
         FileOf(InfoHeader({1, 1, 32, 0, 40, BI_BITFIELDS}), Bytes{5, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0}, 66),
         toolkit::kDamaged},
        {"runs from the top", Runs({4, -2, 8, 2, 40, BI_RLE8}, {4, 1, 0, 1}), toolkit::kDamaged},
        {"runs above the picture", Runs(k8Runs, {0, 0, 0, 0, 4, 1, 0, 1}), toolkit::kDamaged},
        {"runs cut short", Runs(k8Runs, {4, 1, 0, 0, 3}), toolkit::kDamaged},
        {"pixels cut short", Runs(k8Runs, {0, 0, 0, 4, 1, 1, 1}), toolkit::kDamaged},
        {"beyond the budget", Runs({30000, 30000, 8, 2, 40, BI_RLE8}, {0, 1}), toolkit::kOverBudget},
        {"beyond all measure", Runs({0x7FFFFFFF, 0x7FFFFFFF, 8, 2, 40, BI_RLE8}, {0, 1}), toolkit::kOverBudget},
    };
    for (const auto& row : rows) {
        CAPTURE(std::string_view(row.name));
        CHECK(control.Load(row.file) == row.status);
        CHECK(control.Get(toolkit::GetDibHandle) == nullptr);
    }
}
