#include <kelcore/gdi/devicecontexts.h>

#include <cstdlib>
#include <memory>
#include <utility>

namespace {

// What a call stores through its last argument; zeros if it stores nothing.
template <class Value, class Call, class... Arguments>
Value Stored(Call call, Arguments... arguments) {
    Value value = {};
    call(arguments..., &value);
    return value;
}

struct Releasing {
    void operator()(IUnknown* object) const { object->Release(); }
};

void Scale(SIZE& size, const SIZE& by, const SIZE& through) {
    size.cx = MulDiv(size.cx, std::abs(by.cx), std::abs(through.cx));
    size.cy = MulDiv(size.cy, std::abs(by.cy), std::abs(through.cy));
}

} // namespace

DC::DC() : m_hDC(nullptr) {}

// By way of the other constructor, so that the context is deleted if the object throws.
DC::DC(HDC dc, IComplexWindowObject* object) : DC() {
    m_hDC = dc;
    SetClipArea(object);
}

DC::~DC() {
    Destroy();
}

bool DC::Attach(HDC dc) {
    Destroy();
    m_hDC = dc;
    return m_hDC != nullptr;
}

void DC::Destroy() {
    if (m_hDC != nullptr)
        DeleteDC(std::exchange(m_hDC, nullptr));
}

void DC::SetClipArea(IComplexWindowObject* object) {
    if (object == nullptr)
        return;
    IRectEnumerator* rects = nullptr;
    object->GetExcludedRects(&rects);
    if (rects == nullptr)
        return;
    const std::unique_ptr<IRectEnumerator, Releasing> excluded(rects);
    RECT rect = {};
    while (excluded->Next(rect))
        ExcludeClipRect(m_hDC, rect.left, rect.top, rect.right, rect.bottom);
}

POINT DC::GetBrushOrg() const {
    return Stored<POINT>(GetBrushOrgEx, m_hDC);
}

POINT DC::SetBrushOrg(int x, int y) {
    return Stored<POINT>(SetBrushOrgEx, m_hDC, x, y);
}

SIZE DC::GetViewportExt() const {
    return Stored<SIZE>(GetViewportExtEx, m_hDC);
}

POINT DC::GetViewportOrg() const {
    return Stored<POINT>(GetViewportOrgEx, m_hDC);
}

SIZE DC::GetWindowExt() const {
    return Stored<SIZE>(GetWindowExtEx, m_hDC);
}

POINT DC::GetWindowOrg() const {
    return Stored<POINT>(GetWindowOrgEx, m_hDC);
}

POINT DC::OffsetViewportOrg(int x, int y) {
    return Stored<POINT>(OffsetViewportOrgEx, m_hDC, x, y);
}

POINT DC::OffsetWindowOrg(int x, int y) {
    return Stored<POINT>(OffsetWindowOrgEx, m_hDC, x, y);
}

SIZE DC::ScaleViewportExt(int xNum, int xDenom, int yNum, int yDenom) {
    return Stored<SIZE>(ScaleViewportExtEx, m_hDC, xNum, xDenom, yNum, yDenom);
}

SIZE DC::ScaleWindowExt(int xNum, int xDenom, int yNum, int yDenom) {
    return Stored<SIZE>(ScaleWindowExtEx, m_hDC, xNum, xDenom, yNum, yDenom);
}

SIZE DC::SetViewportExt(int cx, int cy) {
    return Stored<SIZE>(SetViewportExtEx, m_hDC, cx, cy);
}

POINT DC::SetViewportOrg(int x, int y) {
    return Stored<POINT>(SetViewportOrgEx, m_hDC, x, y);
}

SIZE DC::SetWindowExt(int cx, int cy) {
    return Stored<SIZE>(SetWindowExtEx, m_hDC, cx, cy);
}

POINT DC::SetWindowOrg(int x, int y) {
    return Stored<POINT>(SetWindowOrgEx, m_hDC, x, y);
}

POINT DC::GetCurrentPosition() const {
    return Stored<POINT>(GetCurrentPositionEx, m_hDC);
}

POINT DC::MoveTo(int x, int y) {
    return Stored<POINT>(MoveToEx, m_hDC, x, y);
}

SIZE DC::GetAspectRatioFilter() const {
    return Stored<SIZE>(GetAspectRatioFilterEx, m_hDC);
}

float DC::GetMiterLimit() const {
    return Stored<float>(::GetMiterLimit, m_hDC);
}

void DC::DPtoLP(SIZE& size) const {
    const SIZE viewport = GetViewportExt();
    Scale(size, viewport, GetWindowExt());
}

void DC::LPtoDP(SIZE& size) const {
    const SIZE viewport = GetViewportExt();
    Scale(size, GetWindowExt(), viewport);
}

void DC::FillSolidRect(int x, int y, int cx, int cy, unsigned long colour) {
    FillSolidRect(RECT{x, y, x + cx, y + cy}, colour);
}

void DC::FillSolidRect(const RECT& rect, unsigned long colour) {
    SetBkColor(m_hDC, static_cast<COLORREF>(colour));
    ::ExtTextOutA(m_hDC, /*x*/ 0, /*y*/ 0, ETO_OPAQUE, &rect, /*text*/ nullptr, /*count*/ 0, /*advances*/ nullptr);
}

void DC::Draw3dRect(int x, int y, int cx, int cy, unsigned long topLeft, unsigned long bottomRight) {
    FillSolidRect(x, y, cx - 1, 1, topLeft);
    FillSolidRect(x, y, 1, cy - 1, topLeft);
    FillSolidRect(x + cx, y, -1, cy, bottomRight);
    FillSolidRect(x, y + cy, cx, -1, bottomRight);
}
