#include <kelcore/gdi/drawingobjects.h>

#include "gdi/ObjectCache.h"

#include <utility>

Pen::Pen() : m_hPen(nullptr) {}

Pen::Pen(const Pen& other) : m_hPen(kel::Pens().Share(other.m_hPen)) {}

Pen::Pen(HPEN pen) : m_hPen(pen) {}

Pen::Pen(int style, int width, unsigned long colour) : m_hPen(nullptr) {
    Create(style, width, colour);
}

Pen::Pen(const LOGPEN& description) : m_hPen(nullptr) {
    Create(description);
}

Pen::~Pen() {
    Destroy();
}

Pen& Pen::operator=(const Pen& other) {
    if (this != &other) {
        Destroy();
        m_hPen = kel::Pens().Share(other.m_hPen);
    }
    return *this;
}

bool Pen::Create(int style, int width, unsigned long colour) {
    return Create(LOGPEN{static_cast<UINT>(style), {width, 0}, static_cast<COLORREF>(colour)});
}

bool Pen::Create(const LOGPEN& description) {
    return Attach(kel::Pens().Obtain(description));
}

bool Pen::Attach(HPEN pen) {
    Destroy();
    m_hPen = pen;
    return m_hPen != nullptr;
}

void Pen::Destroy() {
    if (m_hPen != nullptr)
        kel::Pens().Release(std::exchange(m_hPen, nullptr));
}
