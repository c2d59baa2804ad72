#include <kelcore/gdi/drawingobjects.h>

#include "gdi/ObjectCache.h"

#include <utility>

Brush::Brush() : m_hBrush(nullptr) {}

Brush::Brush(const Brush& other) : m_hBrush(kel::Brushes().Share(other.m_hBrush)) {}

Brush::Brush(HBRUSH brush) : m_hBrush(brush) {}

Brush::Brush(unsigned long colour) : m_hBrush(nullptr) {
    Create(colour);
}

Brush::Brush(const LOGBRUSH& description) : m_hBrush(nullptr) {
    Create(description);
}

Brush::~Brush() {
    Destroy();
}

Brush& Brush::operator=(const Brush& other) {
    if (this != &other) {
        Destroy();
        m_hBrush = kel::Brushes().Share(other.m_hBrush);
    }
    return *this;
}

bool Brush::Attach(HBRUSH brush) {
    Destroy();
    m_hBrush = brush;
    return m_hBrush != nullptr;
}

void Brush::Destroy() {
    if (m_hBrush != nullptr)
        kel::Brushes().Release(std::exchange(m_hBrush, nullptr));
}

bool Brush::Create(unsigned long colour) {
    return Create(LOGBRUSH{BS_SOLID, static_cast<COLORREF>(colour), /*hatch*/ 0});
}

bool Brush::Create(const LOGBRUSH& description) {
    return Attach(kel::Brushes().Obtain(description));
}
