#include "tests/toolkit/Toolkit.h"

#include <optional>
#include <string_view>

using namespace kel::test;

namespace {

/// A bitmap file. @param table masks or colours @param pixelsAt what its header says, when that is not where they are
Bytes FileOf(const Bytes& header, const Bytes& table, const Bytes& pixels, std::optional<DWORD> pixelsAt = {}) {
    const auto behind = static_cast<DWORD>(14 + header.size() + table.size());
    Bytes file = {'B', 'M'};
    Append(file, static_cast<DWORD>(behind + pixels.size()));
    Append(file, DWORD{0});
    Append(file, pixelsAt.value_or(behind));
    for (const Bytes& part : {header, table, pixels})
        file.insert(file.end(), part.begin(), part.end());
    return file;
}

Bytes CoreInfo(WORD width, WORD height, WORD depth) {
    Bytes header;
    Append(header, DWORD{12});
    for (const WORD field : {width, height, WORD{1}, depth})
        Append(header, field);
    return header;
}

const Bytes kColours = {1, 2, 3, 0, 4, 5, 6, 0};
const Bytes kCoreColours = {1, 2, 3, 4, 5, 6};
const Bytes k565 = {0, 0xF8, 0, 0, 0xE0, 0x07, 0, 0, 0x1F, 0, 0, 0};
const Bytes k4444 = {0, 0x0F, 0, 0, 0xF0, 0, 0, 0, 0x0F, 0, 0, 0, 0, 0xF0, 0, 0};
const Bytes kTenBits = {0, 0, 0xF0, 0x3F, 0, 0xFC, 0x0F, 0, 0xFF, 0x03, 0, 0};

const Bytes k8Runs = FrontOf({4, 2, 8, 2, 40, BI_RLE8});
const Bytes k4Runs = FrontOf({5, 2, 4, 2, 40, BI_RLE4});

} // namespace

TEST_CASE("bitmap files of every kind become packed bitmaps with the rows from the bottom") {
    const struct {
        const char* name;
        Bytes file;
        Shape picture; // bottom row first, with a 40-byte header and, to 8 bits, with kColours
        Bytes rows;
    } rows[] = {
        {"1 bit",
         FileOf(FrontOf({9, 2, 1}), kColours, {0xAA, 0x80, 0, 0, 0x55, 0, 0, 0}),
         {9, 2, 1},
         {0xAA, 0x80, 0, 0, 0x55, 0, 0, 0}},
        {"1 bit, OS/2", FileOf(CoreInfo(1, 1, 1), kCoreColours, {0x80, 0, 0, 0}), {1, 1, 1}, {0x80, 0, 0, 0}},
        {"header of 16 bytes",
         FileOf({16, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 0}, kColours, {0x80, 0, 0, 0}),
         {1, 1, 1},
         {0x80, 0, 0, 0}},
        {"2 bits", FileOf(FrontOf({5, 1, 2, 2}), kColours, {0x1B, 0x40, 0, 0}), {5, 1, 4, 2}, {0x01, 0x23, 0x10, 0}},
        {"4 bits, from the top",
         FileOf(FrontOf({3, -2, 4, 2}), kColours, {0x01, 0x10, 0, 0, 0x11, 0, 0, 0}),
         {3, 2, 4, 2},
         {0x11, 0, 0, 0, 0x01, 0x10, 0, 0}},
        {"8 bits, no offset", FileOf(FrontOf({2, 1, 8, 2}), kColours, {1, 0, 9, 9}, 0), {2, 1, 8, 2}, {1, 0, 9, 9}},
        {"16 bits",
         FileOf(FrontOf({2, 1, 16}), {}, {0x1F, 0x7C, 0xE0, 0x03}),
         {2, 1, 24},
         {255, 0, 255, 0, 255, 0, 0, 0}},
        {"16 bits, 5-6-5",
         FileOf(FrontOf({2, 1, 16, 0, 40, BI_BITFIELDS}), k565, {0x00, 0xF8, 0x00, 0x04}),
         {2, 1, 24},
         {0, 0, 255, 0, 130, 0, 0, 0}},
        {"16 bits, 4-4-4-4",
         FileOf(FrontOf({1, 1, 16, 0, 40, 6}), k4444, {0x21, 0x83, 0, 0}),
         {1, 1, 32},
         {17, 34, 51, 136}},
        {"24 bits, table skipped", FileOf(FrontOf({1, 1, 24, 2}), kColours, {7, 8, 9, 0}), {1, 1, 24}, {7, 8, 9, 0}},
        {"24 bits, OS/2, offset too small", FileOf(CoreInfo(1, 1, 24), {}, {7, 8, 9, 0}, 3), {1, 1, 24}, {7, 8, 9, 0}},
        {"32 bits", FileOf(FrontOf({1, 1, 32}), {}, {7, 8, 9, 10}), {1, 1, 32}, {7, 8, 9, 10}},
        {"32 bits, 10 a channel",
         FileOf(FrontOf({1, 1, 32, 0, 40, BI_BITFIELDS}), kTenBits, {0xFC, 0x03, 0xF0, 0x1F}),
         {1, 1, 32},
         {255, 0, 127, 0}},
        {"8-bit runs",
         FileOf(k8Runs, kColours, {3, 1, 0, 2, 1, 1, 0, 3, 0, 1, 1, 0, 0, 1}),
         {4, 2, 8, 2},
         {1, 1, 1, 0, 0, 0, 0, 0}},
        {"8-bit runs, single pixels",
         FileOf(k8Runs, kColours, {0, 3, 0, 1, 1, 0, 0, 0, 9, 1, 0, 1}),
         {4, 2, 8, 2},
         {0, 1, 1, 0, 1, 1, 1, 1}},
        {"8-bit runs, no end", FileOf(k8Runs, kColours, {0, 0, 4, 1}), {4, 2, 8, 2}, {0, 0, 0, 0, 1, 1, 1, 1}},
        {"4-bit runs",
         FileOf(k4Runs, kColours, {5, 0x10, 0, 0, 0, 5, 0x01, 0x01, 0x10, 0, 0, 1}),
         {5, 2, 4, 2},
         {0x10, 0x10, 0x10, 0, 0x01, 0x01, 0x10, 0}},
    };
    const Control control;
    for (const auto& row : rows) {
        CAPTURE(std::string_view(row.name));
        REQUIRE(control.Load(row.file) == toolkit::kLoaded);
        Bytes expected = FrontOf(row.picture);
        for (const Bytes& part : {row.picture.depth <= 8 ? kColours : Bytes(), row.rows})
            expected.insert(expected.end(), part.begin(), part.end());
        CHECK(control.Picture() == expected);
    }
}

TEST_CASE("damaged bitmap files are told from files of unknown kinds") {
    const Bytes whole = FileOf(FrontOf({2, 2, 24}), {}, Bytes(16));
    const Control control;
    for (std::size_t size = 1; size < whole.size(); ++size) {
        CAPTURE(size);
        CHECK(control.Load(Cut(whole, size)) == (size < 19 ? toolkit::kUnknown : toolkit::kDamaged));
    }
    const Bytes gaps = {5, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0};
    const struct {
        const char* name;
        Bytes file;
        SHORT status = toolkit::kDamaged;
    } rows[] = {
        {"no width", FileOf(FrontOf({0, 2, 24}), {}, Bytes(16))},
        {"rows of 4 GiB", FileOf(FrontOf({0x40000000, 1, 32}), {}, Bytes(16))},
        {"3 bits", FileOf(FrontOf({2, 2, 3}), {}, Bytes(16))},
        {"JPEG within", FileOf(FrontOf({2, 2, 24, 0, 40, 4}), {}, Bytes(16))},
        {"masks with gaps", FileOf(FrontOf({1, 1, 32, 0, 40, BI_BITFIELDS}), gaps, {}, 66)},
        {"runs from the top", FileOf(FrontOf({4, -2, 8, 2, 40, BI_RLE8}), kColours, {4, 1, 0, 1})},
        {"runs above the picture", FileOf(k8Runs, kColours, {0, 0, 0, 0, 4, 1, 0, 1})},
        {"runs cut short", FileOf(k8Runs, kColours, {4, 1, 0, 0, 3})},
        {"pixels cut short", FileOf(k8Runs, kColours, {0, 0, 0, 4, 1, 1, 1})},
        {"beyond the budget", FileOf(FrontOf({30000, 30000, 8, 2, 40, BI_RLE8}), kColours, {0, 1}),
         toolkit::kOverBudget},
        {"beyond all measure", FileOf(FrontOf({0x7FFFFFFF, 0x7FFFFFFF, 8, 2, 40, BI_RLE8}), kColours, {0, 1}),
         toolkit::kOverBudget},
    };
    for (const auto& row : rows) {
        CAPTURE(std::string_view(row.name));
        CHECK(control.Load(row.file) == row.status);
        CHECK(control.Get(toolkit::GetDibHandle) == nullptr);
    }
}
