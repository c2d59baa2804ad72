#include "platform/gdi/Pens.h"

#include "platform/gdi/StockObjects.h"
#include "platform/kernel/Faults.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace kel::platform {
namespace {

constexpr DWORD kMostDashes = 16;

HPEN NullPen() {
    return static_cast<HPEN>(StockObject(NULL_PEN));
}

template <class... Arguments>
HPEN Make(Arguments&&... arguments) {
    return static_cast<HPEN>(AddObject(std::make_shared<PenObject>(std::forward<Arguments>(arguments)...)));
}

HPEN MakePen(LOGPEN description) {
    if (description.lopnStyle == PS_NULL)
        return NullPen();
    if (description.lopnStyle > PS_INSIDEFRAME)
        description.lopnStyle = PS_SOLID;
    description.lopnWidth.x = std::abs(description.lopnWidth.x);
    return WithMemory(HPEN(), [&] { return Make(description); });
}

/// Whether style, width and brush go together.
bool AreValid(DWORD style, DWORD width, const LOGBRUSH& brush) {
    const bool isGeometric = style & PS_GEOMETRIC;
    switch (style & PS_STYLE_MASK) {
    case PS_INSIDEFRAME:
        return isGeometric;
    case PS_ALTERNATE:
        return !isGeometric && width == 1 && brush.lbStyle == BS_SOLID;
    default:
        return (style & PS_STYLE_MASK) < PS_ALTERNATE && (isGeometric || (width == 1 && brush.lbStyle == BS_SOLID));
    }
}

bool AreValid(DWORD style, DWORD count, const DWORD* dashes) {
    return (style & PS_STYLE_MASK) == PS_USERSTYLE ? dashes && count > 0 && count <= kMostDashes : count == 0;
}

HPEN MakeExtendedPen(DWORD style, DWORD width, const LOGBRUSH& brush, DWORD count, const DWORD* dashes) {
    if (!AreValid(style, width, brush) || !AreValid(style, count, dashes))
        return Fail(ERROR_INVALID_PARAMETER), nullptr;
    if ((style & PS_STYLE_MASK) == PS_NULL || brush.lbStyle == BS_NULL)
        return NullPen();
    return WithMemory(HPEN(), [&]() -> HPEN {
        auto filling = MakeBrushObject(brush);
        return filling ? Make(style, width, std::move(filling), brush, std::vector<DWORD>(dashes, dashes + count))
                       : nullptr;
    });
}

} // namespace

PenObject::PenObject(const LOGPEN& description)
    : GdiObject(kType), m_style(description.lopnStyle), m_width(description.lopnWidth.x),
      m_colour(description.lopnColor), m_extended(false),
      m_brush(std::make_shared<BrushObject>(LOGBRUSH{BS_SOLID, m_colour, /*hatch*/ 0})), m_brushDescription{} {}

PenObject::PenObject(DWORD style, DWORD width, std::shared_ptr<const BrushObject> brush, const LOGBRUSH& description,
                     std::vector<DWORD> dashes)
    : GdiObject(kType), m_style(style), m_width(std::abs(static_cast<int>(width))), m_colour(description.lbColor),
      m_extended(true), m_brush(std::move(brush)), m_brushDescription(description), m_dashes(std::move(dashes)) {}

std::vector<BYTE> PenObject::Description() const {
    if (!m_extended) {
        const LOGPEN pen{m_style, {m_width, 0}, m_colour};
        const auto* const bytes = reinterpret_cast<const BYTE*>(&pen);
        return {bytes, bytes + sizeof pen};
    }
    EXTLOGPEN pen{};
    pen.elpPenStyle = m_style;
    pen.elpWidth = static_cast<DWORD>(m_width);
    pen.elpBrushStyle = m_brushDescription.lbStyle;
    pen.elpColor = m_colour;
    pen.elpHatch = m_brushDescription.lbHatch;
    pen.elpNumEntries = static_cast<DWORD>(m_dashes.size());
    const auto* const bytes = reinterpret_cast<const BYTE*>(&pen);
    std::vector<BYTE> description(bytes, bytes + offsetof(EXTLOGPEN, elpStyleEntry));
    const auto* const dashes = reinterpret_cast<const BYTE*>(m_dashes.data());
    description.insert(description.end(), dashes, dashes + m_dashes.size() * sizeof(DWORD));
    return description;
}

int PenObject::Describe(int size, void* buffer) const {
    const std::vector<BYTE> description = Description();
    const int needed = static_cast<int>(description.size());
    if (buffer && size < needed)
        return 0;
    if (buffer)
        std::memcpy(buffer, description.data(), description.size());
    return needed;
}

std::string PenObject::Details() const {
    return "style " + std::to_string(m_style) + " width " + std::to_string(m_width) + " colour " +
           Hexadecimal(m_colour);
}

} // namespace kel::platform

using namespace kel::platform;

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

HPEN WINAPI ExtCreatePen(DWORD style, DWORD width, const LOGBRUSH* brush, DWORD count, const DWORD* dashes) {
    if (CallFails("ExtCreatePen"))
        return nullptr;
    return brush ? MakeExtendedPen(style, width, *brush, count, dashes) : (Fail(ERROR_INVALID_PARAMETER), nullptr);
}
