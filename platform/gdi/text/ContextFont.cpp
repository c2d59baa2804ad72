#include "platform/gdi/text/ContextFont.h"

#include "platform/kernel/HostText.h"

#include <cmath>

namespace kel::platform {

int ContextFont::Rounded(double value) {
    return static_cast<int>(std::lround(value));
}

SizedFont* ContextFont::Realize(DeviceContext& context) const {
    const LOGFONTA& wanted = m_object->Description();
    SizeRequest request;
    request.face = {Utf8FromAnsi(wanted.lfFaceName), wanted.lfWeight, wanted.lfItalic != 0, wanted.lfPitchAndFamily};
    request.height = Scaled(wanted.lfHeight, m_viewport.cy, m_window.cy);
    if (request.height == 0 && wanted.lfHeight != 0)
        request.height = wanted.lfHeight < 0 ? -1 : 1;
    request.width = Scaled(std::abs(wanted.lfWidth), m_viewport.cx, m_window.cx);
    request.escapement = wanted.lfEscapement % 3600;
    request.smooth = wanted.lfQuality != NONANTIALIASED_QUALITY;
    request.files = FontFilesVersion();
    RealizedFont& known = context.Realized();
    known = {SizedFont::For(request), context.State().font.Shared(), m_window, m_viewport, request.files};
    return known.font.get();
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
