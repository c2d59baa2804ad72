#pragma once

/// @file
/// Pens.

#include "platform/gdi/Brushes.h"

#include <kelcore/platform/pens.h>

#include <vector>

namespace kel::platform {

class PenObject final : public GdiObject {
public:
    static constexpr GdiType kType = GdiType::Pen;

    /// Of CreatePen.
    explicit PenObject(const LOGPEN& description);

    /// Of ExtCreatePen. @param brush what it is filled with; has no handle.
    PenObject(DWORD style, DWORD width, std::shared_ptr<const BrushObject> brush, const LOGBRUSH& description,
              std::vector<DWORD> dashes);

    DWORD PublicType() const override { return m_extended ? OBJ_EXTPEN : OBJ_PEN; }
    int Describe(int size, void* buffer) const override;
    std::string Details() const override;

    UINT Style() const { return m_style & PS_STYLE_MASK; }
    DWORD Cap() const { return m_style & PS_ENDCAP_MASK; }
    DWORD Join() const { return m_style & PS_JOIN_MASK; }
    bool IsExtended() const { return m_extended; }

    /// One pixel wide whatever the mapping.
    bool IsCosmetic() const { return m_extended ? !(m_style & PS_GEOMETRIC) : m_width == 0; }

    int Width() const { return m_width; } ///< in logical units
    COLORREF Colour() const { return m_colour; }
    const BrushObject& Brush() const { return *m_brush; }

    /// The caller's own dashes and gaps.
    const std::vector<DWORD>& Dashes() const { return m_dashes; }

private:
    std::vector<BYTE> Description() const;

    const DWORD m_style;
    const int m_width;
    const COLORREF m_colour;
    const bool m_extended;
    const std::shared_ptr<const BrushObject> m_brush;
    const LOGBRUSH m_brushDescription; ///< as given
    const std::vector<DWORD> m_dashes;
};

} // namespace kel::platform
