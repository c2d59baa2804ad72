#include <kelcore/gdi/regions.h>

#include <utility>

Rgn::Rgn() : m_hRgn(nullptr) {}

Rgn::Rgn(HRGN region) : m_hRgn(region) {}

Rgn::Rgn(const Rgn& other) = default;

Rgn::~Rgn() {
    Destroy();
}

Rgn& Rgn::operator=(const Rgn& other) = default;

bool Rgn::Attach(HRGN region) {
    Destroy();
    m_hRgn = region;
    return m_hRgn != nullptr;
}

void Rgn::Destroy() {
    if (m_hRgn != nullptr)
        DeleteObject(std::exchange(m_hRgn, nullptr));
}

HRGN Rgn::Detach() {
    return std::exchange(m_hRgn, nullptr);
}

bool Rgn::HasHRgn() const {
    return m_hRgn != nullptr;
}

Rgn::operator HRGN() const {
    return m_hRgn;
}

bool Rgn::CreateEllipticRgn(int left, int top, int right, int bottom) {
    return Attach(::CreateEllipticRgn(left, top, right, bottom));
}

bool Rgn::CreateEllipticRgnIndirect(const RECT& rect) {
    return Attach(::CreateEllipticRgnIndirect(&rect));
}

bool Rgn::CreateFromPath(HDC dc) {
    return Attach(PathToRegion(dc));
}

bool Rgn::CreatePolygonRgn(POINT* points, int count, int fillMode) {
    return Attach(::CreatePolygonRgn(points, count, fillMode));
}

bool Rgn::CreatePolyPolygonRgn(POINT* points, int& counts, int polygonCount, int fillMode) {
    return Attach(::CreatePolyPolygonRgn(points, &counts, polygonCount, fillMode));
}

bool Rgn::CreateRectRgn(int left, int top, int right, int bottom) {
    return Attach(::CreateRectRgn(left, top, right, bottom));
}

bool Rgn::CreateRectRgn(const RECT& rect) {
    return Attach(CreateRectRgnIndirect(&rect));
}

bool Rgn::CreateRoundRectRgn(int left, int top, int right, int bottom, int ellipseWidth, int ellipseHeight) {
    return Attach(::CreateRoundRectRgn(left, top, right, bottom, ellipseWidth, ellipseHeight));
}

bool Rgn::ExtCreateRegion(const XFORM& transform, int size, const RGNDATA& data) {
    return Attach(::ExtCreateRegion(&transform, static_cast<DWORD>(size), &data));
}

int Rgn::CombineRgn(HRGN first, HRGN second, int mode) {
    return ::CombineRgn(m_hRgn, first, second, mode);
}

int Rgn::Copy(HRGN source) {
    return ::CombineRgn(m_hRgn, source, nullptr, RGN_COPY);
}

bool Rgn::EqualRgn(HRGN other) const {
    return ::EqualRgn(m_hRgn, other) != 0;
}

int Rgn::GetRgnBox(RECT& box) const {
    return ::GetRgnBox(m_hRgn, &box);
}

int Rgn::GetRegionData(RGNDATA& data, unsigned int size) const {
    return static_cast<int>(::GetRegionData(m_hRgn, size, &data));
}

int Rgn::OffsetRgn(int x, int y) {
    return ::OffsetRgn(m_hRgn, x, y);
}

int Rgn::OffsetRgn(const POINT& offset) {
    return ::OffsetRgn(m_hRgn, offset.x, offset.y);
}

bool Rgn::PtInRegion(int x, int y) const {
    return ::PtInRegion(m_hRgn, x, y) != 0;
}

bool Rgn::PtInRegion(const POINT& point) const {
    return ::PtInRegion(m_hRgn, point.x, point.y) != 0;
}

bool Rgn::RectInRegion(const RECT& rect) const {
    return ::RectInRegion(m_hRgn, &rect) != 0;
}

void Rgn::SetRectRgn(int left, int top, int right, int bottom) {
    ::SetRectRgn(m_hRgn, left, top, right, bottom);
}

void Rgn::SetRectRgn(const RECT& rect) {
    ::SetRectRgn(m_hRgn, rect.left, rect.top, rect.right, rect.bottom);
}
