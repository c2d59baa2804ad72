// Writes the pictures of docs/effects.md: a test picture and what each effect makes of it.
//
// usage: keleffects FOLDER

#include "toolkit/effects/Effect.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <fstream>
#include <string>

#include <zlib.h>

namespace {

using namespace kel::toolkit;

constexpr int kWidth = 96;
constexpr int kHeight = 72;

using Colour = std::array<BYTE, 3>; // blue, green, red

// A sky, a hill of stripes, a sun and a chequered corner: gradients, edges and fine detail.
Colour ColourAt(int x, int y) {
    if (std::hypot(x - 66, y - 24) < 14)
        return {60, 200, 250};
    if (x < 24 && y < 24)
        return (x / 4 + y / 4) % 2 == 0 ? Colour{30, 30, 30} : Colour{240, 240, 240};
    if (y > 46 + 10 * std::sin(x / 12.0))
        return (x + y) / 5 % 2 == 0 ? Colour{60, 140, 70} : Colour{50, 90, 150};
    return {static_cast<BYTE>(230 - y), static_cast<BYTE>(120 + 2 * y), static_cast<BYTE>(50 + 2 * y)};
}

PackedDib TestPicture() {
    PackedDib picture = PackedDib::Make(kWidth, kHeight, 24);
    const DibLock lock(picture);
    for (int y = 0; lock && y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) {
            const Colour colour = ColourAt(x, y);
            std::copy(colour.begin(), colour.end(), lock.Row(y) + std::size_t{3} * static_cast<std::size_t>(x));
        }
    return picture;
}

std::string BigEndian(std::size_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(value >> shift);
    return bytes;
}

/// Length, name, data, checksum of name and data.
std::string Chunk(const std::string& name, const std::string& data) {
    const std::string body = name + data;
    const auto crc = crc32(0, reinterpret_cast<const Bytef*>(body.data()), static_cast<uInt>(body.size()));
    return BigEndian(data.size()) + body + BigEndian(crc);
}

std::string Compressed(const std::string& bytes) {
    uLongf size = compressBound(static_cast<uLong>(bytes.size()));
    std::string packed(size, '\0');
    compress2(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(bytes.data()),
              static_cast<uLong>(bytes.size()), 9);
    packed.resize(size);
    return packed;
}

/// Rows from the top, red first, each as its differences from the pixels to the left.
std::string Rows(const DibLock& picture) {
    std::string rows;
    for (int y = 0; y < picture.Layout().height; ++y) {
        rows += '\1';
        const BYTE* const row = picture.Row(y);
        for (int i = 0; i < 3 * picture.Layout().width; ++i) {
            const int at = i / 3 * 3 + 2 - i % 3;
            rows += static_cast<char>(row[at] - (i < 3 ? 0 : row[at - 3]));
        }
    }
    return rows;
}

std::string PngOf(const PackedDib& picture) {
    const DibLock lock(picture);
    if (!lock)
        return {};
    const std::string header = BigEndian(static_cast<std::size_t>(lock.Layout().width)) +
                               BigEndian(static_cast<std::size_t>(lock.Layout().height)) +
                               std::string("\x08\x02\x00\x00\x00", 5);
    return "\x89PNG\r\n\x1A\n" + Chunk("IHDR", header) + Chunk("IDAT", Compressed(Rows(lock))) + Chunk("IEND", "");
}

struct Entry {
    const char* name;
    HRESULT (*apply)(PackedDib& picture);
};

const Entry kEntries[] = {
    {"original", [](PackedDib&) { return S_OK; }},
    {"negate", effects::Negate},
    {"brightness", [](PackedDib& picture) { return effects::Brightness(picture, 35); }},
    {"contrast", [](PackedDib& picture) { return effects::Contrast(picture, 50); }},
    {"gamma", [](PackedDib& picture) { return effects::Gamma(picture, 2.2F); }},
    {"solarize", [](PackedDib& picture) { return effects::Solarize(picture, 128); }},
    {"posterize", [](PackedDib& picture) { return effects::Posterize(picture, 4); }},
    {"equalize", effects::Equalize},
    {"emboss", effects::Emboss},
    {"erode", effects::Erode},
    {"outline", effects::Outline},
    {"sharpen", [](PackedDib& picture) { return effects::Sharpen(picture, 100); }},
    {"soften", [](PackedDib& picture) { return effects::Soften(picture, 100); }},
    {"mosaic", [](PackedDib& picture) { return effects::Mosaic(picture, 6); }},
    {"concave", [](PackedDib& picture) { return effects::Bulge(picture, 1); }},
    {"convex", [](PackedDib& picture) { return effects::Bulge(picture, 0); }},
    {"pinch", [](PackedDib& picture) { return effects::Pinch(picture, 80); }},
    {"swirl", [](PackedDib& picture) { return effects::Swirl(picture, 180); }},
    {"flip", effects::Flip},
    {"mirror", effects::Mirror},
    {"rotate", [](PackedDib& picture) { return effects::Rotate(picture, 30); }},
    {"resize", [](PackedDib& picture) { return effects::ResizeTo(picture, 48, 36); }},
    {"resample", [](PackedDib& picture) { return effects::ResampleTo(picture, 48, 36); }},
};

bool Write(const std::string& folder, const Entry& entry) {
    PackedDib picture = TestPicture();
    if (!picture || FAILED(entry.apply(picture)))
        return false;
    std::ofstream file(folder + "/" + entry.name + ".png", std::ios::binary);
    file << PngOf(picture);
    return static_cast<bool>(file.flush());
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: keleffects FOLDER\n");
        return 2;
    }
    for (const Entry& entry : kEntries)
        if (!Write(argv[1], entry)) {
            std::fprintf(stderr, "keleffects: cannot make %s/%s.png\n", argv[1], entry.name);
            return 1;
        }
    return 0;
}
