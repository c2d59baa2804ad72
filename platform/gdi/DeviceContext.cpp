#include "platform/gdi/DeviceContext.h"

#include "platform/gdi/Colours.h"
#include "platform/gdi/Screen.h"
#include "platform/gdi/StockObjects.h"
#include "platform/gdi/text/FontObject.h"

#include <algorithm>

namespace kel::platform {

DeviceContext::DeviceContext(std::shared_ptr<const DrawingArea> area) : DeviceContext(Kind::Window, std::move(area)) {}

DeviceContext::DeviceContext(Kind kind, std::shared_ptr<const DrawingArea> area)
    : GdiObject(kType), m_kind(kind), m_area(std::move(area)) {
    if (kind == Kind::Memory)
        m_state.bitmap = Selected(StockBitmap());
    m_state.brush = Selected(Stock<BrushObject>(WHITE_BRUSH));
    m_state.pen = Selected(Stock<PenObject>(BLACK_PEN));
    m_state.font = Selected<GdiObject>(Stock<FontObject>(SYSTEM_FONT));
    m_state.palette = Selected<GdiObject>(Stock<PaletteObject>(DEFAULT_PALETTE));
}

std::string DeviceContext::Details() const {
    return m_area ? "window" : IsMemory() ? "memory" : "screen";
}

AreaView DeviceContext::Source() const {
    if (m_area)
        return m_area->View();
    const Surface target = Target();
    return {target, {0, 0}, {target.width, target.height}};
}

Surface DeviceContext::Target() const {
    if (m_area)
        return m_area->View().Part();
    if (!IsMemory())
        return Screen();
    Surface surface = m_state.bitmap->Pixels();
    // All contexts share the stock bitmap, on all threads, but not what is drawn on it.
    if (m_state.bitmap->IsStock())
        surface.top = &m_stockPixel;
    return surface;
}

const Region& DeviceContext::Visible() {
    if (m_area && m_areaVersion != m_area->Version()) {
        m_visible.reset();
        m_areaVersion = m_area->Version();
    }
    if (!m_visible) {
        const Surface target = Target();
        Region visible = m_area ? m_area->Reachable() : Region(RECT{0, 0, target.width, target.height});
        if (m_state.clip)
            visible.Intersect(*m_state.clip);
        m_visible = std::move(visible);
    }
    return *m_visible;
}

int DeviceContext::IntersectClip(const Region& region) {
    Region clip(m_state.clip ? *m_state.clip : region);
    clip.Intersect(region);
    return SetClip(std::move(clip));
}

int DeviceContext::ExcludeClip(const Region& region) {
    const Surface target = Target();
    Region clip(m_state.clip ? *m_state.clip : Region(RECT{0, 0, target.width, target.height}));
    clip.Subtract(region);
    return SetClip(std::move(clip));
}

int DeviceContext::SetClip(std::optional<Region> region) {
    m_state.clip = std::move(region);
    m_visible.reset();
    return m_state.clip ? m_state.clip->Kind() : SIMPLEREGION;
}

bool DeviceContext::Holds(const BitmapObject& bitmap) const {
    const auto holds = [&](const ContextState& state) { return state.bitmap.Get() == &bitmap; };
    return holds(m_state) || std::any_of(m_saved.begin(), m_saved.end(), holds);
}

bool DeviceContext::Takes(const BitmapObject& bitmap) const {
    const bool fits = bitmap.IsSection() || bitmap.Format() == PixelFormat::Mono || bitmap.Format() == Screen().format;
    return IsMemory() && fits && (bitmap.IsStock() || bitmap.Selections() == 0 || Holds(bitmap));
}

void DeviceContext::SelectBitmap(std::shared_ptr<BitmapObject> bitmap) {
    m_state.bitmap = Selected(std::move(bitmap));
    m_visible.reset();
}

int DeviceContext::Save() {
    m_saved.push_back(m_state);
    return static_cast<int>(m_saved.size());
}

bool DeviceContext::Restore(int level) {
    const int count = static_cast<int>(m_saved.size());
    const int index = level < 0 ? count + level : level - 1;
    if (level == 0 || index < 0 || index >= count)
        return false;
    m_state = std::move(m_saved[static_cast<std::size_t>(index)]);
    m_saved.resize(static_cast<std::size_t>(index));
    m_visible.reset();
    return true;
}

COLORREF DeviceContext::ColourOf(const BrushObject& brush) const {
    return Resolved(brush.Handle() == StockObject(DC_BRUSH) ? m_state.brushColour : brush.Colour());
}

COLORREF DeviceContext::ColourOf(const PenObject& pen) const {
    return Resolved(pen.Handle() == StockObject(DC_PEN) ? m_state.penColour : pen.Colour());
}

} // namespace kel::platform
