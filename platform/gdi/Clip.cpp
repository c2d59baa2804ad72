#include "platform/gdi/Clip.h"

#include <algorithm>
#include <new>

namespace kel::platform {
namespace {

void Require(pixman_bool_t done) {
    if (!done)
        throw std::bad_alloc();
}

} // namespace

Region::Region(RECT rect) {
    const pixman_box32_t box{std::min(rect.left, rect.right), std::min(rect.top, rect.bottom),
                             std::max(rect.left, rect.right), std::max(rect.top, rect.bottom)};
    // A box without pixels is an error to pixman's own constructor.
    if (box.x1 < box.x2 && box.y1 < box.y2)
        pixman_region32_init_with_extents(&m_region, const_cast<pixman_box32_t*>(&box));
    else
        pixman_region32_init(&m_region);
}

Region::Region(const Region& other) {
    pixman_region32_init(&m_region);
    Require(pixman_region32_copy(&m_region, other.Mutable()));
}

void Region::Intersect(const Region& other) {
    Require(pixman_region32_intersect(&m_region, &m_region, other.Mutable()));
}

void Region::Subtract(const Region& other) {
    Require(pixman_region32_subtract(&m_region, &m_region, other.Mutable()));
}

void Region::Unite(const Region& other) {
    Require(pixman_region32_union(&m_region, &m_region, other.Mutable()));
}

int Region::Kind() const {
    const int rectangles = pixman_region32_n_rects(Mutable());
    return rectangles == 0 ? NULLREGION : rectangles == 1 ? SIMPLEREGION : COMPLEXREGION;
}

RECT Region::Box() const {
    const pixman_box32_t* box = pixman_region32_extents(Mutable());
    return {box->x1, box->y1, box->x2, box->y2};
}

} // namespace kel::platform
