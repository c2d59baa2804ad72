#include "tests/codecs/Files.h"

#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

using namespace kel::test;

namespace {

struct JpegOptions {
    J_COLOR_SPACE stored = JCS_YCbCr;
    bool progressive = false;
    int orientation = 0;
    bool adobe = false;
};

/// Smooth enough that decoders agree about what is worth comparing.
Bytes JpegFile(int width, int height, int channels, const JpegOptions& options) {
    jpeg_compress_struct info = {};
    jpeg_error_mgr errors;
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    unsigned char* made = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&info, &made, &size);
    info.image_width = JDIMENSION(width);
    info.image_height = JDIMENSION(height);
    info.input_components = channels;
    info.in_color_space = channels == 1 ? JCS_GRAYSCALE : channels == 3 ? JCS_RGB : JCS_CMYK;
    jpeg_set_defaults(&info);
    jpeg_set_colorspace(&info, options.stored);
    if (channels == 4)
        info.write_Adobe_marker = options.adobe ? TRUE : FALSE;
    if (options.progressive)
        jpeg_simple_progression(&info);
    jpeg_start_compress(&info, TRUE);
    Bytes exif = {'E', 'x', 'i', 'f', 0, 0};
    const Bytes block = ExifBlock(options.orientation, true);
    exif.insert(exif.end(), block.begin(), block.end());
    if (options.orientation != 0)
        jpeg_write_marker(&info, JPEG_APP0 + 1, exif.data(), unsigned(exif.size()));
    for (int y = 0; y < height; ++y) {
        Bytes row;
        for (int i = 0; i < width * channels; ++i)
            row.push_back(static_cast<BYTE>(i * 2 + y * 3 + i % channels * 60));
        JSAMPROW rows[] = {row.data()};
        jpeg_write_scanlines(&info, rows, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    const Bytes file(made, made + size);
    std::free(made);
    return file;
}

/// The samples as the library gives them: greys, red-green-blue, or inks.
std::vector<Bytes> Samples(const Bytes& file) {
    jpeg_decompress_struct info = {};
    jpeg_error_mgr errors;
    info.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&info);
    jpeg_mem_src(&info, file.data(), file.size());
    jpeg_read_header(&info, TRUE);
    jpeg_start_decompress(&info);
    std::vector<Bytes> all;
    while (info.output_scanline < info.output_height) {
        Bytes row(info.output_width * unsigned(info.output_components));
        JSAMPROW rows[] = {row.data()};
        jpeg_read_scanlines(&info, rows, 1);
        all.push_back(row);
    }
    jpeg_destroy_decompress(&info);
    return all;
}

Colour ColourOf(const BYTE* s, int channels, bool adobe) {
    const auto light = [&](int ink) {
        return int(std::lround((adobe ? s[ink] * s[3] : (255 - s[ink]) * (255 - s[3])) / 255.0));
    };
    if (channels == 4)
        return {light(0), light(1), light(2), -1};
    return channels == 1 ? Colour{s[0], s[0], s[0], -1} : Colour{s[0], s[1], s[2], -1};
}

} // namespace

TEST_CASE("JPEG: greys, colours and inks, baseline and progressive, turned upright while they are decoded") {
    constexpr int kWidth = 45, kHeight = 141; // more than two strips of rows
    const struct {
        int channels;
        int depth;
        JpegOptions options;
    } rows[] = {{1, 8, {JCS_GRAYSCALE}},
                {3, 24, {JCS_YCbCr}},
                {3, 24, {JCS_YCbCr, true}},
                {3, 24, {JCS_RGB}},
                {4, 24, {JCS_CMYK, false, 0, false}},
                {4, 24, {JCS_CMYK, false, 0, true}},
                {4, 24, {JCS_YCCK, false, 0, true}}};
    for (const auto& row : rows)
        for (const int tag : {1, 3, 6, 7}) {
            CAPTURE(row.channels);
            CAPTURE(tag);
            JpegOptions options = row.options;
            options.orientation = tag;
            const Bytes file = JpegFile(kWidth, kHeight, row.channels, options);
            const std::vector<Bytes> samples = Samples(file);
            const Control control;
            REQUIRE(control.Load(file) == toolkit::kLoaded);
            const Decoded picture{control.Picture()};
            REQUIRE(picture.Header().biBitCount == row.depth);
            REQUIRE(picture.Header().biWidth == (tag > 4 ? kHeight : kWidth));
            int wrong = 0;
            for (int y = 0; y < kHeight; ++y)
                for (int x = 0; x < kWidth; ++x) {
                    const int flip = kWidth - 1 - x, under = kHeight - 1 - y;
                    const Colour found = tag == 1   ? picture.At(x, y)
                                         : tag == 3 ? picture.At(flip, under)
                                         : tag == 6 ? picture.At(under, x)
                                                    : picture.At(under, flip);
                    const BYTE* const at = samples[std::size_t(y)].data() + x * row.channels;
                    wrong += found != ColourOf(at, row.channels, row.options.adobe) ? 1 : 0;
                }
            CHECK(wrong == 0);
        }
}

TEST_CASE("JPEG: pictures of every orientation are known again until a byte of them changes") {
    for (const int tag : {1, 2, 3, 4, 5, 6})
        for (const int channels : {1, 3}) {
            CAPTURE(tag);
            CAPTURE(channels);
            const Bytes file = JpegFile(145, 141, channels, {channels == 1 ? JCS_GRAYSCALE : JCS_YCbCr, false, tag});
            const Control control;
            REQUIRE(control.Load(file) == toolkit::kLoaded);
            const Bytes saved = control.Saved();
            REQUIRE(saved.size() == 24 + file.size()); // it is the file
            for (std::size_t at = 40; at < control.Picture().size(); at += 4099) {
                const HGLOBAL block = control.Get(toolkit::GetDibHandle);
                BYTE* const memory = static_cast<BYTE*>(GlobalLock(block));
                memory[at] ^= 4;
                CHECK(control.Saved()[10] == 0);
                memory[at] ^= 4;
                GlobalUnlock(block);
            }
            CHECK(control.Saved() == saved);
        }
}

TEST_CASE("what lay in memory before does not show behind the pixels of a row") {
    std::vector<Bytes> files = {JpegFile(45, 33, 1, {JCS_GRAYSCALE}), JpegFile(45, 33, 3, {JCS_YCbCr, false, 6})};
    for (const int bits : {1, 2, 4, 8})
        for (const int tag : {1, 3, 6})
            files.push_back(PngFile({Kind::Grey, bits}, {false, false, tag}));
    const Control control;
    for (const Bytes& file : files) {
        REQUIRE(control.Load(file) == toolkit::kLoaded);
        const Bytes picture = control.Picture();
        REQUIRE(control(toolkit::SetDibHandle, HGLOBAL()) == S_OK);
        HGLOBAL blocks[3];
        for (HGLOBAL& block : blocks)
            block = BlockOf(Bytes(picture.size(), 0xFF));
        for (const HGLOBAL block : blocks)
            GlobalFree(block);
        REQUIRE(control.Load(file) == toolkit::kLoaded);
        CHECK(control.Picture() == picture);
    }
}

TEST_CASE("JPEG: a cut or broken file is damaged, a large one over budget") {
    const Control control;
    for (const bool progressive : {false, true}) {
        const Bytes file = JpegFile(45, 45, 3, {JCS_YCbCr, progressive});
        for (std::size_t size = 3; size < file.size(); ++size) {
            CAPTURE(size);
            REQUIRE(control.Load(Cut(file, size)) == toolkit::kDamaged);
        }
    }
    REQUIRE(control(toolkit::SetBudget, 1) == S_OK);
    CHECK(control.Load(JpegFile(700, 700, 3, {})) == toolkit::kOverBudget);
}
