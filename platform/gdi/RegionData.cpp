#include "platform/gdi/Clip.h"
#include "platform/gdi/ScanConversion.h"
#include "platform/kernel/Faults.h"

#include <kelcore/platform/regions.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <vector>

namespace kel::platform {
namespace {

static_assert(sizeof(RECT) == sizeof(pixman_box32_t) && sizeof(RGNDATAHEADER) == offsetof(RGNDATA, Buffer));

bool IsWhole(const RGNDATA& data, DWORD size) {
    return size >= sizeof data.rdh && data.rdh.dwSize == sizeof data.rdh && data.rdh.iType == RDH_RECTANGLES &&
           (size - sizeof data.rdh) / sizeof(RECT) >= data.rdh.nCount;
}

// Copied, as the caller's bytes need not be aligned.
std::vector<RECT> RectanglesOf(const RGNDATA& data) {
    std::vector<RECT> rectangles(data.rdh.nCount);
    if (!rectangles.empty())
        std::memcpy(rectangles.data(), data.Buffer, rectangles.size() * sizeof(RECT));
    return rectangles;
}

LONG Rounded(double value) {
    using Limits = std::numeric_limits<LONG>;
    const double whole = std::floor(value + 0.5);
    if (!(whole > Limits::min())) // nor a number
        return Limits::min();
    return whole < Limits::max() ? static_cast<LONG>(whole) : Limits::max();
}

POINT Transformed(const XFORM& transform, LONG x, LONG y) {
    return {Rounded(double{transform.eM11} * x + double{transform.eM21} * y + transform.eDx),
            Rounded(double{transform.eM12} * x + double{transform.eM22} * y + transform.eDy)};
}

Region Upright(const std::vector<RECT>& rectangles) {
    std::vector<pixman_box32_t> boxes;
    boxes.reserve(rectangles.size());
    for (const RECT& rect : rectangles)
        boxes.push_back({rect.left, rect.top, rect.right, rect.bottom});
    return Region(boxes.data(), static_cast<int>(boxes.size()));
}

Region Scaled(std::vector<RECT> rectangles, const XFORM& transform) {
    for (RECT& rect : rectangles) {
        const POINT first = Transformed(transform, rect.left, rect.top);
        const POINT last = Transformed(transform, rect.right, rect.bottom);
        rect = {std::min(first.x, last.x), std::min(first.y, last.y), std::max(first.x, last.x),
                std::max(first.y, last.y)};
    }
    return Upright(rectangles);
}

// Sheared or turned, a rectangle is a polygon.
Region Slanted(const std::vector<RECT>& rectangles, const XFORM& transform) {
    Region region;
    for (const RECT& rect : rectangles) {
        const Polygons polygon{
            {Transformed(transform, rect.left, rect.top), Transformed(transform, rect.right, rect.top),
             Transformed(transform, rect.right, rect.bottom), Transformed(transform, rect.left, rect.bottom)},
            {4}};
        region.Unite(PolygonRegion(polygon, WINDING));
    }
    return region;
}

Region Made(const std::vector<RECT>& rectangles, const XFORM* transform) {
    if (!transform)
        return Upright(rectangles);
    const bool isUpright = transform->eM12 == 0 && transform->eM21 == 0;
    return isUpright ? Scaled(rectangles, *transform) : Slanted(rectangles, *transform);
}

void Store(const Region& region, RGNDATA& data) {
    const Region::Boxes boxes = region.Rectangles();
    const auto bytes = static_cast<std::size_t>(boxes.count) * sizeof(RECT);
    data.rdh = {sizeof data.rdh, RDH_RECTANGLES, static_cast<DWORD>(boxes.count), static_cast<DWORD>(bytes),
                region.Box()};
    if (bytes != 0)
        std::memcpy(data.Buffer, boxes.first, bytes);
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

HRGN WINAPI ExtCreateRegion(const XFORM* transform, DWORD size, const RGNDATA* data) {
    if (CallFails("ExtCreateRegion"))
        return nullptr;
    if (!data || !IsWhole(*data, size))
        return Fail(ERROR_INVALID_PARAMETER), nullptr;
    return MakeRegion([&] { return Made(RectanglesOf(*data), transform); });
}

DWORD WINAPI GetRegionData(HRGN handle, DWORD size, LPRGNDATA data) {
    if (CallFails("GetRegionData"))
        return 0;
    const auto region = FindObject<RegionObject>(handle);
    if (!region)
        return 0;
    const auto count = static_cast<DWORD>(region->Pixels().Rectangles().count);
    const auto needed = static_cast<DWORD>(sizeof(RGNDATAHEADER) + count * sizeof(RECT));
    if (!data)
        return needed;
    if (size < needed)
        return static_cast<DWORD>(Fail(ERROR_INSUFFICIENT_BUFFER));
    Store(region->Pixels(), *data);
    return needed;
}
