#include "platform/gdi/DeviceContext.h"
#include "platform/kernel/Faults.h"

#include <algorithm>
#include <cstring>

namespace kel::platform {
namespace {

int VisibleBytes(const BitmapObject& bitmap) {
    return bitmap.VisibleRowBytes() * bitmap.Height();
}

// Calls move(row in the bitmap, offset of the row in the caller's bytes, bytes) for the rows, the last one perhaps
// short.
template <class Move>
void ForRows(const BitmapObject& bitmap, int count, Move move) {
    const Surface pixels = bitmap.Pixels();
    const int rowBytes = bitmap.VisibleRowBytes();
    for (int y = 0, offset = 0; offset < count; ++y, offset += rowBytes)
        move(pixels.Row(y), offset, static_cast<std::size_t>(std::min(rowBytes, count - offset)));
}

LONG Read(const BitmapObject& bitmap, LONG wanted, std::uint8_t* bytes) {
    const int size = VisibleBytes(bitmap);
    if (!bytes)
        return size;
    const int count = wanted < 0 ? size : std::min(wanted, size);
    ForRows(bitmap, count,
            [&](const std::uint8_t* row, int offset, std::size_t part) { std::memcpy(bytes + offset, row, part); });
    return count;
}

LONG Write(const BitmapObject& bitmap, DWORD given, const std::uint8_t* bytes) {
    // A negative number means what its positive counterpart means.
    const std::int64_t wanted = std::abs(std::int64_t{static_cast<std::int32_t>(given)});
    const int count = static_cast<int>(std::min<std::int64_t>(wanted, VisibleBytes(bitmap)));
    ForRows(bitmap, count,
            [&](std::uint8_t* row, int offset, std::size_t part) { std::memcpy(row, bytes + offset, part); });
    return count;
}

/// Entries of the colour table of the bitmap in a context.
struct Entries {
    RGBQUAD* first = nullptr;
    UINT count = 0;
};

Entries TableOf(HDC dc, UINT start, UINT count) {
    const auto context = FindContext(dc);
    if (!context || !context->IsMemory() || !context->State().bitmap->IsSection())
        return {};
    std::vector<RGBQUAD>& table = context->State().bitmap->Table();
    if (start >= table.size())
        return {};
    return {table.data() + start, std::min(count, static_cast<UINT>(table.size()) - start)};
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

LONG WINAPI GetBitmapBits(HBITMAP handle, LONG count, LPVOID bits) {
    if (CallFails("GetBitmapBits"))
        return 0;
    const auto bitmap = FindObject<BitmapObject>(handle);
    return bitmap ? Read(*bitmap, count, static_cast<std::uint8_t*>(bits)) : 0;
}

LONG WINAPI SetBitmapBits(HBITMAP handle, DWORD count, const void* bits) {
    if (CallFails("SetBitmapBits"))
        return 0;
    const auto bitmap = FindObject<BitmapObject>(handle);
    return bitmap && bits ? Write(*bitmap, count, static_cast<const std::uint8_t*>(bits)) : 0;
}

UINT WINAPI GetDIBColorTable(HDC dc, UINT start, UINT count, RGBQUAD* colours) {
    if (CallFails("GetDIBColorTable") || !colours)
        return 0;
    const Entries entries = TableOf(dc, start, count);
    std::copy_n(entries.first, entries.count, colours);
    return entries.count;
}

UINT WINAPI SetDIBColorTable(HDC dc, UINT start, UINT count, const RGBQUAD* colours) {
    if (CallFails("SetDIBColorTable") || !colours)
        return 0;
    const Entries entries = TableOf(dc, start, count);
    std::copy_n(colours, entries.count, entries.first);
    return entries.count;
}
