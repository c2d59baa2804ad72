#include "platform/gdi/Mapping.h"

#include "platform/gdi/Screen.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace kel::platform {
namespace {

// The distances of two coordinates times an extent stay just below 2^63.
std::int64_t Scaled(std::int64_t value, std::int64_t multiplier, std::int64_t divisor) {
    if (divisor < 0) {
        multiplier = -multiplier;
        divisor = -divisor;
    }
    std::int64_t quotient = value * multiplier / divisor;
    std::int64_t rest = value * multiplier % divisor;
    if (rest < 0) {
        --quotient;
        rest += divisor;
    }
    return quotient + (2 * rest >= divisor);
}

/// One coordinate: @p from and @p to are the origins, @p multiplier / @p divisor the scale.
LONG Mapped(LONG value, LONG from, LONG multiplier, LONG divisor, LONG to) {
    const std::int64_t distance = std::int64_t{value} - from;
    const std::int64_t mapped = (multiplier == divisor ? distance : Scaled(distance, multiplier, divisor)) + to;
    using Limits = std::numeric_limits<LONG>;
    return static_cast<LONG>(std::clamp<std::int64_t>(mapped, Limits::min(), Limits::max()));
}

/// The screen in units of which @p parts make an inch by GetDeviceCaps's whole millimetres.
SIZE ScreenIn(int parts) {
    const SIZE size = ScreenMillimetres();
    return {MulDiv(size.cx, parts, 254), MulDiv(size.cy, parts, 254)};
}

SIZE FixedExtent(int mode) {
    switch (mode) {
    case MM_HIMETRIC:
        return ScreenIn(25400);
    case MM_LOENGLISH:
        return ScreenIn(1000);
    case MM_HIENGLISH:
        return ScreenIn(10000);
    case MM_TWIPS:
        return ScreenIn(14400);
    default: // MM_LOMETRIC, and MM_ISOTROPIC at first
        return ScreenIn(2540);
    }
}

/// How long a logical unit is on the screen, up to a factor.
double UnitLength(LONG viewport, LONG window, LONG millimetres, LONG pixels) {
    return std::abs(static_cast<double>(viewport) / window * millimetres / pixels);
}

LONG Shortened(LONG extent, double ratio) {
    const auto length = static_cast<LONG>(std::floor(extent * ratio + 0.5));
    return length != 0 ? length : extent < 0 ? -1 : 1;
}

} // namespace

POINT Mapping::ToDevice(POINT point) const {
    return {Mapped(point.x, windowOrigin.x, viewportExtent.cx, windowExtent.cx, viewportOrigin.x),
            Mapped(point.y, windowOrigin.y, viewportExtent.cy, windowExtent.cy, viewportOrigin.y)};
}

POINT Mapping::ToLogical(POINT point) const {
    return {Mapped(point.x, viewportOrigin.x, windowExtent.cx, viewportExtent.cx, windowOrigin.x),
            Mapped(point.y, viewportOrigin.y, windowExtent.cy, viewportExtent.cy, windowOrigin.y)};
}

RECT Mapping::ToDevice(RECT rect) const {
    const POINT first = ToDevice(POINT{rect.left, rect.top});
    const POINT last = ToDevice(POINT{rect.right, rect.bottom});
    return {std::min(first.x, last.x), std::min(first.y, last.y), std::max(first.x, last.x), std::max(first.y, last.y)};
}

bool Mapping::SetMode(int wanted) {
    if (wanted < MM_MIN || wanted > MM_MAX)
        return false;
    const bool again = wanted == mode;
    mode = wanted;
    if (wanted == MM_TEXT) {
        windowExtent = viewportExtent = {1, 1};
    } else if (wanted != MM_ANISOTROPIC && !again) {
        windowExtent = FixedExtent(wanted);
        viewportExtent = {Screen().width, -Screen().height};
    }
    return true;
}

void Mapping::Even() {
    if (mode != MM_ISOTROPIC)
        return;
    const SIZE size = ScreenMillimetres();
    const double x = UnitLength(viewportExtent.cx, windowExtent.cx, size.cx, Screen().width);
    const double y = UnitLength(viewportExtent.cy, windowExtent.cy, size.cy, Screen().height);
    if (x > y)
        viewportExtent.cx = Shortened(viewportExtent.cx, y / x);
    else
        viewportExtent.cy = Shortened(viewportExtent.cy, x / y);
}

} // namespace kel::platform
