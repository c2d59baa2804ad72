#pragma once

/// @file
/// Bitmaps of both kinds.

#include "platform/gdi/GdiObject.h"
#include "platform/gdi/Surface.h"

#include <vector>

namespace kel::platform {

/// Bytes of a row of @p bits, padded to 4 bytes (DIB rows) or 2 (rows of device-dependent bitmaps).
constexpr std::int64_t DibRowBytes(std::int64_t bits) {
    return (bits + 31) / 32 * 4;
}
constexpr std::int64_t WordRowBytes(std::int64_t bits) {
    return (bits + 15) / 16 * 2;
}

/// What a bitmap is made from.
struct BitmapLayout {
    int width = 0;
    int height = 0; ///< positive
    PixelFormat format = PixelFormat::Mono;
    bool section = false; ///< a DIB section, else a device-dependent bitmap
    bool topDown = true;
    bool bitFields = false; ///< a section that was made with BI_BITFIELDS
    std::vector<RGBQUAD> table;
};

class BitmapObject final : public GdiObject {
public:
    static constexpr GdiType kType = GdiType::Bitmap;

    /// Its pixels are zero. @throws std::bad_alloc when memory is short or the pixels take 2^31 bytes and more.
    explicit BitmapObject(BitmapLayout layout);
    ~BitmapObject() override;

    DWORD PublicType() const override { return OBJ_BITMAP; }
    int Describe(int size, void* buffer) const override;
    std::string Details() const override;

    Surface Pixels() const;
    int Width() const { return m_layout.width; }
    int Height() const { return m_layout.height; }
    PixelFormat Format() const { return m_layout.format; }
    int Bits() const { return BitsPerPixel(m_layout.format); }
    bool IsSection() const { return m_layout.section; }
    const BitmapLayout& Layout() const { return m_layout; }

    /// The lowest address of the pixels.
    std::uint8_t* Memory() const { return m_memory; }
    int RowBytes() const { return m_rowBytes; }

    /// Bytes of a row as GetBitmapBits shows it.
    int VisibleRowBytes() const { return static_cast<int>(WordRowBytes(std::int64_t{Width()} * Bits())); }

    /// The colour table, empty for deeper formats and for device-dependent monochrome bitmaps.
    std::vector<RGBQUAD>& Table() { return m_layout.table; }
    const std::vector<RGBQUAD>& Table() const { return m_layout.table; }

private:
    BITMAP Description() const;
    DIBSECTION SectionDescription() const;

    BitmapLayout m_layout;
    int m_rowBytes;
    void* m_block;          // what the allocator gave
    std::uint8_t* m_memory; // in it, aligned to a cache line
};

/// The red, green and blue bits of a format of 16 bits and more.
const DWORD* MasksOf(PixelFormat format);

/// The format of that many bits a pixel; bits between two depths count as the next one, 0 as 1. 16 bits are 5-5-5.
/// @return false beyond 32.
bool FormatOfBits(UINT bits, PixelFormat& format);

/// A device-dependent bitmap without pixels of the caller's.
std::shared_ptr<BitmapObject> MakeDeviceBitmap(int width, int height, PixelFormat format);

} // namespace kel::platform
