#pragma once

/// @file
/// Regions of device pixels.

#include "platform/gdi/GdiObject.h"

#include <kelcore/platform/devicecontexts.h>

#include <pixman.h>

#include <utility>

namespace kel::platform {

/// A set of pixels, kept as rectangles in bands. A value; operations throw std::bad_alloc.
class Region {
public:
    Region() { pixman_region32_init(&m_region); }
    /// The pixels of @p rect, whose edges may be in either order.
    explicit Region(RECT rect);
    Region(const Region& other);
    Region(Region&& other) noexcept : m_region(other.m_region) { pixman_region32_init(&other.m_region); }
    Region& operator=(Region other) noexcept {
        std::swap(m_region, other.m_region);
        return *this;
    }
    ~Region() { pixman_region32_fini(&m_region); }

    /// The pixels of all of the boxes, in any order; those whose edges are not in order have none.
    Region(const pixman_box32_t* boxes, int count);

    /// @name Combinations
    /// Stored in this region, which may be one of the two.
    /// @{
    void SetIntersection(const Region& a, const Region& b);
    void SetUnion(const Region& a, const Region& b);
    void SetDifference(const Region& a, const Region& b);
    void SetEither(const Region& a, const Region& b); ///< what is in one of them alone
    /// @}

    void Intersect(const Region& other);
    void Subtract(const Region& other);
    void Unite(const Region& other);
    void Offset(int dx, int dy) { pixman_region32_translate(&m_region, dx, dy); } ///< what leaves the range is lost

    /// NULLREGION, SIMPLEREGION or COMPLEXREGION.
    int Kind() const;

    /// The smallest rectangle around it, (0, 0, 0, 0) for an empty one.
    RECT Box() const;

    bool operator==(const Region& other) const;
    bool Holds(POINT point) const;

    /// Whether a pixel of @p rect, whose edges may be in either order, is in it.
    bool Meets(RECT rect) const;

    /// Its rectangles, from top to bottom in bands, in bands from left to right.
    struct Boxes {
        const pixman_box32_t* first;
        int count;

        const pixman_box32_t* begin() const { return first; }
        const pixman_box32_t* end() const { return first + count; }
    };
    Boxes Rectangles() const;

    const pixman_region32_t* Get() const { return &m_region; }

private:
    // pixman takes its sources by pointers that are not const.
    pixman_region32_t* Mutable() const { return const_cast<pixman_region32_t*>(&m_region); }

    pixman_region32_t m_region;
};

class RegionObject final : public GdiObject {
public:
    static constexpr GdiType kType = GdiType::Region;

    explicit RegionObject(Region region) : GdiObject(kType), m_region(std::move(region)) {}

    DWORD PublicType() const override { return OBJ_REGION; }
    std::string Details() const override;
    Region& Pixels() { return m_region; }

private:
    Region m_region;
};

/// A handle of the region that @p make makes; null with ERROR_NOT_ENOUGH_MEMORY when memory is short.
template <class Make>
HRGN MakeRegion(Make make) {
    return static_cast<HRGN>(WithMemory(HGDIOBJ(), [&] { return AddObject(std::make_shared<RegionObject>(make())); }));
}

} // namespace kel::platform
