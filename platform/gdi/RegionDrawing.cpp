#include "platform/gdi/Painting.h"
#include "platform/kernel/Faults.h"

#include <kelcore/platform/regions.h>

#include <algorithm>
#include <limits>
#include <vector>

namespace kel::platform {
namespace {

/// The pixels of a region in logical units.
Region ToDevice(const Mapping& mapping, const Region& logical) {
    std::vector<pixman_box32_t> boxes;
    boxes.reserve(static_cast<std::size_t>(logical.Rectangles().count));
    for (const pixman_box32_t& box : logical.Rectangles()) {
        const RECT device = mapping.ToDevice(RECT{box.x1, box.y1, box.x2, box.y2});
        boxes.push_back({device.left, device.top, device.right, device.bottom});
    }
    return Region(boxes.data(), static_cast<int>(boxes.size()));
}

bool FillWith(DeviceContext& context, const Region& logical, const BrushObject& brush) {
    PaintArea(context, ToDevice(context.State().mapping, logical), brush);
    return true;
}

/// What stays inside when the region moves by so much in both directions.
Region Inside(const Region& region, int dx, int dy) {
    Region forth(region);
    forth.Offset(dx, dy);
    Region back(region);
    back.Offset(-dx, -dy);
    forth.Intersect(back);
    return forth;
}

bool Frame(DeviceContext& context, const Region& region, const BrushObject& brush, int width, int height) {
    if (region.Kind() == NULLREGION)
        return Fail(ERROR_INVALID_PARAMETER);
    constexpr int kLeast = -std::numeric_limits<int>::max(); // that can be turned round
    Region inside = Inside(region, std::max(width, kLeast), 0);
    inside.Intersect(Inside(region, 0, std::max(height, kLeast)));
    Region frame(region);
    frame.Subtract(inside);
    return FillWith(context, frame, brush);
}

/// Looks context, region and brush up for @p draw.
template <class Draw>
BOOL WithBrush(HDC dc, HRGN handle, HBRUSH brushHandle, Draw draw) {
    const auto context = FindContext(dc);
    const auto region = context ? FindObject<RegionObject>(handle) : nullptr;
    const auto brush = region ? FindObject<BrushObject>(brushHandle) : nullptr;
    return brush && WithMemory(false, [&] { return draw(*context, region->Pixels(), *brush); });
}

template <class Draw>
BOOL WithoutBrush(HDC dc, HRGN handle, Draw draw) {
    const auto context = FindContext(dc);
    const auto region = context ? FindObject<RegionObject>(handle) : nullptr;
    return region && WithMemory(false, [&] { return draw(*context, region->Pixels()); });
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

BOOL WINAPI FillRgn(HDC dc, HRGN region, HBRUSH brush) {
    return !CallFails("FillRgn") && WithBrush(dc, region, brush, FillWith);
}

BOOL WINAPI PaintRgn(HDC dc, HRGN region) {
    return !CallFails("PaintRgn") && WithoutBrush(dc, region, [](DeviceContext& context, const Region& pixels) {
        return FillWith(context, pixels, *context.State().brush);
    });
}

BOOL WINAPI InvertRgn(HDC dc, HRGN region) {
    return !CallFails("InvertRgn") && WithoutBrush(dc, region, [](DeviceContext& context, const Region& pixels) {
        InvertArea(context, ToDevice(context.State().mapping, pixels));
        return true;
    });
}

BOOL WINAPI FrameRgn(HDC dc, HRGN region, HBRUSH brush, int width, int height) {
    return !CallFails("FrameRgn") &&
           WithBrush(dc, region, brush, [&](DeviceContext& context, const Region& pixels, const BrushObject& with) {
               return Frame(context, pixels, with, width, height);
           });
}
