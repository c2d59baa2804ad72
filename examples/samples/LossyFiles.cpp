#include "Files.h"
#include "Levels.h"

#include <cstdio>

#include <jpeglib.h>
#include <webp/encode.h>

namespace {

/// libjpeg's compressor into a file. The library ends the program with a message if the file cannot be written.
class Compressor {
public:
    Compressor(const std::string& path, const Canvas& canvas, int channels, J_COLOR_SPACE space)
        : m_file(std::fopen(path.c_str(), "wb")) {
        Expect(m_file != nullptr, path);
        m_info.err = jpeg_std_error(&m_errors);
        jpeg_create_compress(&m_info);
        jpeg_stdio_dest(&m_info, m_file);
        m_info.image_width = JDIMENSION(canvas.width);
        m_info.image_height = JDIMENSION(canvas.height);
        m_info.input_components = channels;
        m_info.in_color_space = space;
        jpeg_set_defaults(&m_info);
        jpeg_set_quality(&m_info, /*quality*/ 90, /*baseline*/ TRUE);
        jpeg_start_compress(&m_info, /*tables*/ TRUE);
    }
    Compressor(const Compressor&) = delete;
    Compressor& operator=(const Compressor&) = delete;
    ~Compressor() {
        jpeg_destroy_compress(&m_info);
        std::fclose(m_file);
    }

    /// A segment of data for applications.
    void Mark(int marker, const std::string& bytes) {
        const auto* const data = reinterpret_cast<const JOCTET*>(bytes.data());
        jpeg_write_marker(&m_info, marker, data, static_cast<unsigned>(bytes.size()));
    }
    void Row(std::vector<unsigned char>& samples) {
        JSAMPROW row = samples.data();
        jpeg_write_scanlines(&m_info, &row, /*rows*/ 1);
    }
    void Finish() { jpeg_finish_compress(&m_info); }

private:
    jpeg_compress_struct m_info = {};
    jpeg_error_mgr m_errors = {};
    std::FILE* const m_file;
};

/// What an encoder is given for a kind of file.
struct Layout {
    int channels;
    J_COLOR_SPACE space;
    void (*append)(std::vector<unsigned char>& row, const Colour& colour);
};

void AppendGrey(std::vector<unsigned char>& row, const Colour& colour) {
    row.push_back(Byte(colour.green));
}

void AppendColours(std::vector<unsigned char>& row, const Colour& colour) {
    const auto bytes = Bytes(colour);
    row.insert(row.end(), bytes.begin(), bytes.end());
}

// Inks are stored as the light that they leave; black takes what the three colours have in common.
void AppendInks(std::vector<unsigned char>& row, const Colour& colour) {
    const float light = std::max({colour.red, colour.green, colour.blue, 1 / 255.0F});
    for (const float channel : {colour.red / light, colour.green / light, colour.blue / light, light})
        row.push_back(Byte(channel));
}

Layout LayoutOf(JpegKind kind) {
    switch (kind) {
    case JpegKind::Greys:
        return {1, JCS_GRAYSCALE, &AppendGrey};
    case JpegKind::Inks:
        return {4, JCS_CMYK, &AppendInks};
    default:
        return {3, JCS_RGB, &AppendColours};
    }
}

// One entry of a directory: the orientation 6, "turn me right".
std::string TurnMark() {
    using namespace std::string_literals;
    return "Exif\0\0II*\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0\x06\0\0\0\0\0\0\0"s;
}

Canvas TurnedLeft(const Canvas& upright) {
    Canvas turned = {upright.height, upright.width, {}};
    for (int y = 0; y < turned.height; ++y) {
        for (int x = 0; x < turned.width; ++x)
            turned.pixels.push_back(upright.At(upright.width - 1 - y, x));
    }
    return turned;
}

} // namespace

void WriteJpeg(const std::string& path, const Canvas& canvas, JpegKind kind) {
    const Layout layout = LayoutOf(kind);
    const Canvas stored = kind == JpegKind::Sideways ? TurnedLeft(canvas) : canvas;
    Compressor compressor(path, stored, layout.channels, layout.space);
    if (kind == JpegKind::Sideways)
        compressor.Mark(JPEG_APP0 + 1, TurnMark());
    std::vector<unsigned char> row;
    for (int y = 0; y < stored.height; ++y) {
        row.clear();
        for (int x = 0; x < stored.width; ++x)
            layout.append(row, stored.At(x, y));
        compressor.Row(row);
    }
    compressor.Finish();
}

void WriteWebP(const std::string& path, const Canvas& canvas) {
    std::uint8_t* encoded = nullptr;
    const std::size_t size = WebPEncodeRGB(Triples(canvas).data(), canvas.width, canvas.height, canvas.width * 3,
                                           /*quality*/ 88, &encoded);
    const std::string bytes(reinterpret_cast<const char*>(encoded), size);
    WebPFree(encoded);
    WriteBytes(path, bytes);
}
