#include "platform/gdi/text/ContextFont.h"

#include "platform/kernel/HostText.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace kel::platform {
namespace {

SIZE Lengths(SIZE extent) {
    return {std::abs(extent.cx), std::abs(extent.cy)};
}

bool Same(SIZE a, SIZE b) {
    return a.cx == b.cx && a.cy == b.cy;
}

} // namespace

int ContextFont::Scaled(int value, LONG multiplier, LONG divisor) {
    if (multiplier == divisor)
        return value;
    return static_cast<int>(std::lround(static_cast<double>(value) * multiplier / divisor));
}

ContextFont::ContextFont(DeviceContext& context)
    : m_object(static_cast<const FontObject*>(context.State().font.Get())),
      m_window(Lengths(context.State().mapping.windowExtent)),
      m_viewport(Lengths(context.State().mapping.viewportExtent)) {
    RealizedFont& realized = context.Realized();
    const unsigned files = FontFilesVersion();
    if (realized.object.get() != m_object || realized.files != files || !Same(realized.window, m_window) ||
        !Same(realized.viewport, m_viewport)) {
        const LOGFONTA& wanted = m_object->Description();
        SizeRequest request;
        request.face = {Utf8FromAnsi(wanted.lfFaceName), wanted.lfWeight, wanted.lfItalic != 0,
                        wanted.lfPitchAndFamily};
        request.height = Scaled(wanted.lfHeight, m_viewport.cy, m_window.cy);
        if (request.height == 0 && wanted.lfHeight != 0)
            request.height = wanted.lfHeight < 0 ? -1 : 1;
        request.width = Scaled(std::abs(wanted.lfWidth), m_viewport.cx, m_window.cx);
        request.escapement = wanted.lfEscapement % 3600;
        request.smooth = wanted.lfQuality != NONANTIALIASED_QUALITY;
        request.files = files;
        realized = {SizedFont::For(request), context.State().font.Shared(), m_window, m_viewport, files};
    }
    m_font = realized.font.get();
    m_extra = Scaled(context.State().characterExtra, m_viewport.cx, m_window.cx);
    if (!m_font)
        Fail(ERROR_FILE_NOT_FOUND);
}

int ContextFont::WidthOf(const TextCharacter* first, const TextCharacter* last) const {
    int width = 0;
    for (; first != last; ++first)
        width += AdvanceOf(first->code);
    return width;
}

SIZE ContextFont::ExtentOf(const TextRun& run) const {
    return {LogicalX(WidthOf(run)), LogicalY(m_font->Metrics().Height())};
}

} // namespace kel::platform
