#include "toolkit/PackedDib.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace kel::toolkit {
namespace {

constexpr std::size_t kHeaderBytes = sizeof(BITMAPINFOHEADER);
constexpr std::size_t kMaskBytes = 12;
// From this size on a header holds the masks of bit-fields; the plain one is followed by them.
constexpr std::size_t kHeaderWithMasks = kHeaderBytes + kMaskBytes;
// What the pixel memory of one picture may take: offsets within it go through 32-bit numbers.
constexpr std::int64_t kMostPixelBytes = std::numeric_limits<std::int32_t>::max();

static_assert(kHeaderBytes == 40 && sizeof(RGBQUAD) == 4);

bool IsDepth(int depth) {
    return depth == 1 || depth == 4 || depth == 8 || depth == 16 || depth == 24 || depth == 32;
}

std::size_t MostColours(int depth) {
    return depth <= 8 ? std::size_t{1} << depth : 0;
}

/// Width, height and what follows from them; nothing for a picture that cannot be held.
std::optional<DibLayout> Measure(std::int64_t width, std::int64_t height, int depth) {
    constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
    if (!IsDepth(depth) || width < 1 || height < 1 || width > kMost || height > kMost)
        return std::nullopt;
    const std::int64_t row = RowBytesOf(width, depth);
    if (row > kMostPixelBytes || height > kMostPixelBytes / row)
        return std::nullopt;
    DibLayout layout;
    layout.width = static_cast<int>(width);
    layout.height = static_cast<int>(height);
    layout.depth = depth;
    layout.rowBytes = static_cast<std::size_t>(row);
    return layout;
}

// The masks that say what a depth means without any.
bool ArePlainMasks(const BYTE* masks, int depth) {
    constexpr std::uint32_t k16[] = {0x7C00, 0x03E0, 0x001F};
    constexpr std::uint32_t k32[] = {0xFF0000, 0x00FF00, 0x0000FF};
    if (depth != 16 && depth != 32)
        return false;
    return std::memcmp(masks, depth == 16 ? k16 : k32, kMaskBytes) == 0;
}

/// Bytes between header and colour table; nothing for a format that is not held.
std::optional<std::size_t> BytesOfMasks(std::span<const BYTE> block, const BITMAPINFOHEADER& header) {
    if (header.biCompression == BI_RGB)
        return 0;
    const bool within = header.biSize >= kHeaderWithMasks;
    if (header.biCompression != BI_BITFIELDS || block.size() < kHeaderWithMasks ||
        (!within && header.biSize != kHeaderBytes) || !ArePlainMasks(block.data() + kHeaderBytes, header.biBitCount))
        return std::nullopt;
    return within ? 0 : kMaskBytes;
}

/// Entries of the colour table; nothing if there are more than a pixel can name.
std::optional<std::size_t> CountColours(const BITMAPINFOHEADER& header) {
    if (header.biClrUsed == 0)
        return MostColours(header.biBitCount);
    if (header.biBitCount <= 8 && header.biClrUsed > MostColours(header.biBitCount))
        return std::nullopt;
    return header.biClrUsed;
}

BITMAPINFOHEADER HeaderOf(const DibLayout& layout) {
    BITMAPINFOHEADER header = {};
    header.biSize = kHeaderBytes;
    header.biWidth = layout.width;
    header.biHeight = layout.topDown ? -layout.height : layout.height;
    header.biPlanes = 1;
    header.biBitCount = static_cast<WORD>(layout.depth);
    header.biClrUsed = layout.colours == MostColours(layout.depth) ? 0 : static_cast<DWORD>(layout.colours);
    return header;
}

} // namespace

std::optional<DibLayout> LayoutOf(std::int64_t width, std::int64_t height, int depth, std::size_t colours) {
    std::optional<DibLayout> layout = Measure(width, height, depth);
    if (!layout || colours > MostColours(depth))
        return std::nullopt;
    layout->table = kHeaderBytes;
    layout->colours = colours == 0 ? MostColours(depth) : colours;
    layout->rows = layout->table + layout->colours * sizeof(RGBQUAD);
    return layout;
}

std::optional<DibLayout> ExamineDib(std::span<const BYTE> block) {
    std::optional<DibLayout> layout = ExamineDibFront(block);
    return layout && layout->PixelBytes() <= block.size() - layout->rows ? layout : std::nullopt;
}

std::optional<DibLayout> ExamineDibFront(std::span<const BYTE> block) {
    BITMAPINFOHEADER header;
    if (block.size() < kHeaderBytes)
        return std::nullopt;
    std::memcpy(&header, block.data(), kHeaderBytes);
    if (header.biSize < kHeaderBytes)
        return std::nullopt;
    std::optional<DibLayout> layout =
        Measure(header.biWidth, std::abs(std::int64_t{header.biHeight}), header.biBitCount);
    const std::optional<std::size_t> masks = BytesOfMasks(block, header);
    const std::optional<std::size_t> colours = CountColours(header);
    if (!layout || !masks || !colours)
        return std::nullopt;
    // In 64 bits no sum of these overflows.
    const std::uint64_t table = std::uint64_t{header.biSize} + *masks;
    const std::uint64_t rows = table + std::uint64_t{*colours} * sizeof(RGBQUAD);
    if (rows > block.size())
        return std::nullopt;
    layout->topDown = header.biHeight < 0;
    layout->table = static_cast<std::size_t>(table);
    layout->colours = *colours;
    layout->rows = static_cast<std::size_t>(rows);
    return layout;
}

PackedDib PackedDib::Make(const DibLayout& layout) {
    const BITMAPINFOHEADER header = HeaderOf(layout);
    return Make(layout, {reinterpret_cast<const BYTE*>(&header), kHeaderBytes});
}

PackedDib PackedDib::MakeForPixels(const DibLayout& layout) {
    const BITMAPINFOHEADER header = HeaderOf(layout);
    PackedDib dib(GlobalAlloc(GMEM_MOVEABLE, layout.TotalBytes()), layout);
    const DibLock lock(dib);
    if (!lock)
        return {};
    lock.Header() = header;
    std::ranges::fill(lock.Colours(), RGBQUAD());
    const std::size_t used = static_cast<std::size_t>(layout.width) * static_cast<std::size_t>(layout.depth) / 8;
    if (used != layout.rowBytes)
        for (int y = 0; y < layout.height; ++y)
            std::fill(lock.Row(y) + used, lock.Row(y) + layout.rowBytes, BYTE{0});
    return dib;
}

PackedDib PackedDib::Make(const DibLayout& layout, std::span<const BYTE> front) {
    PackedDib dib(GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, layout.TotalBytes()), layout);
    BYTE* const memory = static_cast<BYTE*>(GlobalLock(dib.m_block));
    if (!memory)
        return {};
    std::memcpy(memory, front.data(), front.size());
    GlobalUnlock(dib.m_block);
    return dib;
}

PackedDib PackedDib::Make(std::int64_t width, std::int64_t height, int depth, std::size_t colours) {
    const std::optional<DibLayout> layout = LayoutOf(width, height, depth, colours);
    return layout ? Make(*layout) : PackedDib();
}

PackedDib PackedDib::Adopt(HGLOBAL block) {
    const BYTE* const memory = static_cast<const BYTE*>(GlobalLock(block));
    if (!memory)
        return {};
    const std::optional<DibLayout> layout = ExamineDib({memory, GlobalSize(block)});
    GlobalUnlock(block);
    if (!layout)
        return {};
    PackedDib dib(block, *layout);
    dib.DropMasks();
    return dib;
}

void PackedDib::DropMasks() {
    const DibLock lock(*this);
    if (!lock)
        return;
    BITMAPINFOHEADER header;
    BYTE* const memory = lock.Memory().data();
    std::memcpy(&header, memory, kHeaderBytes);
    const std::size_t masks = m_layout.table - header.biSize;
    if (masks == 0)
        return;
    header.biCompression = BI_RGB;
    std::memcpy(memory, &header, kHeaderBytes);
    std::memmove(memory + header.biSize, memory + m_layout.table, m_layout.TotalBytes() - m_layout.table);
    m_layout.table -= masks;
    m_layout.rows -= masks;
}

PackedDib PackedDib::Copy() const {
    const DibLock from(*this);
    if (!from)
        return {};
    PackedDib copy(GlobalAlloc(GMEM_MOVEABLE, m_layout.TotalBytes()), m_layout);
    const DibLock to(copy);
    if (!to)
        return {};
    std::memcpy(to.Memory().data(), from.Memory().data(), m_layout.TotalBytes());
    return copy;
}

HGLOBAL PackedDib::Release() {
    m_layout = {};
    return std::exchange(m_block, nullptr);
}

DibLock::DibLock(const PackedDib& dib)
    : m_block(dib.Block()), m_layout(dib.Layout()),
      m_memory(m_block ? static_cast<BYTE*>(GlobalLock(m_block)) : nullptr) {}

DibLock::~DibLock() {
    if (m_memory)
        GlobalUnlock(m_block);
}

} // namespace kel::toolkit
