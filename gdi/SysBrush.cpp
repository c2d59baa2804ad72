#include <kelcore/gdi/systemcolours.h>

SysBrush::SysBrush() : m_nIndex(0) {}

SysBrush::SysBrush(int index) : m_nIndex(index) {
    Brush::Create(GetSysColor(index));
}

bool SysBrush::Create(int index) {
    Brush::Destroy();
    if (!Brush::Create(GetSysColor(index)))
        return false;
    m_nIndex = index;
    return true;
}

bool SysBrush::OnSysColorChange() {
    Brush::Destroy();
    return Brush::Create(GetSysColor(m_nIndex));
}
