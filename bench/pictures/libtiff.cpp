#include "bench/pictures/PictureFile.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include <tiffio.h>

namespace {

using namespace kel::bench;

// A file in memory: what has been written, or is to be read.
struct Memory {
    FileBytes* written;
    std::span<const unsigned char> bytes;
    std::size_t at = 0;

    std::size_t Size() const { return written ? written->size() : bytes.size(); }
};

tmsize_t Read(thandle_t handle, void* to, tmsize_t count) {
    Memory& memory = *static_cast<Memory*>(handle);
    const std::size_t given = std::min(memory.Size() - memory.at, static_cast<std::size_t>(count));
    std::memcpy(to, (memory.written ? memory.written->data() : memory.bytes.data()) + memory.at, given);
    memory.at += given;
    return static_cast<tmsize_t>(given);
}

tmsize_t Write(thandle_t handle, void* from, tmsize_t count) {
    Memory& memory = *static_cast<Memory*>(handle);
    const auto bytes = static_cast<std::size_t>(count);
    memory.written->resize(std::max(memory.written->size(), memory.at + bytes));
    std::memcpy(memory.written->data() + memory.at, from, bytes);
    memory.at += bytes;
    return count;
}

toff_t Seek(thandle_t handle, toff_t offset, int origin) {
    Memory& memory = *static_cast<Memory*>(handle);
    memory.at = offset + (origin == SEEK_SET ? 0 : origin == SEEK_CUR ? memory.at : memory.Size());
    return memory.at;
}

int Close(thandle_t) {
    return 0;
}

toff_t Size(thandle_t handle) {
    return static_cast<Memory*>(handle)->Size();
}

int Map(thandle_t handle, void** base, toff_t* size) {
    const Memory& memory = *static_cast<Memory*>(handle);
    *base = const_cast<unsigned char*>(memory.bytes.data());
    *size = memory.bytes.size();
    return !memory.written;
}

void Unmap(thandle_t, void*, toff_t) {}

TIFF* Open(Memory& memory, const char* mode) {
    return TIFFClientOpen("", mode, &memory, &Read, &Write, &Seek, &Close, &Size, &Map, &Unmap);
}

void SwapRgb(const unsigned char* from, unsigned char* to, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i, from += 3, to += 3) {
        to[0] = from[2];
        to[1] = from[1];
        to[2] = from[0];
    }
}

template <int Compression>
FileBytes Encode(const Photograph& photograph) {
    FileBytes file;
    Memory memory{&file, {}};
    TIFF* const tiff = Open(memory, "w");
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, photograph.width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, photograph.height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 3);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, Compression);
    TIFFSetField(tiff, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 16);
    FileBytes row(photograph.RowBytes());
    for (int y = 0; y < photograph.height; ++y) {
        SwapRgb(photograph.Row(y), row.data(), static_cast<std::size_t>(photograph.width));
        TIFFWriteScanline(tiff, row.data(), static_cast<std::uint32_t>(y), /*plane*/ 0);
    }
    TIFFClose(tiff);
    return file;
}

// Strips of red, green and blue, the form in which the library is quickest.
void Decode(std::span<const unsigned char> file, const Rows& rows) {
    Memory memory{nullptr, file};
    TIFF* const tiff = Open(memory, "rm");
    std::uint32_t height = 0;
    TIFFGetField(tiff, TIFFTAG_ROWSPERSTRIP, &height);
    const auto step = static_cast<int>(height);
    FileBytes strip(static_cast<std::size_t>(TIFFStripSize(tiff)));
    const std::size_t rowBytes = static_cast<std::size_t>(rows.width) * 3;
    for (int top = 0; top < rows.height; top += step) {
        TIFFReadEncodedStrip(tiff, static_cast<std::uint32_t>(top / step), strip.data(), /*whole*/ -1);
        for (int y = top; y < std::min(top + step, rows.height); ++y)
            SwapRgb(strip.data() + rowBytes * static_cast<std::size_t>(y - top), rows.Row(y),
                    static_cast<std::size_t>(rows.width));
    }
    TIFFClose(tiff);
}

const Enter<PictureFile> lzw{{"libtiff", "TIFF 2 MP, LZW", true, &Encode<COMPRESSION_LZW>, &Decode}};
const Enter<PictureFile> deflated{
    {"libtiff", "TIFF 2 MP, deflated", false, &Encode<COMPRESSION_ADOBE_DEFLATE>, &Decode}};

} // namespace
