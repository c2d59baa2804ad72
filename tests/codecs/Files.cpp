#include "tests/codecs/Files.h"

#include <algorithm>
#include <cstdio>

#include <gif_lib.h>
#include <png.h>
#include <tiffio.h>
#include <unistd.h>
#include <webp/encode.h>
#include <webp/mux.h>

namespace kel::test {

// What the libraries call a kind; -1 for what they do not know.
struct Form {
    int channels;
    int png;
    int tiff;
    int extra = -1; // samples
};

static const Form& FormOf(Kind kind) {
    static constexpr Form kForms[] = {{1, PNG_COLOR_TYPE_GRAY, PHOTOMETRIC_MINISBLACK},
                                      {1, -1, PHOTOMETRIC_MINISWHITE},
                                      {2, PNG_COLOR_TYPE_GRAY_ALPHA, PHOTOMETRIC_MINISBLACK, EXTRASAMPLE_UNASSALPHA},
                                      {1, PNG_COLOR_TYPE_PALETTE, PHOTOMETRIC_PALETTE},
                                      {3, PNG_COLOR_TYPE_RGB, PHOTOMETRIC_RGB},
                                      {4, -1, PHOTOMETRIC_RGB, EXTRASAMPLE_UNSPECIFIED},
                                      {4, PNG_COLOR_TYPE_RGBA, PHOTOMETRIC_RGB, EXTRASAMPLE_UNASSALPHA},
                                      {4, -1, PHOTOMETRIC_RGB, EXTRASAMPLE_ASSOCALPHA},
                                      {4, -1, PHOTOMETRIC_SEPARATED},
                                      {4, -1, PHOTOMETRIC_MINISBLACK, EXTRASAMPLE_UNASSALPHA}};
    return kForms[static_cast<int>(kind)];
}

int Raster::Channels() const {
    return FormOf(kind).channels;
}

int Raster::Sample(int x, int y, int channel) const {
    const auto mixed = static_cast<unsigned>(x * 7919 + y * 104729 + channel * 1299709 + 12345) * 2654435761U;
    return static_cast<int>(mixed >> (32 - bits));
}

static Bytes Pack(const Raster& raster, int y, int first, int end) {
    Bytes row(static_cast<std::size_t>(raster.width * (end - first) * raster.bits + 7) / 8);
    std::size_t bit = 0;
    for (int x = 0; x < raster.width; ++x)
        for (int c = first; c < end; ++c, bit += static_cast<std::size_t>(raster.bits)) {
            const int sample = raster.Sample(x, y, c);
            if (raster.bits == 16)
                reinterpret_cast<std::uint16_t*>(row.data())[bit / 16] = static_cast<std::uint16_t>(sample);
            else
                row[bit / 8] |= static_cast<BYTE>(sample << (8 - raster.bits - static_cast<int>(bit % 8)));
        }
    return row;
}

Bytes Raster::Row(int y) const {
    return Pack(*this, y, 0, Channels());
}

Bytes Raster::Row(int y, int channel) const {
    return Pack(*this, y, channel, channel + 1);
}

Colour PaletteColour(int index) {
    return {index * 7 & 255, 255 - index, index * 31 & 255, -1};
}

Colour ColourAt(const Raster& raster, int x, int y) {
    const auto scaled = [](int value, int by, int most) { return int(std::lround(double(value) * by / most)); };
    const auto part = [&](int channel) { return scaled(raster.Sample(x, y, channel), 255, (1 << raster.bits) - 1); };
    const auto straight = [&](int channel) {
        return part(3) == 0 ? 0 : std::min(255, scaled(part(channel), 255, part(3)));
    };
    const auto light = [&](int ink) { return scaled(255 - part(ink), 255 - part(3), 255); };
    switch (raster.kind) {
    case Kind::Grey:
        return {part(0), part(0), part(0), -1};
    case Kind::WhiteFirst:
        return {255 - part(0), 255 - part(0), 255 - part(0), -1};
    case Kind::GreyAlpha:
    case Kind::GreyAlphaExtra:
        return {part(0), part(0), part(0), part(1)};
    case Kind::Palette:
        return PaletteColour(raster.Sample(x, y, 0));
    case Kind::Rgba:
        return {part(0), part(1), part(2), part(3)};
    case Kind::RgbaMultiplied:
        return {straight(0), straight(1), straight(2), part(3)};
    case Kind::Cmyk:
        return {light(0), light(1), light(2), -1};
    default:
        return {part(0), part(1), part(2), -1};
    }
}

Bytes ExifBlock(int orientation, bool big) {
    // clang-format off
    const Bytes little = {'I', 'I', 42, 0, 8, 0, 0, 0, 2, 0,
                          0x0F, 1, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                          0x12, 1, 3, 0, 1, 0, 0, 0, static_cast<BYTE>(orientation), 0, 0, 0};
    const Bytes other = {'M', 'M', 0, 42, 0, 0, 0, 8, 0, 2,
                         1, 0x0F, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0,
                         1, 0x12, 0, 3, 0, 0, 0, 1, 0, static_cast<BYTE>(orientation), 0, 0};
    // clang-format on
    return big ? other : little;
}

Bytes PngFile(const Raster& raster, const PngOptions& options) {
    Bytes file;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    const auto write = [](png_structp to, png_bytep data, std::size_t count) {
        Bytes& all = *static_cast<Bytes*>(png_get_io_ptr(to));
        all.insert(all.end(), data, data + count);
    };
    png_set_write_fn(png, &file, write, nullptr);
    png_set_IHDR(png, info, png_uint_32(raster.width), png_uint_32(raster.height), raster.bits, FormOf(raster.kind).png,
                 options.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, 0, 0);
    std::vector<png_color> palette;
    for (int i = 0; i < 1 << std::min(raster.bits, 8); ++i) {
        const Colour colour = PaletteColour(i);
        palette.push_back({png_byte(colour[0]), png_byte(colour[1]), png_byte(colour[2])});
    }
    if (raster.kind == Kind::Palette)
        png_set_PLTE(png, info, palette.data(), int(palette.size()));
    const png_byte alphas[] = {255, 0};
    const png_color_16 key = {0, 1, 1, 1, 1};
    if (options.transparent)
        png_set_tRNS(png, info, alphas, 2, &key);
    Bytes exif = ExifBlock(options.orientation, true);
    if (options.orientation != 0)
        png_set_eXIf_1(png, info, static_cast<png_uint_32>(exif.size()), exif.data());
    png_write_info(png, info);
    png_set_swap(png);
    for (int pass = png_set_interlace_handling(png); pass > 0; --pass)
        for (int y = 0; y < raster.height; ++y)
            png_write_row(png, raster.Row(y).data());
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return file;
}

static void WriteTiles(TIFF* tiff, const Raster& raster) {
    constexpr int kSide = 16;
    TIFFSetField(tiff, TIFFTAG_TILEWIDTH, kSide);
    TIFFSetField(tiff, TIFFTAG_TILELENGTH, kSide);
    const auto bytes = static_cast<std::size_t>(TIFFTileRowSize(tiff));
    for (int y = 0; y < raster.height; y += kSide)
        for (std::size_t i = 0; i * kSide < std::size_t(raster.width); ++i) {
            Bytes tile(bytes * kSide);
            for (int k = 0; k < std::min(kSide, raster.height - y); ++k) {
                const Bytes row = raster.Row(y + k);
                const std::size_t count = std::min(bytes, row.size() - i * bytes);
                std::copy_n(row.begin() + long(i * bytes), count, tile.begin() + long(bytes) * k);
            }
            TIFFWriteTile(tiff, tile.data(), std::uint32_t(i * kSide), std::uint32_t(y), 0, 0);
        }
}

static void WriteStrips(TIFF* tiff, const Raster& raster, bool planes, int rows) {
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, rows);
    for (int plane = 0; plane < (planes ? raster.Channels() : 1); ++plane)
        for (int y = 0; y < raster.height; ++y) {
            Bytes row = planes ? raster.Row(y, plane) : raster.Row(y);
            TIFFWriteScanline(tiff, row.data(), std::uint32_t(y), std::uint16_t(plane));
        }
}

Bytes TiffFile(const Raster& raster, const TiffOptions& options) {
    std::FILE* const stream = std::tmpfile();
    TIFF* const tiff = TIFFFdOpen(dup(fileno(stream)), "", "w");
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, raster.width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, raster.height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, raster.bits);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, raster.Channels());
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, FormOf(raster.kind).tiff);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, options.planes ? PLANARCONFIG_SEPARATE : PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, options.compression);
    TIFFSetField(tiff, TIFFTAG_ORIENTATION, options.orientation);
    const auto extra = static_cast<std::uint16_t>(FormOf(raster.kind).extra);
    if (FormOf(raster.kind).extra >= 0)
        TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &extra);
    std::vector<std::uint16_t> table[3];
    for (int i = 0; i < 1 << std::min(raster.bits, 8); ++i)
        for (std::size_t c = 0; c < 3; ++c)
            table[c].push_back(static_cast<std::uint16_t>(PaletteColour(i)[c] * 257));
    if (raster.kind == Kind::Palette)
        TIFFSetField(tiff, TIFFTAG_COLORMAP, table[0].data(), table[1].data(), table[2].data());
    if (options.tiles)
        WriteTiles(tiff, raster);
    else
        WriteStrips(tiff, raster, options.planes, options.stripRows);
    TIFFClose(tiff);
    std::fseek(stream, 0, SEEK_END);
    Bytes file(std::size_t(std::ftell(stream)));
    std::rewind(stream);
    REQUIRE(std::fread(file.data(), 1, file.size(), stream) == file.size());
    std::fclose(stream);
    return file;
}

Bytes WebPFile(const Raster& raster, bool animated, int orientation) {
    Bytes pixels;
    for (int y = 0; y < raster.height; ++y) {
        Bytes row = raster.Row(y);
        // Colours that cannot be seen are the encoder's to change.
        for (std::size_t i = 3; raster.Channels() == 4 && i < row.size(); i += 4)
            row[i] |= 1;
        pixels.insert(pixels.end(), row.begin(), row.end());
    }
    std::uint8_t* made = nullptr;
    const auto encode = raster.Channels() == 4 ? &WebPEncodeLosslessRGBA : &WebPEncodeLosslessRGB;
    const std::size_t size =
        encode(pixels.data(), raster.width, raster.height, raster.width * raster.Channels(), &made);
    const WebPData image = {made, size};
    WebPMux* const mux = WebPMuxNew();
    WebPMuxFrameInfo frame = {image, 2, 4, 100, WEBP_CHUNK_ANMF, WEBP_MUX_DISPOSE_NONE, WEBP_MUX_NO_BLEND, {}};
    if (animated) {
        const WebPMuxAnimParams once = {0, 1};
        WebPMuxSetAnimationParams(mux, &once);
        WebPMuxPushFrame(mux, &frame, 1);
        WebPMuxSetCanvasSize(mux, raster.width + frame.x_offset, raster.height + frame.y_offset);
    } else
        WebPMuxSetImage(mux, &image, 1);
    const Bytes exif = ExifBlock(orientation, false);
    const WebPData block = {exif.data(), exif.size()};
    if (orientation != 0)
        WebPMuxSetChunk(mux, "EXIF", &block, 1);
    WebPData whole;
    WebPMuxAssemble(mux, &whole);
    const Bytes file(whole.bytes, whole.bytes + whole.size);
    WebPDataClear(&whole);
    WebPMuxDelete(mux);
    WebPFree(made);
    return file;
}

Bytes GifFile(const Raster& raster, bool interlaced, bool transparent, int left) {
    Bytes file;
    const auto write = [](GifFileType* gif, const GifByteType* from, int count) {
        Bytes& all = *static_cast<Bytes*>(gif->UserData);
        all.insert(all.end(), from, from + count);
        return count;
    };
    GifFileType* const gif = EGifOpen(&file, write, nullptr);
    ColorMapObject* const map = GifMakeMapObject(1 << raster.bits, nullptr);
    for (int i = 0; i < map->ColorCount; ++i) {
        const Colour colour = PaletteColour(i);
        map->Colors[i] = {GifByteType(colour[0]), GifByteType(colour[1]), GifByteType(colour[2])};
    }
    EGifSetGifVersion(gif, true);
    EGifPutScreenDesc(gif, raster.width + left, raster.height, raster.bits, 0, map);
    GifByteType control[4];
    const GraphicsControlBlock block = {DISPOSAL_UNSPECIFIED, false, 0, transparent ? 1 : NO_TRANSPARENT_COLOR};
    EGifGCBToExtension(&block, control);
    EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, sizeof control, control);
    EGifPutImageDesc(gif, left, 0, raster.width, raster.height, interlaced, nullptr);
    constexpr int kFirst[] = {0, 4, 2, 1}, kStep[] = {8, 8, 4, 2};
    for (int pass = 0; pass < (interlaced ? 4 : 1); ++pass)
        for (int y = kFirst[pass]; y < raster.height; y += interlaced ? kStep[pass] : 1) {
            Bytes line;
            for (int x = 0; x < raster.width; ++x)
                line.push_back(static_cast<BYTE>(raster.Sample(x, y, 0)));
            EGifPutLine(gif, line.data(), raster.width);
        }
    EGifCloseFile(gif, nullptr);
    GifFreeMapObject(map);
    return file;
}

Colour Decoded::At(int x, int y) const {
    const int depth = Header().biBitCount;
    const std::size_t rowBytes = std::size_t(Header().biWidth * depth + 31) / 32 * 4;
    const BYTE* const row = dib.data() + dib.size() - rowBytes * std::size_t(y + 1);
    if (depth > 8) {
        const BYTE* const pixel = row + x * depth / 8;
        return {pixel[2], pixel[1], pixel[0], depth == 32 ? pixel[3] : -1};
    }
    const int index = row[x * depth / 8] >> (8 - depth - x * depth % 8) & ((1 << depth) - 1);
    const BYTE* const colour = dib.data() + sizeof(BITMAPINFOHEADER) + index * 4;
    return {colour[2], colour[1], colour[0], -1};
}

} // namespace kel::test
