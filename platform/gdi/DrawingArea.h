#pragma once

/// @file
/// Where a context draws that has a part of somebody else's pixels, as contexts of windows do.

#include "platform/gdi/Clip.h"
#include "platform/gdi/Surface.h"

namespace kel::platform {

/// A rectangle of a surface. It may stand out over the surface's edges; what it shows does not.
struct AreaView {
    Surface whole;
    POINT origin{0, 0}; ///< of the area in it
    SIZE size{0, 0};

    /// The area as a surface of its own, of which nothing outside DrawingArea::Reachable is to be touched.
    Surface Part() const {
        Surface part = whole;
        part.top += origin.y * whole.stride + std::ptrdiff_t{origin.x} * (BitsPerPixel(whole.format) / 8);
        part.width = size.cx;
        part.height = size.cy;
        return part;
    }
};

class DrawingArea {
public:
    virtual ~DrawingArea() = default;

    /// Pixels of whole bytes.
    virtual AreaView View() const = 0;

    /// What drawing can reach, in the area's pixels, within the surface. @throws std::bad_alloc
    virtual Region Reachable() const = 0;

    /// Another number whenever View or Reachable may have changed.
    virtual unsigned Version() const = 0;
};

} // namespace kel::platform
