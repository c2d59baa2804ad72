#pragma once

/// @file
/// The font of a context in the size that its mapping gives it, and what texts measure there.

#include "platform/gdi/DeviceContext.h"
#include "platform/gdi/text/FontObject.h"
#include "platform/gdi/text/SizedFont.h"
#include "platform/gdi/text/TextRun.h"

#include <cstdlib>

namespace kel::platform {

/// Text is upright whatever the mapping mirrors: axes count by the length of their units alone.
class ContextFont {
public:
    /// Looks the font up. @throws std::bad_alloc
    explicit ContextFont(DeviceContext& context)
        : m_object(static_cast<const FontObject*>(context.State().font.Get())),
          m_window(Lengths(context.State().mapping.windowExtent)),
          m_viewport(Lengths(context.State().mapping.viewportExtent)),
          m_extra(Scaled(context.State().characterExtra, m_viewport.cx, m_window.cx)) {
        const RealizedFont& known = context.Realized();
        m_font = Holds(known) ? known.font.get() : Realize(context);
        if (!m_font)
            Fail(ERROR_FILE_NOT_FOUND);
    }

    /// Whether there is a font; otherwise the last error is ERROR_FILE_NOT_FOUND.
    explicit operator bool() const { return m_font != nullptr; }

    SizedFont& Font() const { return *m_font; }
    const LOGFONTA& Description() const { return m_object->Description(); }

    /// From pixels to logical units and back, to the nearest whole number.
    int LogicalX(int pixels) const { return Scaled(pixels, m_window.cx, m_viewport.cx); }
    int LogicalY(int pixels) const { return Scaled(pixels, m_window.cy, m_viewport.cy); }
    int PixelsX(int units) const { return Scaled(units, m_viewport.cx, m_window.cx); }

    /// The advance of a character in pixels, extra space included.
    int AdvanceOf(char32_t code) const { return m_font->WidthsOf(code).Advance() + m_extra; }

    /// The sum of the advances, in pixels.
    int WidthOf(const TextCharacter* first, const TextCharacter* last) const;
    int WidthOf(const TextRun& run) const { return WidthOf(run.data(), run.data() + run.size()); }

    /// Width and height in logical units.
    SIZE ExtentOf(const TextRun& run) const;

private:
    static int Scaled(int value, LONG multiplier, LONG divisor) {
        return multiplier == divisor ? value : Rounded(static_cast<double>(value) * multiplier / divisor);
    }
    static int Rounded(double value);
    static SIZE Lengths(SIZE extent) { return {std::abs(extent.cx), std::abs(extent.cy)}; }
    static bool Same(SIZE a, SIZE b) { return a.cx == b.cx && a.cy == b.cy; }

    bool Holds(const RealizedFont& known) const {
        return known.object.get() == m_object && known.files == FontFilesVersion() && Same(known.window, m_window) &&
               Same(known.viewport, m_viewport);
    }
    SizedFont* Realize(DeviceContext& context) const;

    SizedFont* m_font = nullptr; // held by the context
    const FontObject* m_object;
    SIZE m_window;
    SIZE m_viewport;
    int m_extra;
};

} // namespace kel::platform
