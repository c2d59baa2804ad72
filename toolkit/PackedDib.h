#pragma once

#include <kelcore/platform.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>

/// @file
/// Pictures as packed device-independent bitmaps (docs/formats/packed-dib.md): one movable block of global memory with
/// header, masks, colour table and rows.
namespace kel::toolkit {

/// Bytes of a row with its padding to a multiple of 4.
constexpr std::int64_t RowBytesOf(std::int64_t width, int depth) {
    return (width * depth + 31) / 32 * 4;
}

/// Where everything of a packed bitmap lies, every sum checked against overflow and against the block.
struct DibLayout {
    int width = 0;            ///< pixels
    int height = 0;           ///< rows, whichever comes first
    int depth = 0;            ///< bits per pixel: 1, 4, 8, 16, 24, 32
    bool topDown = false;     ///< the top row comes first
    std::size_t table = 0;    ///< where the colour table begins
    std::size_t colours = 0;  ///< its entries
    std::size_t rows = 0;     ///< where the first row begins
    std::size_t rowBytes = 0; ///< of one row with its padding

    std::size_t PixelBytes() const { return rowBytes * static_cast<std::size_t>(height); }
    std::size_t TotalBytes() const { return rows + PixelBytes(); }

    friend bool operator==(const DibLayout&, const DibLayout&) = default;
};

/// The layout of a new picture: a header of 40 bytes, rows from the bottom, no masks.
/// @param colours entries of the table, at most 2^depth; 0 for all that the depth allows (none above 8).
/// @return nothing for a depth other than 1, 4, 8, 16, 24, 32, a size below 1, and rows of 2 GiB and more.
std::optional<DibLayout> LayoutOf(std::int64_t width, std::int64_t height, int depth, std::size_t colours = 0);

/// The layout of a bitmap that came from elsewhere. @return nothing unless all of it lies in @p block, and for depths,
/// compressions and masks that are not held.
std::optional<DibLayout> ExamineDib(std::span<const BYTE> block);

/// The same of a block that may end where the rows begin.
std::optional<DibLayout> ExamineDibFront(std::span<const BYTE> block);

/// Owns a block with a whole packed bitmap in it, or nothing. The block is not locked.
class PackedDib {
public:
    PackedDib() = default;
    PackedDib(PackedDib&& other) noexcept
        : m_block(std::exchange(other.m_block, nullptr)), m_layout(std::exchange(other.m_layout, {})) {}
    PackedDib& operator=(PackedDib&& other) noexcept {
        std::swap(m_block, other.m_block);
        std::swap(m_layout, other.m_layout);
        return *this;
    }
    ~PackedDib() { GlobalFree(m_block); }

    /// A picture with a header; colours and pixels are zero. @return an empty object if there is no memory.
    static PackedDib Make(const DibLayout& layout);
    /// The same for somebody who writes all pixels: in the rows only the padding is zero.
    static PackedDib MakeForPixels(const DibLayout& layout);
    /// The same as Make from a size, which is examined by LayoutOf.
    static PackedDib Make(std::int64_t width, std::int64_t height, int depth, std::size_t colours = 0);
    /// A picture that begins with @p front, the bytes before the rows, which @p layout was made from; pixels are zero.
    static PackedDib Make(const DibLayout& layout, std::span<const BYTE> front);
    /// Takes a block over, and the masks behind its header out of it: they say what the depth says anyway, and clients
    /// look for pixels where header and table end.
    /// @return an empty object, and the block stays the caller's as it was, unless it holds a whole bitmap.
    static PackedDib Adopt(HGLOBAL block);

    explicit operator bool() const { return m_block != nullptr; }
    HGLOBAL Block() const { return m_block; }
    const DibLayout& Layout() const { return m_layout; }

    /// A copy of header, table and rows in a block of its own; an empty object if there is no memory.
    PackedDib Copy() const;
    /// Takes out masks that stand behind the header, if there are any.
    void DropMasks();
    /// Gives the block away.
    HGLOBAL Release();

private:
    PackedDib(HGLOBAL block, const DibLayout& layout) : m_block(block), m_layout(layout) {}

    HGLOBAL m_block = nullptr;
    DibLayout m_layout;
};

/// A bitmap's memory, locked for as long as this object lives. Rows and colours may be written to; header and size stay
/// as they are.
class DibLock {
public:
    explicit DibLock(const PackedDib& dib);
    DibLock(const DibLock&) = delete;
    DibLock& operator=(const DibLock&) = delete;
    ~DibLock();

    /// False if the picture is empty or cannot be locked.
    explicit operator bool() const { return m_memory != nullptr; }
    const DibLayout& Layout() const { return m_layout; }

    /// Row @p y, counted from the top of the picture.
    BYTE* Row(int y) const {
        return Rows() + m_layout.rowBytes * static_cast<std::size_t>(m_layout.topDown ? y : m_layout.height - 1 - y);
    }
    /// All rows as they lie in memory.
    std::span<BYTE> Pixels() const { return {Rows(), m_layout.PixelBytes()}; }
    std::span<RGBQUAD> Colours() const {
        return {reinterpret_cast<RGBQUAD*>(m_memory + m_layout.table), m_layout.colours};
    }
    BITMAPINFOHEADER& Header() const { return *reinterpret_cast<BITMAPINFOHEADER*>(m_memory); }
    /// Everything: header, masks, table, rows.
    std::span<BYTE> Memory() const { return {m_memory, m_layout.TotalBytes()}; }

private:
    BYTE* Rows() const { return m_memory + m_layout.rows; }

    const HGLOBAL m_block;
    const DibLayout m_layout;
    BYTE* const m_memory;
};

} // namespace kel::toolkit
