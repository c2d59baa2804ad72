#include "platform/gdi/Clip.h"

#include <algorithm>
#include <new>

namespace kel::platform {
namespace {

void Require(pixman_bool_t done) {
    if (!done)
        throw std::bad_alloc();
}

pixman_box32_t BoxOf(const RECT& rect) {
    return {std::min(rect.left, rect.right), std::min(rect.top, rect.bottom), std::max(rect.left, rect.right),
            std::max(rect.top, rect.bottom)};
}

bool HasPixels(const pixman_box32_t& box) {
    return box.x1 < box.x2 && box.y1 < box.y2;
}

} // namespace

Region::Region(RECT rect) {
    const pixman_box32_t box = BoxOf(rect);
    // A box without pixels is an error to pixman's own constructor.
    if (HasPixels(box))
        pixman_region32_init_with_extents(&m_region, const_cast<pixman_box32_t*>(&box));
    else
        pixman_region32_init(&m_region);
}

Region::Region(const pixman_box32_t* boxes, int count) {
    // Of several boxes pixman leaves those without pixels out; a single one it takes for an error.
    if (count == 1 && !HasPixels(*boxes))
        pixman_region32_init(&m_region);
    else
        Require(pixman_region32_init_rects(&m_region, boxes, count));
}

Region::Region(const Region& other) {
    pixman_region32_init(&m_region);
    Require(pixman_region32_copy(&m_region, other.Mutable()));
}

void Region::SetIntersection(const Region& a, const Region& b) {
    Require(pixman_region32_intersect(&m_region, a.Mutable(), b.Mutable()));
}

void Region::SetUnion(const Region& a, const Region& b) {
    Require(pixman_region32_union(&m_region, a.Mutable(), b.Mutable()));
}

void Region::SetDifference(const Region& a, const Region& b) {
    Require(pixman_region32_subtract(&m_region, a.Mutable(), b.Mutable()));
}

void Region::SetEither(const Region& a, const Region& b) {
    Region both;
    both.SetIntersection(a, b);
    SetUnion(a, b);
    Subtract(both);
}

void Region::Intersect(const Region& other) {
    SetIntersection(*this, other);
}

void Region::Subtract(const Region& other) {
    SetDifference(*this, other);
}

void Region::Unite(const Region& other) {
    SetUnion(*this, other);
}

int Region::Kind() const {
    const int rectangles = pixman_region32_n_rects(Mutable());
    return rectangles == 0 ? NULLREGION : rectangles == 1 ? SIMPLEREGION : COMPLEXREGION;
}

RECT Region::Box() const {
    if (!pixman_region32_not_empty(Mutable()))
        return {0, 0, 0, 0};
    const pixman_box32_t* box = pixman_region32_extents(Mutable());
    return {box->x1, box->y1, box->x2, box->y2};
}

bool Region::operator==(const Region& other) const {
    // Of empty regions pixman also compares where they are.
    if (!pixman_region32_not_empty(Mutable()))
        return !pixman_region32_not_empty(other.Mutable());
    return pixman_region32_equal(Mutable(), other.Mutable());
}

bool Region::Holds(POINT point) const {
    return pixman_region32_contains_point(Mutable(), point.x, point.y, nullptr);
}

bool Region::Meets(RECT rect) const {
    pixman_box32_t box = BoxOf(rect);
    return HasPixels(box) && pixman_region32_contains_rectangle(Mutable(), &box) != PIXMAN_REGION_OUT;
}

Region::Boxes Region::Rectangles() const {
    Boxes boxes{};
    boxes.first = pixman_region32_rectangles(Mutable(), &boxes.count);
    return boxes;
}

std::string RegionObject::Details() const {
    const RECT box = m_region.Box();
    return std::to_string(m_region.Rectangles().count) + " in (" + std::to_string(box.left) + ", " +
           std::to_string(box.top) + ", " + std::to_string(box.right) + ", " + std::to_string(box.bottom) + ")";
}

} // namespace kel::platform
