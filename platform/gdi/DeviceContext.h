#pragma once

/// @file
/// Device contexts and their state.

#include "platform/gdi/Brushes.h"
#include "platform/gdi/Clip.h"
#include "platform/gdi/DrawingArea.h"
#include "platform/gdi/DrawingPath.h"
#include "platform/gdi/Mapping.h"
#include "platform/gdi/Pens.h"

#include <kelcore/platform/shapes.h>

#include <optional>
#include <vector>

namespace kel::platform {

class SizedFont;

/// The selected font in the size that the mapping gives it, as text was drawn or measured last (ContextFont).
struct RealizedFont {
    std::shared_ptr<SizedFont> font;
    std::shared_ptr<const GdiObject> object; ///< what it was made from: this, and all below
    SIZE window{0, 0};
    SIZE viewport{0, 0};
    unsigned files = 0;
};

/// What SaveDC puts aside.
struct ContextState {
    Selected<BitmapObject> bitmap; ///< of a memory context
    Selected<BrushObject> brush;
    Selected<PenObject> pen;
    Selected<GdiObject> font;
    Selected<GdiObject> palette;
    std::optional<Region> clip; ///< in device units; none: all of the surface
    Mapping mapping;
    POINT position{0, 0};
    POINT brushOrigin{0, 0};
    COLORREF textColour = RGB(0, 0, 0);
    COLORREF backColour = RGB(255, 255, 255);
    COLORREF brushColour = RGB(255, 255, 255); ///< of DC_BRUSH
    COLORREF penColour = RGB(0, 0, 0);         ///< of DC_PEN
    int backMode = OPAQUE;
    int rasterMode = R2_COPYPEN;
    int stretchMode = BLACKONWHITE;
    UINT textAlign = 0; ///< TA_ flags
    int characterExtra = 0;
    float miterLimit = 10;
    int fillMode = ALTERNATE;
    std::optional<DrawingPath> path; ///< in device units
    bool pathIsOpen = false;         ///< drawing adds to it
};

class DeviceContext final : public GdiObject {
public:
    static constexpr GdiType kType = GdiType::Context;

    enum class Kind : std::uint8_t { Memory, Screen, Window };

    /// With the stock objects selected.
    explicit DeviceContext(Kind kind) : DeviceContext(kind, nullptr) {}

    /// Of a window: draws where @p area lets it.
    explicit DeviceContext(std::shared_ptr<const DrawingArea> area);

    DWORD PublicType() const override { return m_kind == Kind::Memory ? OBJ_MEMDC : OBJ_DC; }
    std::string Details() const override;
    bool IsMemory() const { return m_kind == Kind::Memory; }

    /// Where drawing goes: the selected bitmap, the screen or the part of a window's surface. Of the last, nothing
    /// outside of Visible is to be touched.
    Surface Target() const;

    /// What drawing from the context may read.
    AreaView Source() const;

    const ContextState& State() const { return m_state; }
    ContextState& State() { return m_state; }

    /// What drawing can reach, in device units: the surface's bounds within the clip region. Valid until the state is
    /// changed. @throws std::bad_alloc
    const Region& Visible();

    /// Narrows the clip region to @p region, or takes it away from it. @return the kind of what is left of the clip
    /// region.
    int IntersectClip(const Region& region);
    int ExcludeClip(const Region& region);

    /// Replaces the clip region. @return its kind; of none: that of the surface's bounds.
    int SetClip(std::optional<Region> region);

    /// Whether the bitmap may be selected: into memory contexts, into one at a time, of a format that fits.
    bool Takes(const BitmapObject& bitmap) const;
    void SelectBitmap(std::shared_ptr<BitmapObject> bitmap);

    int Save();
    bool Restore(int level);

    /// From logical to device units.
    POINT ToDevice(POINT point) const { return m_state.mapping.ToDevice(point); }

    /// The edges in order, whichever order they had.
    RECT ToDevice(RECT rect) const { return m_state.mapping.ToDevice(rect); }

    /// From device to logical units.
    POINT ToLogical(POINT point) const { return m_state.mapping.ToLogical(point); }

    RealizedFont& Realized() { return m_realized; }

    /// The colour that a brush or a pen, if it has one, draws with in this context.
    COLORREF ColourOf(const BrushObject& brush) const;
    COLORREF ColourOf(const PenObject& pen) const;

private:
    DeviceContext(Kind kind, std::shared_ptr<const DrawingArea> area);
    bool Holds(const BitmapObject& bitmap) const;

    const Kind m_kind;
    const std::shared_ptr<const DrawingArea> m_area; // of a window
    unsigned m_areaVersion = 0;                      // that m_visible is of
    ContextState m_state;
    std::vector<ContextState> m_saved;
    std::optional<Region> m_visible; // made when asked for
    RealizedFont m_realized;
    mutable std::uint8_t m_stockPixel = 0; // of the stock bitmap
};

/// The context of a handle; null with ERROR_INVALID_HANDLE.
inline std::shared_ptr<DeviceContext> FindContext(HDC dc) {
    return FindObject<DeviceContext>(dc);
}

/// The same, not held: see PeekObject.
inline DeviceContext* PeekContext(HDC dc) {
    GdiObject* object = PeekObject(dc);
    if (!object || object->Type() != GdiType::Context) {
        Fail(ERROR_INVALID_HANDLE);
        return nullptr;
    }
    return static_cast<DeviceContext*>(object);
}

} // namespace kel::platform
