#include "platform/gdi/Brushes.h"

#include "platform/gdi/StockObjects.h"
#include "platform/kernel/Faults.h"

#include <algorithm>
#include <cstring>

namespace kel::platform {
namespace {

template <class Handle, class Object, class... Arguments>
Handle Make(Arguments&&... arguments) {
    return static_cast<Handle>(WithMemory(
        HGDIOBJ(), [&] { return AddObject(std::make_shared<Object>(std::forward<Arguments>(arguments)...)); }));
}

HBRUSH MakeBrush(UINT style, COLORREF colour, ULONG_PTR hatch) {
    return Make<HBRUSH, BrushObject>(LOGBRUSH{style, colour, hatch});
}

// The brush keeps a copy, so that the bitmap may be drawn on and deleted.
std::shared_ptr<const BitmapObject> CopyOf(const BitmapObject& bitmap) {
    auto copy = std::make_shared<BitmapObject>(bitmap.Layout());
    std::memcpy(copy->Memory(), bitmap.Memory(), static_cast<std::size_t>(bitmap.RowBytes()) * bitmap.Height());
    return copy;
}

HBRUSH MakePatternBrush(HBITMAP handle) {
    const auto bitmap = FindObject<BitmapObject>(handle);
    if (!bitmap)
        return nullptr;
    return WithMemory(HBRUSH(), [&] {
        const LOGBRUSH description{BS_PATTERN, 0, reinterpret_cast<ULONG_PTR>(handle)};
        return Make<HBRUSH, BrushObject>(description, CopyOf(*bitmap));
    });
}

HBRUSH MakeHatchBrush(int hatch, COLORREF colour) {
    if (hatch < HS_HORIZONTAL || hatch > HS_DIAGCROSS)
        return Fail(ERROR_INVALID_PARAMETER), nullptr;
    return MakeBrush(BS_HATCHED, colour, static_cast<ULONG_PTR>(hatch));
}

HBRUSH MakeBrush(const LOGBRUSH& description) {
    switch (description.lbStyle) {
    case BS_SOLID:
        return MakeBrush(BS_SOLID, description.lbColor, /*hatch*/ 0);
    case BS_NULL:
        return static_cast<HBRUSH>(StockObject(NULL_BRUSH));
    case BS_HATCHED:
        return MakeHatchBrush(static_cast<int>(description.lbHatch), description.lbColor);
    case BS_PATTERN:
        return MakePatternBrush(reinterpret_cast<HBITMAP>(description.lbHatch));
    default:
        return Fail(ERROR_INVALID_PARAMETER), nullptr;
    }
}

HPEN MakePen(const LOGPEN& description) {
    if (description.lopnStyle == PS_NULL)
        return static_cast<HPEN>(StockObject(NULL_PEN));
    return Make<HPEN, PenObject>(description);
}

std::string Hexadecimal(COLORREF colour) {
    char digits[16];
    std::snprintf(digits, sizeof digits, "%06x", colour);
    return digits;
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

int PenObject::Describe(int size, void* buffer) const {
    if (buffer && size < static_cast<int>(sizeof m_description))
        return 0;
    if (buffer)
        std::memcpy(buffer, &m_description, sizeof m_description);
    return sizeof m_description;
}

std::string PenObject::Details() const {
    return "style " + std::to_string(m_description.lopnStyle) + " width " + std::to_string(m_description.lopnWidth.x) +
           " colour " + Hexadecimal(m_description.lopnColor);
}

} // namespace kel::platform

using namespace kel::platform;

HBRUSH WINAPI CreateSolidBrush(COLORREF colour) {
    return CallFails("CreateSolidBrush") ? nullptr : MakeBrush(BS_SOLID, colour, /*hatch*/ 0);
}

HBRUSH WINAPI CreateHatchBrush(int hatch, COLORREF colour) {
    return CallFails("CreateHatchBrush") ? nullptr : MakeHatchBrush(hatch, colour);
}

HBRUSH WINAPI CreatePatternBrush(HBITMAP bitmap) {
    return CallFails("CreatePatternBrush") ? nullptr : MakePatternBrush(bitmap);
}

HBRUSH WINAPI CreateBrushIndirect(const LOGBRUSH* brush) {
    if (CallFails("CreateBrushIndirect"))
        return nullptr;
    return brush ? MakeBrush(*brush) : (Fail(ERROR_INVALID_PARAMETER), nullptr);
}

HPEN WINAPI CreatePen(int style, int width, COLORREF colour) {
    if (CallFails("CreatePen"))
        return nullptr;
    return MakePen({static_cast<UINT>(style), {width, 0}, colour});
}

HPEN WINAPI CreatePenIndirect(const LOGPEN* pen) {
    if (CallFails("CreatePenIndirect"))
        return nullptr;
    return pen ? MakePen(*pen) : (Fail(ERROR_INVALID_PARAMETER), nullptr);
}
