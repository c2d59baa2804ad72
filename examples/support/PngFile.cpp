#include "PngFile.h"

#include "Report.h"
#include "WholeFile.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include <zlib.h>

namespace {

using Byte = unsigned char;

// A picture's packed bitmap: header, masks, colour table, rows.
class Dib {
public:
    explicit Dib(const IBitmap& picture)
        : m_block(picture.GetDibClone()), m_header(static_cast<const BITMAPINFOHEADER*>(GlobalLock(m_block))) {}
    Dib(const Dib&) = delete;
    Dib& operator=(const Dib&) = delete;
    ~Dib() {
        if (!m_header)
            return;
        GlobalUnlock(m_block);
        GlobalFree(m_block);
    }

    // Whether there is a picture of a depth that a PNG file can have.
    bool IsUsable() const { return m_header && Depth() != 16; }
    std::size_t Width() const { return static_cast<std::size_t>(m_header->biWidth); }
    std::size_t Height() const { return static_cast<std::size_t>(std::abs(m_header->biHeight)); }
    int Depth() const { return m_header->biBitCount; }
    std::size_t Colors() const {
        const std::size_t most = Depth() <= 8 ? std::size_t{1} << Depth() : 0;
        return m_header->biClrUsed != 0 ? m_header->biClrUsed : most;
    }
    const RGBQUAD* Table() const { return reinterpret_cast<const RGBQUAD*>(Bytes() + TableOffset()); }
    // Row y, from the top.
    const Byte* Row(std::size_t y) const {
        const std::size_t rowBytes = (Width() * static_cast<std::size_t>(Depth()) + 31) / 32 * 4;
        const std::size_t place = m_header->biHeight < 0 ? y : Height() - 1 - y;
        return Bytes() + TableOffset() + Colors() * sizeof(RGBQUAD) + place * rowBytes;
    }

private:
    const Byte* Bytes() const { return reinterpret_cast<const Byte*>(m_header); }
    std::size_t TableOffset() const {
        const bool hasMasks = m_header->biCompression == BI_BITFIELDS && m_header->biSize == sizeof *m_header;
        return m_header->biSize + (hasMasks ? 3 * sizeof(DWORD) : 0);
    }

    HGLOBAL m_block;
    const BITMAPINFOHEADER* m_header;
};

void AppendBigEndian(NarrowString& bytes, std::uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(value >> shift);
}

const Byte* BytesOf(const NarrowString& text) {
    return reinterpret_cast<const Byte*>(text.data());
}

// Length, name, data, checksum of name and data.
void AppendChunk(NarrowString& file, const char* name, const NarrowString& data) {
    AppendBigEndian(file, static_cast<std::uint32_t>(data.size()));
    const std::size_t start = file.size();
    file += name;
    file += data;
    AppendBigEndian(
        file, static_cast<std::uint32_t>(crc32(0, BytesOf(file) + start, static_cast<uInt>(file.size() - start))));
}

bool HasOpacity(const Dib& dib) {
    for (std::size_t y = 0; y < dib.Height(); ++y)
        for (std::size_t x = 0; x < dib.Width(); ++x)
            if (dib.Row(y)[4 * x + 3] != 0)
                return true;
    return false;
}

// The pixels of a row as the file has them, red first.
void ConvertRow(const Dib& dib, const Byte* row, std::size_t channels, NarrowString& converted) {
    if (dib.Depth() <= 8) {
        converted.assign(reinterpret_cast<const char*>(row), converted.size());
        return;
    }
    const std::size_t step = static_cast<std::size_t>(dib.Depth()) / 8;
    char* to = converted.data();
    for (std::size_t x = 0; x < dib.Width(); ++x, row += step, to += channels) {
        for (std::size_t channel = 0; channel < 3; ++channel)
            to[channel] = static_cast<char>(row[2 - channel]);
        if (channels == 4)
            to[3] = static_cast<char>(row[3]);
    }
}

// Which of its neighbours left, above and left above a byte is nearest to left + above - left above.
Byte Predicted(int left, int above, int corner) {
    const int toLeft = std::abs(above - corner);
    const int toAbove = std::abs(left - corner);
    const int toCorner = std::abs(left + above - 2 * corner);
    return static_cast<Byte>(toLeft <= toAbove && toLeft <= toCorner ? left : toAbove <= toCorner ? above : corner);
}

constexpr char kUnfiltered = 0;
constexpr char kPredicted = 4;

void AppendPredicted(NarrowString& rows, const NarrowString& row, const NarrowString& above, std::size_t step) {
    rows += kPredicted;
    for (std::size_t i = 0; i < row.size(); ++i) {
        const auto at = [step, i](const NarrowString& from) { return i < step ? Byte{0} : Byte(from[i - step]); };
        rows += static_cast<char>(Byte(row[i]) - Predicted(at(row), Byte(above[i]), at(above)));
    }
}

// Rows from the top, each behind the number of its filter. Bytes that name colours are left as they are.
NarrowString Rows(const Dib& dib, std::size_t channels) {
    const std::size_t rowBytes =
        channels != 0 ? channels * dib.Width() : (dib.Width() * static_cast<std::size_t>(dib.Depth()) + 7) / 8;
    NarrowString rows;
    rows.reserve((rowBytes + 1) * dib.Height());
    NarrowString above(rowBytes, '\0');
    NarrowString row(rowBytes, '\0');
    for (std::size_t y = 0; y < dib.Height(); ++y) {
        ConvertRow(dib, dib.Row(y), channels, row);
        if (channels != 0)
            AppendPredicted(rows, row, above, channels);
        else
            rows += kUnfiltered + row;
        row.swap(above);
    }
    return rows;
}

NarrowString Compressed(const NarrowString& bytes) {
    uLongf size = compressBound(static_cast<uLong>(bytes.size()));
    NarrowString stream(size, '\0');
    compress(reinterpret_cast<Bytef*>(stream.data()), &size, BytesOf(bytes), static_cast<uLong>(bytes.size()));
    stream.resize(size);
    return stream;
}

// Up to depth 8 pixels are numbers of colours; above it has 3 or 4 channels.
std::size_t ChannelsOf(const Dib& dib, PngAlpha alpha) {
    if (dib.Depth() <= 8)
        return 0;
    return dib.Depth() == 32 && alpha == PngAlpha::Straight && HasOpacity(dib) ? 4 : 3;
}

NarrowString Header(const Dib& dib, std::size_t channels) {
    constexpr char kIndexed = 3;
    constexpr char kTrueColor = 2;
    constexpr char kWithAlpha = 4;
    NarrowString header;
    AppendBigEndian(header, static_cast<std::uint32_t>(dib.Width()));
    AppendBigEndian(header, static_cast<std::uint32_t>(dib.Height()));
    header += static_cast<char>(std::min(dib.Depth(), 8));
    header += channels == 0 ? kIndexed : static_cast<char>(kTrueColor + (channels == 4 ? kWithAlpha : 0));
    return header + NarrowString(3, '\0'); // the one compression, the one set of filters, no interlacing
}

// All colours that a pixel can name; black behind those of the picture.
NarrowString Palette(const Dib& dib) {
    NarrowString palette(std::size_t{3} << dib.Depth(), '\0');
    for (std::size_t i = 0; i < std::min(dib.Colors(), palette.size() / 3); ++i) {
        const RGBQUAD& color = dib.Table()[i];
        palette[3 * i] = static_cast<char>(color.rgbRed);
        palette[3 * i + 1] = static_cast<char>(color.rgbGreen);
        palette[3 * i + 2] = static_cast<char>(color.rgbBlue);
    }
    return palette;
}

} // namespace

NarrowString EncodePng(const IBitmap& picture, PngAlpha alpha) {
    const Dib dib(picture);
    if (!dib.IsUsable())
        return {};
    const std::size_t channels = ChannelsOf(dib, alpha);
    NarrowString file = "\x89PNG\r\n\x1A\n";
    AppendChunk(file, "IHDR", Header(dib, channels));
    if (channels == 0)
        AppendChunk(file, "PLTE", Palette(dib));
    AppendChunk(file, "IDAT", Compressed(Rows(dib, channels)));
    AppendChunk(file, "IEND", {});
    return file;
}

void WritePng(const IBitmap& picture, const WideString& path) {
    const NarrowString file = EncodePng(picture);
    if (file.empty())
        kelexamples::FailOn("cannot encode", path, ERROR_NOT_ENOUGH_MEMORY);
    kelexamples::ReplaceWhole(path, file);
}
