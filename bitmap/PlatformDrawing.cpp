#include "bitmap/PlatformDrawing.h"

#include <kelcore/runtime/system.h>

namespace kel {

MemoryContext::MemoryContext(HDC like) : m_dc(CreateCompatibleDC(like)) {}

MemoryContext::~MemoryContext() {
    End();
}

void MemoryContext::End() {
    if (!m_dc)
        return;
    if (m_previous)
        SelectObject(m_dc, m_previous);
    DeleteDC(m_dc);
    m_dc = nullptr;
}

bool MemoryContext::Select(HBITMAP bitmap) {
    if (!m_dc || !bitmap)
        return false;
    m_previous = SelectObject(m_dc, bitmap);
    return m_previous != nullptr;
}

// The system has no plainer call that takes the colour itself and needs no brush.
bool FillOpaque(HDC dc, const Rect& area, unsigned long color) {
    SetBkColor(dc, static_cast<COLORREF>(color));
    return ExtTextOutA(dc, 0, 0, ETO_OPAQUE, &area, /*text*/ nullptr, 0, /*spacing*/ nullptr) != FALSE;
}

bool Describe(HBITMAP bitmap, BITMAP& description) {
    return bitmap && GetObjectA(bitmap, sizeof description, &description) != 0;
}

bool Is95Family() {
    constexpr int k95Family = SysInfo::Win95 | SysInfo::Win98 | SysInfo::WinME;
    return (SysInfo::GetSystem() & k95Family) != 0;
}

} // namespace kel
