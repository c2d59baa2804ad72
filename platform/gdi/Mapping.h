#pragma once

/// @file
/// How a context maps logical units to pixels.

#include <kelcore/platform/mappingmodes.h>

namespace kel::platform {

/// device = (logical - window origin) * viewport extent / window extent + viewport origin. No extent is 0.
struct Mapping {
    int mode = MM_TEXT;
    POINT windowOrigin{0, 0};
    SIZE windowExtent{1, 1};
    POINT viewportOrigin{0, 0};
    SIZE viewportExtent{1, 1};

    /// To the nearest whole numbers, halves up; results out of range become the last number in it.
    POINT ToDevice(POINT point) const;
    POINT ToLogical(POINT point) const;

    /// A rectangle between the mapped corners, its edges in order.
    RECT ToDevice(RECT rect) const;

    /// Takes a mode and its extents. @return false if there is no such mode.
    bool SetMode(int wanted);

    /// Whether callers may change the extents.
    bool IsScalable() const { return mode == MM_ISOTROPIC || mode == MM_ANISOTROPIC; }

    /// MM_ISOTROPIC: shortens the viewport's extent on the axis with the longer unit.
    void Even();
};

} // namespace kel::platform
