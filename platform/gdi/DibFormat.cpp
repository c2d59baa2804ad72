#include "platform/gdi/DibFormat.h"

#include "platform/gdi/Colours.h"
#include "platform/gdi/StockObjects.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace kel::platform {
namespace {

constexpr int kPixelLimit = std::numeric_limits<std::int32_t>::max();

bool SameMasks(const std::uint8_t* masks, PixelFormat format) {
    return std::memcmp(masks, MasksOf(format), 3 * sizeof(DWORD)) == 0;
}

// The masks follow the first 40 bytes, in the longer headers as well.
bool FormatOfMasks(const BITMAPINFOHEADER& header, PixelFormat& format) {
    const std::uint8_t* masks = reinterpret_cast<const std::uint8_t*>(&header) + sizeof header;
    if (header.biBitCount == 32) {
        format = PixelFormat::Bgrx32;
        return SameMasks(masks, format);
    }
    format = SameMasks(masks, PixelFormat::Rgb565) ? PixelFormat::Rgb565 : PixelFormat::Rgb555;
    return header.biBitCount == 16 && SameMasks(masks, format);
}

bool FormatOfHeader(const BITMAPINFOHEADER& header, PixelFormat& format) {
    if (header.biCompression == BI_BITFIELDS)
        return FormatOfMasks(header, format);
    return header.biCompression == BI_RGB && FormatOfBits(header.biBitCount, format) &&
           BitsPerPixel(format) == header.biBitCount;
}

// Entries that the description has room for; those beyond what the depth can number are not looked at.
std::size_t EntriesOf(const BITMAPINFOHEADER& header) {
    const std::size_t most = std::size_t{1} << header.biBitCount;
    return header.biClrUsed == 0 ? most : std::min<std::size_t>(header.biClrUsed, most);
}

const std::vector<RGBQUAD>& PaletteOf(const DeviceContext* context) {
    static const std::shared_ptr<PaletteObject> byDefault = Stock<PaletteObject>(DEFAULT_PALETTE);
    if (context && context->State().palette)
        return static_cast<const PaletteObject&>(*context->State().palette).Entries();
    return byDefault->Entries();
}

// Indices beyond the palette begin again at its first entry.
std::vector<RGBQUAD> ResolvedTable(const std::uint8_t* indices, std::size_t count, const DeviceContext* context) {
    const std::vector<RGBQUAD>& palette = PaletteOf(context);
    std::vector<RGBQUAD> table(count);
    for (std::size_t i = 0; i < count; ++i)
        table[i] = palette[(indices[2 * i] | indices[2 * i + 1] << 8) % palette.size()];
    return table;
}

std::vector<RGBQUAD> ReadTable(const BITMAPINFOHEADER& header, UINT usage, const DeviceContext* context) {
    const auto* entries = static_cast<const std::uint8_t*>(AfterHeader(header));
    if (usage == DIB_PAL_COLORS)
        return ResolvedTable(entries, EntriesOf(header), context);
    std::vector<RGBQUAD> table(EntriesOf(header));
    std::memcpy(table.data(), entries, table.size() * sizeof(RGBQUAD));
    return table;
}

bool ReadSize(const BITMAPINFOHEADER& header, DibFormat& format) {
    if (header.biWidth <= 0 || header.biHeight == 0 || header.biHeight == std::numeric_limits<LONG>::min())
        return false;
    format.width = header.biWidth;
    format.topDown = header.biHeight < 0;
    format.height = format.topDown ? -header.biHeight : header.biHeight;
    format.rowBytes = DibRowBytes(std::int64_t{format.width} * BitsPerPixel(format.format));
    return format.rowBytes <= kPixelLimit / format.height;
}

} // namespace

const void* AfterHeader(const BITMAPINFOHEADER& header) {
    return reinterpret_cast<const std::uint8_t*>(&header) + header.biSize;
}

bool ReadDibHeader(const BITMAPINFOHEADER& header, UINT usage, DibFormat& format) {
    format.bitFields = header.biCompression == BI_BITFIELDS;
    return (header.biSize >= sizeof header && header.biPlanes == 1 && usage <= DIB_PAL_COLORS &&
            FormatOfHeader(header, format.format) && ReadSize(header, format)) ||
           Fail(ERROR_INVALID_PARAMETER);
}

bool ReadDibFormat(const BITMAPINFO& info, UINT usage, const DeviceContext* context, DibFormat& format) {
    if (!ReadDibHeader(info.bmiHeader, usage, format))
        return false;
    if (IsIndexed(format.format))
        format.table = ReadTable(info.bmiHeader, usage, context);
    return true;
}

Surface DibFormat::At(const void* bits) const {
    Surface surface;
    auto* first = static_cast<std::uint8_t*>(const_cast<void*>(bits));
    surface.top = topDown ? first : first + rowBytes * (height - 1);
    surface.stride = static_cast<std::ptrdiff_t>(topDown ? rowBytes : -rowBytes);
    surface.width = width;
    surface.height = height;
    surface.format = format;
    surface.table = table.empty() ? nullptr : table.data();
    surface.tableSize = static_cast<int>(table.size());
    return surface;
}

} // namespace kel::platform
