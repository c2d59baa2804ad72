#include "Files.h"
#include "Levels.h"

#include <fstream>
#include <memory>
#include <stdexcept>

#include <gif_lib.h>
#include <png.h>
#include <tiffio.h>

namespace {

using Row = std::vector<unsigned char>;

void WriteSimplePng(const std::string& path, png_uint_32 format, int width, int height, const Row& pixels,
                    const Row& colours) {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.width = png_uint_32(width);
    image.height = png_uint_32(height);
    image.format = format;
    image.colormap_entries = png_uint_32(colours.size() / 3);
    Expect(png_image_write_to_file(&image, path.c_str(), /*convert_to_8_bit*/ 0, pixels.data(), /*row_stride*/ 0,
                                   colours.data()) != 0,
           path);
}

Row ColourTable(const Indexed& picture) {
    Row table;
    for (const Colour& colour : picture.colours) {
        const auto bytes = Bytes(colour);
        table.insert(table.end(), bytes.begin(), bytes.end());
    }
    return table;
}

/// The pixels of a row, packed; the highest bits come first.
Row Packed(const Indexed& picture, int y, int bits) {
    Row row((std::size_t(picture.width) * std::size_t(bits) + 7) / 8);
    for (int x = 0; x < picture.width; ++x) {
        const unsigned pixel = picture.pixels[std::size_t(y) * std::size_t(picture.width) + std::size_t(x)];
        row[std::size_t(x * bits / 8)] |= static_cast<unsigned char>(pixel << (8 - bits - x * bits % 8));
    }
    return row;
}

using Tiff = std::unique_ptr<TIFF, decltype(&TIFFClose)>;

struct TiffLayout {
    int bits;
    int channels;
    int photometric;
    int compression;
};

Tiff OpenTiff(const std::string& path, int width, int height, const TiffLayout& layout) {
    Tiff tiff(TIFFOpen(path.c_str(), "w"), &TIFFClose);
    Expect(tiff != nullptr, path);
    TIFFSetField(tiff.get(), TIFFTAG_IMAGEWIDTH, width);
    TIFFSetField(tiff.get(), TIFFTAG_IMAGELENGTH, height);
    TIFFSetField(tiff.get(), TIFFTAG_BITSPERSAMPLE, layout.bits);
    TIFFSetField(tiff.get(), TIFFTAG_SAMPLESPERPIXEL, layout.channels);
    TIFFSetField(tiff.get(), TIFFTAG_PHOTOMETRIC, layout.photometric);
    TIFFSetField(tiff.get(), TIFFTAG_COMPRESSION, layout.compression);
    TIFFSetField(tiff.get(), TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff.get(), TIFFTAG_ROWSPERSTRIP, height);
    if (layout.compression == COMPRESSION_ADOBE_DEFLATE)
        TIFFSetField(tiff.get(), TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
    return tiff;
}

void WriteRow(const Tiff& tiff, void* samples, int y, const std::string& path) {
    Expect(TIFFWriteScanline(tiff.get(), samples, std::uint32_t(y), /*sample*/ 0) == 1, path);
}

std::string LittleEndian(unsigned value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i)
        text += static_cast<char>(value >> 8 * i);
    return text;
}

/// File header, information header and colour table of a bitmap file, whose pixels take @p pixelBytes.
std::string BmpHeader(int width, int height, int bits, const std::string& table, std::size_t pixelBytes) {
    const auto start = unsigned(14 + 40 + table.size());
    std::string header = "BM" + LittleEndian(start + unsigned(pixelBytes), 4) + LittleEndian(0, 4);
    header += LittleEndian(start, 4) + LittleEndian(40, 4) + LittleEndian(unsigned(width), 4);
    header += LittleEndian(unsigned(height), 4) + LittleEndian(1, 2) + LittleEndian(unsigned(bits), 2);
    header += LittleEndian(0, 4) + LittleEndian(unsigned(pixelBytes), 4) + std::string(8, '\0');
    return header + LittleEndian(unsigned(table.size() / 4), 4) + LittleEndian(0, 4) + table;
}

std::string PaddedRow(std::string row) {
    row.resize((row.size() + 3) / 4 * 4);
    return row;
}

} // namespace

void Expect(bool written, const std::string& path) {
    if (!written)
        throw std::runtime_error("cannot write " + path);
}

void WriteBytes(const std::string& path, const std::string& bytes) {
    std::ofstream file(path, std::ios::binary);
    Expect(bool(file << bytes << std::flush), path);
}

std::vector<unsigned char> Triples(const Canvas& canvas) {
    std::vector<unsigned char> triples;
    triples.reserve(canvas.pixels.size() * 3);
    for (const Colour& pixel : canvas.pixels) {
        const auto bytes = Bytes(pixel);
        triples.insert(triples.end(), bytes.begin(), bytes.end());
    }
    return triples;
}

void WritePng(const std::string& path, const Canvas& canvas) {
    if (!canvas.HasAlpha())
        return WriteSimplePng(path, PNG_FORMAT_RGB, canvas.width, canvas.height, Triples(canvas), {});
    Row pixels;
    for (const Colour& pixel : canvas.pixels)
        for (const float channel : {pixel.red, pixel.green, pixel.blue, pixel.alpha})
            pixels.push_back(Byte(channel));
    WriteSimplePng(path, PNG_FORMAT_RGBA, canvas.width, canvas.height, pixels, {});
}

void WritePng(const std::string& path, const Indexed& picture) {
    WriteSimplePng(path, PNG_FORMAT_RGB_COLORMAP, picture.width, picture.height, picture.pixels, ColourTable(picture));
}

void WriteTiff(const std::string& path, const Canvas& canvas, int bits) {
    const Tiff tiff =
        OpenTiff(path, canvas.width, canvas.height, {bits, 3, PHOTOMETRIC_RGB, COMPRESSION_ADOBE_DEFLATE});
    const int most = (1 << bits) - 1;
    for (int y = 0; y < canvas.height; ++y) {
        std::vector<std::uint16_t> wide;
        for (int x = 0; x < canvas.width; ++x)
            for (const float channel : {canvas.At(x, y).red, canvas.At(x, y).green, canvas.At(x, y).blue})
                wide.push_back(Level(channel, most));
        Row narrow(wide.begin(), wide.end());
        WriteRow(tiff, bits == 16 ? static_cast<void*>(wide.data()) : narrow.data(), y, path);
    }
}

void WriteTiff(const std::string& path, const Indexed& picture) {
    const Tiff tiff =
        OpenTiff(path, picture.width, picture.height, {1, 1, PHOTOMETRIC_MINISWHITE, COMPRESSION_CCITTFAX4});
    for (int y = 0; y < picture.height; ++y)
        WriteRow(tiff, Packed(picture, y, 1).data(), y, path);
}

void WriteBmp(const std::string& path, const Canvas& canvas) {
    std::string pixels;
    for (int y = canvas.height - 1; y >= 0; --y) {
        std::string row;
        for (int x = 0; x < canvas.width; ++x) {
            const auto bytes = Bytes(canvas.At(x, y));
            row.append(bytes.rbegin(), bytes.rend());
        }
        pixels += PaddedRow(row);
    }
    WriteBytes(path, BmpHeader(canvas.width, canvas.height, 24, {}, pixels.size()) + pixels);
}

void WriteBmp(const std::string& path, const Indexed& picture) {
    std::string table;
    for (const Colour& colour : picture.colours) {
        const auto bytes = Bytes(colour);
        table.append(bytes.rbegin(), bytes.rend());
        table += '\0';
    }
    std::string pixels;
    for (int y = picture.height - 1; y >= 0; --y) {
        const Row row = Packed(picture, y, 4);
        pixels += PaddedRow({row.begin(), row.end()});
    }
    WriteBytes(path, BmpHeader(picture.width, picture.height, 4, table, pixels.size()) + pixels);
}

void WriteGif(const std::string& path, const Indexed& picture) {
    int status = 0;
    GifFileType* const file = EGifOpenFileName(path.c_str(), /*keep*/ false, &status);
    Expect(file != nullptr, path);
    const auto count = int(picture.colours.size());
    const Row colours = ColourTable(picture);
    ColorMapObject* const map = GifMakeMapObject(count, reinterpret_cast<const GifColorType*>(colours.data()));
    bool written = EGifPutScreenDesc(file, picture.width, picture.height, 8, 0, map) == GIF_OK &&
                   EGifPutImageDesc(file, 0, 0, picture.width, picture.height, false, nullptr) == GIF_OK;
    Row pixels = picture.pixels;
    written = written && EGifPutLine(file, pixels.data(), int(pixels.size())) == GIF_OK;
    GifFreeMapObject(map);
    Expect(EGifCloseFile(file, &status) == GIF_OK && written, path);
}
