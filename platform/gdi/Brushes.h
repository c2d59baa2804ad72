#pragma once

/// @file
/// Brushes and pens.

#include "platform/gdi/BitmapObject.h"

#include <kelcore/platform/pens.h>

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

class PenObject final : public GdiObject {
public:
    static constexpr GdiType kType = GdiType::Pen;

    explicit PenObject(const LOGPEN& description) : GdiObject(kType), m_description(description) {}

    DWORD PublicType() const override { return OBJ_PEN; }
    int Describe(int size, void* buffer) const override;
    std::string Details() const override;
    const LOGPEN& Description() const { return m_description; }

private:
    const LOGPEN m_description;
};

} // namespace kel::platform
