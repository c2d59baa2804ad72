#include "platform/gdi/Brushes.h"

#include "platform/gdi/DibFormat.h"
#include "platform/gdi/StockObjects.h"
#include "platform/kernel/Faults.h"

#include <kelcore/platform/globalmemory.h>

#include <algorithm>
#include <cstring>

namespace kel::platform {
namespace {

using Brush = std::shared_ptr<BrushObject>;

Brush Refused() {
    Fail(ERROR_INVALID_PARAMETER);
    return nullptr;
}

// The brush keeps a copy, so that the bitmap may be drawn on and deleted.
std::shared_ptr<const BitmapObject> CopyOf(const BitmapObject& bitmap) {
    auto copy = std::make_shared<BitmapObject>(bitmap.Layout());
    std::memcpy(copy->Memory(), bitmap.Memory(), static_cast<std::size_t>(bitmap.RowBytes()) * bitmap.Height());
    return copy;
}

Brush PatternBrush(HBITMAP handle) {
    const auto bitmap = FindObject<BitmapObject>(handle);
    if (!bitmap)
        return nullptr;
    return std::make_shared<BrushObject>(LOGBRUSH{BS_PATTERN, 0, reinterpret_cast<ULONG_PTR>(handle)}, CopyOf(*bitmap));
}

Brush HatchBrush(int hatch, COLORREF colour) {
    if (hatch < HS_HORIZONTAL || hatch > HS_DIAGCROSS)
        return Refused();
    return std::make_shared<BrushObject>(LOGBRUSH{BS_HATCHED, colour, static_cast<ULONG_PTR>(hatch)});
}

// The rows follow the colour table, which has as many entries as the header says.
const std::uint8_t* RowsOf(const BITMAPINFOHEADER& header, const DibFormat& format) {
    const std::size_t table = format.bitFields ? 3 * sizeof(DWORD) : format.table.size() * sizeof(RGBQUAD);
    const bool inHeader = format.bitFields && AfterHeader(header) != static_cast<const void*>(&header + 1);
    return static_cast<const std::uint8_t*>(AfterHeader(header)) + (inHeader ? 0 : table);
}

Brush DibBrush(const void* dib, UINT usage) {
    DibFormat format;
    if (!dib || usage != DIB_RGB_COLORS)
        return Refused();
    const auto& info = *static_cast<const BITMAPINFO*>(dib);
    if (!ReadDibFormat(info, usage, /*context*/ nullptr, format))
        return nullptr;
    const std::uint8_t* rows = RowsOf(info.bmiHeader, format);
    auto pattern = std::make_shared<BitmapObject>(BitmapLayout{format.width, format.height, format.format,
                                                               /*section*/ true, format.topDown, format.bitFields,
                                                               std::move(format.table)});
    std::memcpy(pattern->Memory(), rows, static_cast<std::size_t>(format.rowBytes) * format.height);
    return std::make_shared<BrushObject>(LOGBRUSH{BS_DIBPATTERN, 0, reinterpret_cast<ULONG_PTR>(dib)},
                                         std::move(pattern));
}

Brush MemoryBrush(const LOGBRUSH& description) {
    const auto memory = reinterpret_cast<HGLOBAL>(description.lbHatch);
    const void* dib = GlobalLock(memory);
    if (!dib)
        return nullptr;
    Brush brush = DibBrush(dib, description.lbColor);
    GlobalUnlock(memory);
    return brush;
}

/// Gives the object that @p make makes a handle.
template <class Make>
HBRUSH Handle(Make make) {
    return static_cast<HBRUSH>(WithMemory(HGDIOBJ(), [&] {
        Brush brush = make();
        return brush ? AddObject(std::move(brush)) : nullptr;
    }));
}

} // namespace

int BrushObject::Describe(int size, void* buffer) const {
    if (!buffer)
        return sizeof m_description;
    const std::size_t count = std::min(sizeof m_description, static_cast<std::size_t>(std::max(size, 0)));
    const LOGBRUSH description{Style(), Colour(), m_description.lbHatch};
    std::memcpy(buffer, &description, count);
    return static_cast<int>(count);
}

std::string BrushObject::Details() const {
    return "style " + std::to_string(Style()) + " colour " + Hexadecimal(Colour());
}

std::string Hexadecimal(COLORREF colour) {
    char digits[16];
    std::snprintf(digits, sizeof digits, "%06x", colour);
    return digits;
}

Brush MakeBrushObject(const LOGBRUSH& description) {
    switch (description.lbStyle) {
    case BS_SOLID:
    case BS_NULL:
        return std::make_shared<BrushObject>(LOGBRUSH{description.lbStyle, description.lbColor, /*hatch*/ 0});
    case BS_HATCHED:
        return HatchBrush(static_cast<int>(description.lbHatch), description.lbColor);
    case BS_PATTERN:
        return PatternBrush(reinterpret_cast<HBITMAP>(description.lbHatch));
    case BS_DIBPATTERN:
        return MemoryBrush(description);
    case BS_DIBPATTERNPT:
        return DibBrush(reinterpret_cast<const void*>(description.lbHatch), description.lbColor);
    default:
        return Refused();
    }
}

const std::uint8_t* HatchRows(int hatch) {
    static constexpr std::uint8_t kRows[][8] = {
        {0x00, 0x00, 0x00, 0xFF, 0x00, 0x00, 0x00, 0x00}, // horizontal
        {0x08, 0x08, 0x08, 0x08, 0x08, 0x08, 0x08, 0x08}, // vertical
        {0x80, 0x40, 0x20, 0x10, 0x08, 0x04, 0x02, 0x01}, // downwards
        {0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0x40, 0x80}, // upwards
        {0x08, 0x08, 0x08, 0xFF, 0x08, 0x08, 0x08, 0x08}, // cross
        {0x81, 0x42, 0x24, 0x18, 0x18, 0x24, 0x42, 0x81}, // both diagonals
    };
    return kRows[hatch];
}

} // namespace kel::platform

using namespace kel::platform;

HBRUSH WINAPI CreateSolidBrush(COLORREF colour) {
    if (CallFails("CreateSolidBrush"))
        return nullptr;
    return Handle([&] { return MakeBrushObject({BS_SOLID, colour, /*hatch*/ 0}); });
}

HBRUSH WINAPI CreateHatchBrush(int hatch, COLORREF colour) {
    return CallFails("CreateHatchBrush") ? nullptr : Handle([&] { return HatchBrush(hatch, colour); });
}

HBRUSH WINAPI CreatePatternBrush(HBITMAP bitmap) {
    return CallFails("CreatePatternBrush") ? nullptr : Handle([&] { return PatternBrush(bitmap); });
}

HBRUSH WINAPI CreateDIBPatternBrushPt(const void* dib, UINT usage) {
    return CallFails("CreateDIBPatternBrushPt") ? nullptr : Handle([&] { return DibBrush(dib, usage); });
}

HBRUSH WINAPI CreateBrushIndirect(const LOGBRUSH* brush) {
    if (CallFails("CreateBrushIndirect"))
        return nullptr;
    if (!brush)
        return Fail(ERROR_INVALID_PARAMETER), nullptr;
    if (brush->lbStyle == BS_NULL)
        return static_cast<HBRUSH>(StockObject(NULL_BRUSH));
    return Handle([&] { return MakeBrushObject(*brush); });
}
