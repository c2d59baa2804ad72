#pragma once

/// @file
/// Brushes.

#include "platform/gdi/BitmapObject.h"

#include <kelcore/platform/brushes.h>

namespace kel::platform {

class BrushObject final : public GdiObject {
public:
    static constexpr GdiType kType = GdiType::Brush;

    /// @param pattern of BS_PATTERN: the brush's own copy of the bitmap, which has no handle.
    explicit BrushObject(const LOGBRUSH& description, std::shared_ptr<const BitmapObject> pattern = nullptr)
        : GdiObject(kType), m_description(description), m_pattern(std::move(pattern)) {}

    /// A solid brush that follows @p colour, which outlives it.
    explicit BrushObject(const std::atomic<COLORREF>& colour)
        : GdiObject(kType), m_description{BS_SOLID, 0, 0}, m_colour(&colour) {}

    DWORD PublicType() const override { return OBJ_BRUSH; }
    int Describe(int size, void* buffer) const override;
    std::string Details() const override;

    UINT Style() const { return m_description.lbStyle; }
    COLORREF Colour() const { return m_colour ? m_colour->load() : m_description.lbColor; }
    int Hatch() const { return static_cast<int>(m_description.lbHatch); }
    const BitmapObject* Pattern() const { return m_pattern.get(); }

private:
    const LOGBRUSH m_description;
    const std::shared_ptr<const BitmapObject> m_pattern;
    const std::atomic<COLORREF>* const m_colour = nullptr;
};

/// The eight rows of a hatch, the left pixel in bit 7; a set bit is a line.
const std::uint8_t* HatchRows(int hatch);

/// The object that @p description asks for, without a handle. @return null, with the last error set, if there is none.
/// @throws std::bad_alloc
std::shared_ptr<BrushObject> MakeBrushObject(const LOGBRUSH& description);

/// For the ledger.
std::string Hexadecimal(COLORREF colour);

} // namespace kel::platform
