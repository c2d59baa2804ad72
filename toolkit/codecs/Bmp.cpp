// Bitmap files: a file header of 14 bytes, an information header of 12 to 124, masks, a colour table, pixels.

#include "toolkit/codecs/Bmp.h"

#include "toolkit/codecs/BmpRuns.h"
#include "toolkit/codecs/Samples.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <optional>

namespace kel::toolkit {
namespace {

constexpr std::size_t kFileHeader = sizeof(BITMAPFILEHEADER);
constexpr DWORD kCoreHeader = 12; // of OS/2 1.x: sizes of 16 bits, colours of 3 bytes
constexpr DWORD kLeastHeader = 16;
constexpr DWORD kMostHeader = 124;
constexpr DWORD kHeaderWithAlphaMask = 56;
constexpr DWORD kAlphaBitFields = 6;
static_assert(kFileHeader == 14);

struct Masks {
    std::uint32_t red, green, blue, alpha;
};
constexpr Masks k555 = {0x7C00, 0x03E0, 0x001F, 0};
constexpr Masks k888 = {0xFF0000, 0x00FF00, 0x0000FF, 0};

/// What a file's headers say.
struct BmpFile {
    Bytes file;
    BITMAPINFOHEADER info = {};
    Masks masks = {};
    std::size_t table = 0; // where the colour table begins
    std::size_t colourBytes = 4;
    std::size_t colours = 0;
    std::size_t pixels = 0;

    std::int64_t Height() const { return std::abs(std::int64_t{info.biHeight}); }
    bool IsTopDown() const { return info.biHeight < 0; }
    /// Of a row in the file; more than 32 bits can count for the widest ones.
    std::int64_t RowBytes() const { return RowBytesOf(info.biWidth, info.biBitCount); }
    Bytes Pixels() const { return file.subspan(std::min(pixels, file.size())); }
    bool HasRuns() const { return info.biCompression == BI_RLE8 || info.biCompression == BI_RLE4; }
};

template <class Value>
Value Read(Bytes file, std::size_t at) {
    Value value = {};
    if (at <= file.size() && sizeof value <= file.size() - at)
        std::memcpy(&value, file.data() + at, sizeof value);
    return value;
}

bool IsBmp(Bytes file) {
    const auto header = Read<DWORD>(file, kFileHeader);
    return file.size() > kFileHeader + sizeof header && file[0] == 'B' && file[1] == 'M' &&
           (header == kCoreHeader || (header >= kLeastHeader && header <= kMostHeader));
}

void ReadInfo(BmpFile& bmp) {
    constexpr std::size_t kFields = kFileHeader + sizeof(DWORD);
    bmp.info.biSize = Read<DWORD>(bmp.file, kFileHeader);
    if (bmp.info.biSize == kCoreHeader) {
        bmp.info.biWidth = Read<WORD>(bmp.file, kFields);
        bmp.info.biHeight = Read<WORD>(bmp.file, kFields + 2);
        bmp.info.biBitCount = Read<WORD>(bmp.file, kFields + 6);
        return;
    }
    // A header may end early; the fields that it lacks are 0.
    const std::size_t size = std::min<std::size_t>(bmp.info.biSize, sizeof bmp.info);
    std::memcpy(&bmp.info, bmp.file.data() + kFileHeader, std::min(size, bmp.file.size() - kFileHeader));
}

/// Compression and depth go together; others have no reader here or anywhere.
bool IsReadable(const BITMAPINFOHEADER& info) {
    switch (info.biCompression) {
    case BI_RGB:
        return info.biBitCount == 1 || info.biBitCount == 2 || info.biBitCount == 4 || info.biBitCount == 8 ||
               info.biBitCount == 16 || info.biBitCount == 24 || info.biBitCount == 32;
    case BI_RLE8:
        return info.biBitCount == 8 && info.biHeight > 0;
    case BI_RLE4:
        return info.biBitCount == 4 && info.biHeight > 0;
    case BI_BITFIELDS:
    case kAlphaBitFields:
        return info.biBitCount == 16 || info.biBitCount == 32;
    default:
        return false;
    }
}

/// Reads the masks, which stand in the header or behind it. @return where what follows begins.
std::size_t ReadMasks(BmpFile& bmp) {
    const std::size_t behind = kFileHeader + bmp.info.biSize;
    const bool alpha = bmp.info.biCompression == kAlphaBitFields || bmp.info.biSize >= kHeaderWithAlphaMask;
    bmp.masks = bmp.info.biBitCount == 16 ? k555 : k888;
    if (bmp.info.biCompression != BI_BITFIELDS && bmp.info.biCompression != kAlphaBitFields)
        return behind;
    const std::size_t at = kFileHeader + sizeof(BITMAPINFOHEADER);
    bmp.masks = {Read<DWORD>(bmp.file, at), Read<DWORD>(bmp.file, at + 4), Read<DWORD>(bmp.file, at + 8),
                 alpha ? Read<DWORD>(bmp.file, at + 12) : 0};
    return std::max(behind, at + (alpha ? 16 : 12));
}

std::optional<BmpFile> ReadHeaders(Bytes file) {
    BmpFile bmp;
    bmp.file = file;
    ReadInfo(bmp);
    if (!IsReadable(bmp.info) || bmp.info.biWidth < 1 || bmp.info.biHeight == 0)
        return std::nullopt;
    bmp.table = ReadMasks(bmp);
    bmp.colourBytes = bmp.info.biSize == kCoreHeader ? 3 : 4;
    const std::size_t most = bmp.info.biBitCount <= 8 ? std::size_t{1} << bmp.info.biBitCount : 0;
    bmp.colours = bmp.info.biClrUsed == 0 ? most : std::min<std::size_t>(bmp.info.biClrUsed, most);
    bmp.pixels = Read<DWORD>(file, 10);
    if (bmp.pixels < bmp.table)
        bmp.pixels = bmp.table + bmp.colours * bmp.colourBytes;
    return bmp;
}

/// Files that end within their table leave the rest black.
void ReadColours(const BmpFile& bmp, std::span<RGBQUAD> colours) {
    for (std::size_t i = 0; i < colours.size(); ++i) {
        const auto colour = Read<std::array<BYTE, 3>>(bmp.file, bmp.table + i * bmp.colourBytes);
        colours[i] = {colour[0], colour[1], colour[2], 0};
    }
}

/// One channel of pixels with masks, as 8 bits.
class Channel {
public:
    explicit Channel(std::uint32_t mask) : m_shift(std::countr_zero(mask)) {
        // Of wide channels the high bits count.
        const int bits = std::popcount(mask);
        m_shift += std::max(bits - 8, 0);
        m_mask = (1U << std::min(bits, 8)) - 1;
        for (std::uint32_t i = 0; i <= m_mask; ++i)
            m_values[i] = static_cast<BYTE>(m_mask == 0 ? 0 : (i * 255 + m_mask / 2) / m_mask);
    }

    BYTE operator()(std::uint32_t pixel) const { return m_values[m_shift < 32 ? pixel >> m_shift & m_mask : 0]; }

private:
    int m_shift;
    std::uint32_t m_mask;
    std::array<BYTE, 256> m_values = {};
};

bool IsOneRun(std::uint32_t mask) {
    return mask == 0 || std::has_single_bit((mask >> std::countr_zero(mask)) + std::uint64_t{1});
}

bool AreRuns(const Masks& masks) {
    return IsOneRun(masks.red) && IsOneRun(masks.green) && IsOneRun(masks.blue) && IsOneRun(masks.alpha);
}

bool ArePlain(const Masks& masks) {
    return masks.red == k888.red && masks.green == k888.green && masks.blue == k888.blue &&
           (masks.alpha == 0 || masks.alpha == 0xFF000000);
}

/// The depth that a file's pixels are held in.
int HeldDepth(const BmpFile& bmp) {
    if (bmp.info.biBitCount == 2)
        return 4;
    if (bmp.info.biBitCount == 16)
        return bmp.masks.alpha == 0 ? 24 : 32;
    return bmp.info.biBitCount;
}

/// Pixels of 16 or 32 bits with any masks.
class MaskedRows {
public:
    explicit MaskedRows(const BmpFile& bmp)
        : m_red(bmp.masks.red), m_green(bmp.masks.green), m_blue(bmp.masks.blue), m_alpha(bmp.masks.alpha),
          m_from(bmp.info.biBitCount / 8), m_to(static_cast<std::size_t>(HeldDepth(bmp)) / 8),
          m_width(bmp.info.biWidth) {}

    void operator()(BYTE* to, const BYTE* from) const {
        for (int x = 0; x < m_width; ++x, from += m_from, to += m_to) {
            std::uint32_t pixel = 0;
            std::memcpy(&pixel, from, m_from);
            to[0] = m_blue(pixel);
            to[1] = m_green(pixel);
            to[2] = m_red(pixel);
            if (m_to == 4)
                to[3] = m_alpha(pixel);
        }
    }

private:
    const Channel m_red, m_green, m_blue, m_alpha;
    const std::size_t m_from, m_to;
    const int m_width;
};

template <class Convert>
void ReadRows(const BmpFile& bmp, const DibLock& dib, const Convert& convert) {
    const BYTE* from = bmp.Pixels().data();
    const int height = dib.Layout().height;
    for (int i = 0; i < height; ++i, from += bmp.RowBytes())
        convert(dib.Row(bmp.IsTopDown() ? i : height - 1 - i), from);
}

void ReadPlain(const BmpFile& bmp, const DibLock& dib) {
    const auto width = static_cast<std::size_t>(bmp.info.biWidth);
    if (bmp.info.biBitCount == 2)
        ReadRows(bmp, dib, [width](BYTE* to, const BYTE* from) { Widen2To4(from, to, width); });
    else if (bmp.info.biBitCount == 16 || (bmp.info.biBitCount == 32 && !ArePlain(bmp.masks)))
        ReadRows(bmp, dib, MaskedRows(bmp));
    else
        ReadRows(bmp, dib, [&](BYTE* to, const BYTE* from) { std::memcpy(to, from, dib.Layout().rowBytes); });
}

/// Whether the file has all the pixels that it promises; of runs that is seen as they are read.
bool HasAllRows(const BmpFile& bmp) {
    return bmp.HasRuns() || static_cast<std::int64_t>(bmp.Pixels().size()) / bmp.RowBytes() >= bmp.Height();
}

SHORT Load(LoadJob& job) {
    const std::optional<BmpFile> bmp = ReadHeaders(job.file);
    if (!bmp || !AreRuns(bmp->masks) || !HasAllRows(*bmp))
        return kDamaged;
    const SHORT made = MakePicture(job, bmp->info.biWidth, bmp->Height(), HeldDepth(*bmp), bmp->colours);
    const DibLock dib(job.picture);
    if (made != kLoaded || !dib)
        return made != kLoaded ? made : kOverBudget;
    ReadColours(*bmp, dib.Colours());
    if (bmp->HasRuns())
        return ReadBmpRuns(bmp->Pixels(), dib) ? kLoaded : kDamaged;
    ReadPlain(*bmp, dib);
    return kLoaded;
}

} // namespace

const Codec kBmpCodec = {"BMP", IsBmp, Load};

} // namespace kel::toolkit
