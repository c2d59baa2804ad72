// Packed device-independent bitmaps come from anywhere: nothing of the block is believed before it has been held
// against the block's size.

#include "bitmap/DibLayout.h"

#include <kelcore/bitmap/base.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <optional>

namespace {

constexpr std::size_t kHeaderBytes = 40;
constexpr std::size_t kMaskBytes = 12;
// From this size on a header holds the masks of bit-fields; the plain one is followed by them.
constexpr std::size_t kHeaderWithMasks = kHeaderBytes + kMaskBytes;

static_assert(sizeof(BITMAPINFOHEADER) == kHeaderBytes && sizeof(RGBQUAD) == 4);

// A block that has been found whole.
struct PackedDib {
    BITMAPINFOHEADER header;
    const char* table;
    std::size_t tableBytes;
    const char* rows; // as they lie there
    std::size_t rowBytes;
    std::size_t height;
};

bool IsDepth(int bits) {
    return bits == 1 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
}

// The masks that say what a depth means without any.
bool ArePlainMasks(const char* masks, int bits) {
    constexpr std::uint32_t k16[] = {0x7C00, 0x03E0, 0x001F};
    constexpr std::uint32_t k32[] = {0xFF0000, 0x00FF00, 0x0000FF};
    if (bits != 16 && bits != 32)
        return false;
    return std::memcmp(masks, bits == 16 ? k16 : k32, kMaskBytes) == 0;
}

// Bytes between header and colour table; nothing for a format that is not read.
std::optional<std::size_t> BytesOfMasks(const char* block, std::size_t size, const BITMAPINFOHEADER& header) {
    if (header.biCompression == BI_RGB)
        return 0;
    const bool within = header.biSize >= kHeaderWithMasks;
    if (header.biCompression != BI_BITFIELDS || size < kHeaderWithMasks || (!within && header.biSize != kHeaderBytes) ||
        !ArePlainMasks(block + kHeaderBytes, header.biBitCount))
        return std::nullopt;
    return within ? 0 : kMaskBytes;
}

bool IsTableSane(const BITMAPINFOHEADER& header) {
    return header.biBitCount > 8 || header.biClrUsed <= 1U << header.biBitCount;
}

// The one place that decides whether a block is whole.
std::optional<PackedDib> Examine(const char* block, std::size_t size) {
    PackedDib dib = {};
    if (size < kHeaderBytes)
        return std::nullopt;
    std::memcpy(&dib.header, block, kHeaderBytes);
    const BITMAPINFOHEADER& header = dib.header;
    const std::int64_t height = std::abs(std::int64_t{header.biHeight});
    if (header.biSize < kHeaderBytes || !IsDepth(header.biBitCount) || !IsTableSane(header) ||
        !kel::PixelsFit(header.biWidth, height, header.biBitCount))
        return std::nullopt;
    const std::optional<std::size_t> masks = BytesOfMasks(block, size, header);
    if (!masks)
        return std::nullopt;
    // In 64 bits no sum of these overflows.
    const std::int64_t table = static_cast<std::int64_t>(header.biSize) + static_cast<std::int64_t>(*masks);
    const std::int64_t rows = table + kel::TableBytes(header);
    const std::int64_t rowBytes = kel::RowBytes(header.biWidth, header.biBitCount);
    if (rows + rowBytes * height > static_cast<std::int64_t>(size))
        return std::nullopt;
    dib.table = block + table;
    dib.tableBytes = static_cast<std::size_t>(rows - table);
    dib.rows = block + rows;
    dib.rowBytes = static_cast<std::size_t>(rowBytes);
    dib.height = static_cast<std::size_t>(height);
    return dib;
}

// A picture class may make another picture than it was asked for, as when its store counts sides in fewer bits.
bool IsAsAsked(const IBitmap& picture, const PackedDib& dib) {
    const Size made = picture.GetDimension();
    return made.cx == dib.header.biWidth && made.cy == static_cast<LONG>(dib.height) &&
           picture.GetBitsPerPixel() == dib.header.biBitCount &&
           picture.GetScanlineSize() == static_cast<int>(dib.rowBytes);
}

void CopyRows(char* to, const PackedDib& dib) {
    if (dib.header.biHeight > 0) {
        std::memcpy(to, dib.rows, dib.rowBytes * dib.height);
        return;
    }
    for (std::size_t row = 0; row < dib.height; ++row)
        std::memcpy(to + row * dib.rowBytes, dib.rows + (dib.height - 1 - row) * dib.rowBytes, dib.rowBytes);
}

bool FillRows(IBitmap& picture, const PackedDib& dib) {
    void* const bits = picture.LockSurfaceModify();
    if (!bits)
        return false;
    CopyRows(static_cast<char*>(bits), dib);
    picture.UnlockSurface();
    return true;
}

bool FillTable(IBitmap& picture, const PackedDib& dib) {
    if (dib.header.biBitCount >= 16)
        return true;
    RGBQUAD* const table = picture.LockPaletteModify();
    if (!table)
        return false;
    std::memcpy(table, dib.table, dib.tableBytes);
    picture.UnlockPalette();
    return true;
}

struct Unlock {
    void operator()(void* block) const { GlobalUnlock(block); }
};

} // namespace

bool BitmapBase::SetDib(void* block) {
    void* const dib = GlobalLock(block);
    // A picture class of a toolkit may throw; the block stays the caller's.
    const std::unique_ptr<void, Unlock> locked(block);
    const SIZE_T most = std::numeric_limits<int>::max();
    return SetDib(dib, static_cast<int>(std::min<SIZE_T>(GlobalSize(block), most)));
}

bool BitmapBase::SetDib(void* dib, int size) {
    if (!dib || size < 1)
        return false;
    const std::optional<PackedDib> packed = Examine(static_cast<const char*>(dib), static_cast<std::size_t>(size));
    if (!packed)
        return false;
    SetEmpty();
    const Size dimension(packed->header.biWidth, static_cast<int>(packed->height));
    if (CreateBitmap(dimension, packed->header.biBitCount) && IsAsAsked(*this, *packed) && FillRows(*this, *packed) &&
        FillTable(*this, *packed))
        return true;
    SetEmpty();
    return false;
}
