#include "platform/gdi/Colours.h"
#include "platform/gdi/DibFormat.h"
#include "platform/gdi/PixelCopy.h"
#include "platform/kernel/Faults.h"

#include <algorithm>
#include <cstring>

namespace kel::platform {
namespace {

/// A run of rows that callers count from the bottom of the DIB. The top rows of the DIB and of the bitmap lie on each
/// other, so that a DIB of another height shows, or hides, rows at the bottom.
struct RowRange {
    std::int64_t top = 0; ///< the row of the bitmap that the first one lies on; may be negative
    int count = 0;

    /// Rows that the bitmap lacks above and below.
    int Above() const { return static_cast<int>(std::clamp<std::int64_t>(-top, 0, count)); }
    int Inside(int height) const {
        return static_cast<int>(std::clamp<std::int64_t>(height - top, Above(), count)) - Above();
    }
};

RowRange ClampedRange(const DibFormat& format, UINT start, UINT lines) {
    const std::int64_t left = std::int64_t{format.height} - start;
    const std::int64_t count = std::clamp<std::int64_t>(lines, 0, std::max<std::int64_t>(left, 0));
    return {left - count, static_cast<int>(count)};
}

Surface RangeAt(const DibFormat& format, const RowRange& range, const void* bits) {
    DibFormat part = format;
    part.height = range.count;
    Surface rows = part.At(bits);
    rows.table = format.table.empty() ? nullptr : format.table.data();
    return rows;
}

// --- reading

std::size_t EntriesOf(PixelFormat format) {
    return std::size_t{1} << BitsPerPixel(format);
}

/// The table the DIB is given: that of a section of the same depth, else the default one.
std::vector<RGBQUAD> TableFor(const BitmapObject& bitmap, PixelFormat format) {
    if (bitmap.Bits() == BitsPerPixel(format) && !bitmap.Table().empty())
        return bitmap.Table();
    const RGBQUAD* table = DefaultTable(BitsPerPixel(format));
    return {table, table + EntriesOf(format)};
}

/// The table written as palette indices 0, 1, 2 …, and what they mean: the default palette over and over.
std::vector<RGBQUAD> WritePaletteIndices(WORD* indices, PixelFormat format) {
    const auto& palette = DefaultPalette();
    std::vector<RGBQUAD> table(EntriesOf(format));
    for (std::size_t i = 0; i < table.size(); ++i) {
        indices[i] = static_cast<WORD>(i);
        table[i] = palette[i % palette.size()];
    }
    return table;
}

void WriteTable(BITMAPINFO& info, UINT usage, const BitmapObject& bitmap, DibFormat& format) {
    auto* entries = const_cast<void*>(AfterHeader(info.bmiHeader));
    info.bmiHeader.biClrUsed = 0;
    if (usage == DIB_PAL_COLORS) {
        format.table = WritePaletteIndices(static_cast<WORD*>(entries), format.format);
        return;
    }
    format.table = TableFor(bitmap, format.format);
    std::memcpy(entries, format.table.data(), format.table.size() * sizeof(RGBQUAD));
}

// Masks are told, not asked for: those of a bitmap of the same depth, else the common ones.
void WriteMasks(BITMAPINFO& info, const BitmapObject& bitmap) {
    const PixelFormat common = info.bmiHeader.biBitCount == 16 ? PixelFormat::Rgb555 : PixelFormat::Bgrx32;
    const bool own = info.bmiHeader.biBitCount == bitmap.Bits();
    std::memcpy(reinterpret_cast<std::uint8_t*>(&info) + sizeof(BITMAPINFOHEADER),
                MasksOf(own ? bitmap.Format() : common), 3 * sizeof(DWORD));
}

int DescribeBitmap(BITMAPINFOHEADER& header, const BitmapObject& bitmap) {
    const DWORD size = header.biSize;
    header = {};
    header.biSize = size;
    header.biWidth = bitmap.Width();
    header.biHeight = bitmap.Height();
    header.biPlanes = 1;
    header.biBitCount = static_cast<WORD>(bitmap.Bits());
    header.biCompression = bitmap.Bits() == 16 || bitmap.Bits() == 32 ? BI_BITFIELDS : BI_RGB;
    header.biSizeImage = static_cast<DWORD>(bitmap.RowBytes()) * static_cast<DWORD>(bitmap.Height());
    return bitmap.Height();
}

int ReadRows(const BitmapObject& bitmap, const DibFormat& format, const RowRange& range, void* bits) {
    const int inside = range.Inside(bitmap.Height());
    const bool whole = inside == range.count && bitmap.Width() >= format.width &&
                       format.rowBytes * 8 == std::int64_t{format.width} * BitsPerPixel(format.format);
    if (!whole)
        std::memset(bits, 0, static_cast<std::size_t>(format.rowBytes) * static_cast<std::size_t>(range.count));
    if (inside > 0)
        CopyPixels(RowsOf(RangeAt(format, range, bits), /*y*/ 0, inside),
                   RowsOf(bitmap.Pixels(), static_cast<int>(range.top), inside));
    return inside;
}

int GetRows(const BitmapObject& bitmap, UINT start, UINT lines, void* bits, BITMAPINFO& info, UINT usage) {
    BITMAPINFOHEADER& header = info.bmiHeader;
    if (header.biSize >= sizeof header && header.biBitCount == 0)
        return DescribeBitmap(header, bitmap);
    if (header.biCompression == BI_BITFIELDS)
        WriteMasks(info, bitmap);
    DibFormat format;
    if (!ReadDibHeader(header, usage, format))
        return 0;
    header.biSizeImage = static_cast<DWORD>(format.rowBytes) * static_cast<DWORD>(format.height);
    if (IsIndexed(format.format))
        WriteTable(info, usage, bitmap, format);
    const RowRange range = ClampedRange(format, start, lines);
    return bits && range.count > 0 ? ReadRows(bitmap, format, range, bits) : 1;
}

// --- writing

int SetRows(const BitmapObject& bitmap, UINT start, UINT lines, const void* bits, const BITMAPINFO& info, UINT usage,
            const DeviceContext* context) {
    DibFormat format;
    if (!ReadDibFormat(info, usage, context, format))
        return 0;
    RowRange range = ClampedRange(format, start, lines);
    if (format.topDown) {
        // The number of rows given says which of them is the first; rows that the DIB does not have stay unused.
        if (lines > static_cast<UINT>(format.height))
            return static_cast<int>(lines);
        range = {std::int64_t{format.height} - start - lines, static_cast<int>(lines)};
    }
    const int inside = range.Inside(bitmap.Height());
    if (inside > 0)
        CopyPixels(RowsOf(bitmap.Pixels(), static_cast<int>(range.top) + range.Above(), inside),
                   RowsOf(RangeAt(format, range, bits), range.Above(), inside));
    return range.count;
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

int WINAPI GetDIBits(HDC dc, HBITMAP handle, UINT start, UINT lines, LPVOID bits, LPBITMAPINFO info, UINT usage) {
    if (CallFails("GetDIBits"))
        return 0;
    const auto context = FindContext(dc);
    const auto bitmap = FindObject<BitmapObject>(handle);
    if (!context || !bitmap)
        return 0;
    if (!info)
        return Fail(ERROR_INVALID_PARAMETER);
    return WithMemory(0, [&] { return GetRows(*bitmap, start, lines, bits, *info, usage); });
}

int WINAPI SetDIBits(HDC dc, HBITMAP handle, UINT start, UINT lines, const void* bits, const BITMAPINFO* info,
                     UINT usage) {
    if (CallFails("SetDIBits"))
        return 0;
    const auto context = dc ? FindContext(dc) : nullptr;
    const auto bitmap = FindObject<BitmapObject>(handle);
    if (!bitmap || (dc && !context))
        return 0;
    if (!info || !bits)
        return Fail(ERROR_INVALID_PARAMETER);
    return WithMemory(0, [&] { return SetRows(*bitmap, start, lines, bits, *info, usage, context.get()); });
}
