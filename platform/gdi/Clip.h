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

    void Intersect(const Region& other);
    void Subtract(const Region& other);
    void Unite(const Region& other);
    void Offset(int dx, int dy) { pixman_region32_translate(&m_region, dx, dy); }

    /// NULLREGION, SIMPLEREGION or COMPLEXREGION.
    int Kind() const;

    /// The smallest rectangle around it, (0, 0, 0, 0) for an empty one.
    RECT Box() const;

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
    Region& Pixels() { return m_region; }

private:
    Region m_region;
};

} // namespace kel::platform
