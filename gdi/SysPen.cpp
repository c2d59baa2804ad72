#include <kelcore/gdi/systemcolours.h>

SysPen::SysPen() : m_nStyle(0), m_nWidth(0), m_nIndex(0) {}

SysPen::SysPen(int style, int width, int index) : m_nStyle(style), m_nWidth(width), m_nIndex(index) {
    Pen::Create(style, width, GetSysColor(index));
}

bool SysPen::Create(int style, int width, int index) {
    Pen::Destroy();
    if (!Pen::Create(style, width, GetSysColor(index)))
        return false;
    m_nStyle = style;
    m_nWidth = width;
    m_nIndex = index;
    return true;
}

bool SysPen::OnSysColorChange() {
    Pen::Destroy();
    return Create(m_nStyle, m_nWidth, m_nIndex);
}
