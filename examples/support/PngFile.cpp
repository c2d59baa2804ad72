#include "PngFile.h"

#include <algorithm>
#include <cstdint>

namespace {

void AppendBigEndian(NarrowString& bytes, std::uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(value >> shift);
}

std::uint32_t Crc32(const NarrowString& bytes) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (const char byte : bytes) {
        crc ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320 : 0);
    }
    return ~crc;
}

std::uint32_t Adler32(const NarrowString& bytes) {
    std::uint32_t low = 1;
    std::uint32_t high = 0;
    for (const char byte : bytes) {
        low = (low + static_cast<unsigned char>(byte)) % 65521;
        high = (high + low) % 65521;
    }
    return high << 16 | low;
}

// Length, name, data, checksum of name and data.
void AppendChunk(NarrowString& file, const char* name, const NarrowString& data) {
    AppendBigEndian(file, static_cast<std::uint32_t>(data.size()));
    const NarrowString body = name + data;
    file += body;
    AppendBigEndian(file, Crc32(body));
}

// A zlib stream of stored blocks: a flag for the last one, the length and its complement in front of each.
NarrowString Stored(const NarrowString& bytes) {
    constexpr std::size_t kMost = 65535;
    NarrowString stream = "\x78\x01";
    for (std::size_t at = 0; at < bytes.size(); at += kMost) {
        const std::size_t count = std::min(kMost, bytes.size() - at);
        const std::size_t lengths = count | (~count & 0xFFFF) << 16;
        stream += static_cast<char>(at + count == bytes.size());
        for (int shift = 0; shift < 32; shift += 8)
            stream += static_cast<char>(lengths >> shift);
        stream.append(bytes, at, count);
    }
    AppendBigEndian(stream, Adler32(bytes));
    return stream;
}

// Rows from the top, each behind the number of its filter; red comes first.
NarrowString Rows(const IBitmap& picture, const char* bits) {
    const int width = static_cast<int>(picture.GetWidth());
    const int step = picture.GetBitsPerPixel() / 8;
    NarrowString rows;
    for (int y = static_cast<int>(picture.GetHeight()) - 1; y >= 0; --y) {
        const char* const row = bits + y * picture.GetScanlineSize();
        rows += '\0';
        for (int x = 0; x < width; ++x)
            rows.append({row[x * step + 2], row[x * step + 1], row[x * step]});
    }
    return rows;
}

} // namespace

NarrowString EncodePng(const IBitmap& picture) {
    const auto* const bits = static_cast<const char*>(picture.LockSurface());
    if (!bits || picture.GetBitsPerPixel() < 24)
        return {};
    NarrowString header;
    AppendBigEndian(header, picture.GetWidth());
    AppendBigEndian(header, picture.GetHeight());
    header.append({8, 2, 0, 0, 0}); // 8 bits a channel, red green blue
    NarrowString file = "\x89PNG\r\n\x1A\n";
    AppendChunk(file, "IHDR", header);
    AppendChunk(file, "IDAT", Stored(Rows(picture, bits)));
    AppendChunk(file, "IEND", {});
    picture.UnlockSurface();
    return file;
}
