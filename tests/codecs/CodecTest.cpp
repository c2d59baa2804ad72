#include "tests/codecs/Files.h"

#include "tests/support/Faults.h"

#include <algorithm>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>

#include <tiff.h>

using namespace kel::test;

namespace {

using Expect = std::function<Colour(int x, int y)>;

/// The file as a picture of this depth and size, every pixel as expected.
void CheckPicture(const Bytes& file, int depth, int width, int height, const Expect& expect) {
    const Control control;
    REQUIRE(control.Load(file) == toolkit::kLoaded);
    const Decoded picture{control.Picture()};
    REQUIRE(picture.Header().biBitCount == depth);
    REQUIRE(picture.Header().biWidth == width);
    REQUIRE(picture.Header().biHeight == height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            if (const Colour wanted = expect(x, y); picture.At(x, y) != wanted) {
                CAPTURE(x);
                CAPTURE(y);
                for (std::size_t i = 0; i < 4; ++i)
                    CHECK(picture.At(x, y)[i] == wanted[i]);
                return;
            }
}

void CheckRaster(const Bytes& file, int depth, const Raster& raster) {
    CheckPicture(file, depth, raster.width, raster.height, [&](int x, int y) { return ColourAt(raster, x, y); });
}

/// Alpha of a picture whose pixel of sample 1 is transparent.
Colour WithKey(const Raster& raster, int x, int y, bool clears) {
    Colour colour = ColourAt(raster, x, y);
    const bool clear = raster.Sample(x, y, 0) == 1;
    if (clear && clears)
        return {0, 0, 0, 0};
    colour[3] = clear ? 0 : 255;
    return colour;
}

} // namespace

TEST_CASE("PNG: depths, palettes and greys are kept, 16 bits reduced, alpha is straight") {
    const struct {
        Kind kind;
        int bits;
        int depth;
    } rows[] = {{Kind::Grey, 1, 1},    {Kind::Grey, 2, 4},       {Kind::Grey, 4, 4},        {Kind::Grey, 8, 8},
                {Kind::Grey, 16, 8},   {Kind::Palette, 1, 1},    {Kind::Palette, 2, 4},     {Kind::Palette, 4, 4},
                {Kind::Palette, 8, 8}, {Kind::GreyAlpha, 8, 32}, {Kind::GreyAlpha, 16, 32}, {Kind::Rgb, 8, 24},
                {Kind::Rgb, 16, 24},   {Kind::Rgba, 8, 32},      {Kind::Rgba, 16, 32}};
    for (const auto& row : rows)
        for (const bool interlaced : {false, true}) {
            CAPTURE(&row - rows);
            CAPTURE(interlaced);
            // Rows of more than one block of pixels that are widened.
            const Raster raster{row.kind, row.bits, 301, 21};
            CheckRaster(PngFile(raster, {interlaced}), row.depth, raster);
        }
    for (const Raster& raster : {Raster{Kind::Palette, 2}, {Kind::Palette, 8}, {Kind::Grey, 4}})
        CheckPicture(PngFile(raster, {false, true}), 32, raster.width, raster.height,
                     [&](int x, int y) { return WithKey(raster, x, y, false); });
}

TEST_CASE("TIFF: kinds, strips and tiles, samples together and apart") {
    const struct {
        Kind kind;
        int bits;
        int depth;
    } rows[] = {{Kind::Grey, 1, 1},       {Kind::WhiteFirst, 1, 1},      {Kind::Grey, 2, 4},
                {Kind::Grey, 4, 4},       {Kind::WhiteFirst, 8, 8},      {Kind::Grey, 16, 8},
                {Kind::Palette, 2, 4},    {Kind::Palette, 4, 4},         {Kind::Palette, 8, 8},
                {Kind::GreyAlpha, 8, 32}, {Kind::GreyAlpha, 16, 32},     {Kind::Rgb, 8, 24},
                {Kind::Rgb, 16, 24},      {Kind::RgbExtra, 8, 24},       {Kind::Rgba, 8, 32},
                {Kind::Rgba, 16, 32},     {Kind::RgbaMultiplied, 8, 32}, {Kind::Cmyk, 8, 24},
                {Kind::Cmyk, 16, 24}};
    constexpr int kNone = 1, kLzw = 5, kDeflate = 8;
    const TiffOptions ways[] = {{kNone}, {kLzw}, {kDeflate, false, true}, {kNone, true}};
    for (const auto& row : rows)
        for (const TiffOptions& way : ways) {
            CAPTURE(&row - rows);
            CAPTURE(&way - ways);
            const Raster raster{row.kind, row.bits};
            CheckRaster(TiffFile(raster, way), row.depth, raster);
        }
}

TEST_CASE("TIFF: a strip that is too large to be decoded as a whole") {
    const struct {
        Raster raster;
        int depth;
    } rows[] = {{{Kind::Grey, 8, 3000, 2900}, 8},
                {{Kind::Rgb, 16, 1300, 1100}, 24},
                {{Kind::GreyAlphaExtra, 8, 1500, 1400}, 32}};
    for (const auto& row : rows) {
        CAPTURE(row.depth);
        // The library makes small strips of large ones that are not compressed.
        const TiffOptions whole = {COMPRESSION_PACKBITS, false, false, 1, row.raster.height};
        CheckRaster(TiffFile(row.raster, whole), row.depth, row.raster);
    }
}

TEST_CASE("TIFF: a row of samples that nobody uses is over the budget before there is memory for it") {
    Bytes file = TiffFile({Kind::RgbExtra, 8, 1000, 1}, {});
    const auto put = [&file](WORD tag, DWORD count, DWORD value) {
        const WORD wanted[] = {tag, TIFF_SHORT};
        const auto* const bytes = reinterpret_cast<const BYTE*>(wanted);
        const auto entry = std::search(file.begin(), file.end(), bytes, bytes + sizeof wanted);
        REQUIRE(entry != file.end());
        std::memcpy(&entry[4], &count, sizeof count);
        std::memcpy(&entry[8], &value, sizeof value);
    };
    put(TIFFTAG_BITSPERSAMPLE, 1, 8);
    put(TIFFTAG_SAMPLESPERPIXEL, 1, 60000);
    const Control control;
    REQUIRE(control(toolkit::SetBudget, 1) == S_OK);
    CHECK(control.Load(file) == toolkit::kOverBudget);
}

TEST_CASE("WebP: colours with and without alpha, the first picture of an animation on its canvas") {
    const Raster plain{Kind::Rgb, 8}, alpha{Kind::Rgba, 8};
    CheckRaster(WebPFile(plain, false, 0), 24, plain);
    const auto visible = [&](int x, int y) {
        Colour colour = ColourAt(alpha, x, y);
        colour[3] |= 1;
        return colour;
    };
    CheckPicture(WebPFile(alpha, false, 0), 32, 37, 21, visible);
    CheckPicture(WebPFile(plain, true, 0), 32, 39, 25, [&](int x, int y) {
        Colour colour = x < 2 || y < 4 ? Colour{0, 0, 0, 0} : ColourAt(plain, x - 2, y - 4);
        colour[3] = x < 2 || y < 4 ? 0 : 255;
        return colour;
    });
}

TEST_CASE("GIF: palettes of each depth, interlaced too; transparency makes 32 bits") {
    for (const int bits : {1, 2, 4, 5, 8})
        for (const bool interlaced : {false, true}) {
            CAPTURE(bits);
            const Raster raster{Kind::Palette, bits};
            CheckRaster(GifFile(raster, interlaced, false, 0), bits == 1 ? 1 : bits <= 4 ? 4 : 8, raster);
            CheckPicture(GifFile(raster, interlaced, true, 3), 32, 40, 21, [&](int x, int y) {
                return x < 3 ? Colour{0, 0, 0, 0} : WithKey(raster, x - 3, y, true);
            });
        }
}

TEST_CASE("pictures are turned upright at every depth, or left as they lie") {
    const Raster rasters[] = {{Kind::Grey, 1, 37, 70},
                              {Kind::Palette, 4, 37, 70},
                              {Kind::Grey, 8, 37, 70},
                              {Kind::Rgb, 8, 37, 70},
                              {Kind::Rgba, 8, 37, 70}};
    for (const Raster& raster : rasters)
        for (int tag = 1; tag <= 8; ++tag) {
            CAPTURE(tag);
            CAPTURE(raster.bits);
            const int right = raster.width - 1, bottom = raster.height - 1;
            const bool quarter = tag >= 5;
            const bool fromRight = tag == 2 || tag == 3 || tag >= 7;
            const bool fromBottom = tag == 3 || tag == 4 || tag == 6 || tag == 7;
            const Bytes file = TiffFile(raster, {1, false, false, tag});
            const auto upright = [&](int x, int y) { // where the pixel lies in the file
                if (quarter)
                    std::swap(x, y);
                return ColourAt(raster, fromRight ? right - x : x, fromBottom ? bottom - y : y);
            };
            const Control control;
            CheckPicture(file, int(Decoded{(control.Load(file), control.Picture())}.Header().biBitCount),
                         quarter ? raster.height : raster.width, quarter ? raster.width : raster.height, upright);
            REQUIRE(control(toolkit::SetKeepOrientation, 1) == S_OK);
            REQUIRE(control.Load(file) == toolkit::kLoaded);
            CHECK(Decoded{control.Picture()}.At(5, 6) == ColourAt(raster, 5, 6));
        }
    const Raster plain{Kind::Rgb, 8};
    const auto turned = [&](int x, int y) { return ColourAt(plain, y, plain.height - 1 - x); };
    CheckPicture(PngFile(plain, {false, false, 6}), 24, plain.height, plain.width, turned);
    CheckPicture(WebPFile(plain, false, 6), 24, plain.height, plain.width, turned);
}

TEST_CASE("files that are cut anywhere are damaged, and those over budget refused, whatever their kind") {
    // What may be missing at the end: the trailer of GIF files, behind the terminator of the picture.
    const Raster rgb{Kind::Rgb, 8, 700, 700}, small{Kind::Rgb, 8}, indexed{Kind::Palette, 8};
    const struct {
        const char* name;
        Bytes file;
        std::size_t spare;
        Bytes large;
    } rows[] = {
        {"PNG", PngFile(small, {}), 0, PngFile(rgb, {})},
        {"TIFF", TiffFile(small, {5}), 0, TiffFile(rgb, {5})},
        {"WebP", WebPFile(small, false, 0), 0, WebPFile(rgb, false, 0)},
        {"GIF", GifFile(indexed, false, false, 0), 2, GifFile({Kind::Palette, 8, 1100, 1100}, false, false, 0)}};
    for (const auto& row : rows) {
        CAPTURE(row.name);
        const Control control;
        for (std::size_t size = 12; size + row.spare < row.file.size(); ++size) {
            CAPTURE(size);
            REQUIRE(control.Load(Cut(row.file, size)) == toolkit::kDamaged);
        }
        REQUIRE(control.Load(row.large) == toolkit::kLoaded);
        REQUIRE(control(toolkit::SetBudget, 1) == S_OK);
        CHECK(control.Load(row.large) == toolkit::kOverBudget);
        CHECK(control.Load(row.file) == toolkit::kLoaded);
    }
}

TEST_CASE("a few bytes that claim 60,000 x 60,000 pixels are refused for that, before there is a picture") {
    const Control control;
    for (const char* name : {"jpeg/huge-size.jpg", "png/huge-size.png", "tiff/huge-size.tif", "tiff/huge-strip.tif",
                             "webp/huge-size.webp", "gif/huge-size.gif", "bmp/huge-size.bmp"}) {
        CAPTURE(std::string(name));
        std::ifstream stream(std::string(KELCORE_TEST_DATA "/fuzz/") + name, std::ios::binary);
        CHECK(control.Load(Bytes(std::istreambuf_iterator<char>(stream), {})) == toolkit::kOverBudget);
    }
}

TEST_CASE("a failing call of the system while a file is decoded leaves no half of a picture behind") {
    const Raster rgb{Kind::Rgb, 8}, few{Kind::Palette, 2};
    const Bytes files[] = {
        PngFile(rgb, {false, false, 6}),       PngFile(few, {}),       TiffFile(few, {1, false, false, 3}),
        TiffFile({Kind::Cmyk, 16}, {1, true}), WebPFile(rgb, true, 6), GifFile({Kind::Palette, 4}, true, false, 0)};
    for (const Bytes& file : files) {
        const Control control;
        REQUIRE(control.Load(file) == toolkit::kLoaded);
        const Bytes whole = control.Picture();
        CHECK(control(toolkit::SetDibHandle, nullptr) == S_OK);
        WithEachCallFailing(ERROR_NOT_ENOUGH_MEMORY, [&] {
            CAPTURE(&file - files);
            CAPTURE(FaultedCall());
            const SHORT status = control.Load(file);
            CHECK((status == toolkit::kLoaded || (status == toolkit::kOverBudget && *FaultedCall() != 0)));
            if (FaultIsOver())
                CHECK(control.Picture() == (status == toolkit::kLoaded ? whole : Bytes()));
            control(toolkit::SetDibHandle, nullptr);
        });
    }
}
