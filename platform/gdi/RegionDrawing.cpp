#include "platform/gdi/Resolve.h"
#include "platform/kernel/Faults.h"

#include <kelcore/platform/regions.h>

#include <cstdlib>
#include <vector>

namespace kel::platform {
namespace {

// The four results for pen and target, with and without the source alike.
constexpr std::uint8_t TernaryOf(int rasterMode) {
    const int results = rasterMode - 1;
    return static_cast<std::uint8_t>((results & 3) * 5 | (results >> 2) * 0x50);
}
static_assert(TernaryOf(R2_COPYPEN) == PATCOPY >> 16 && TernaryOf(R2_XORPEN) == PATINVERT >> 16);

/// The pixels of a region in logical units.
Region ToDevice(const Mapping& mapping, const Region& logical) {
    std::vector<pixman_box32_t> boxes;
    for (const pixman_box32_t& box : logical.Rectangles()) {
        const RECT device = mapping.ToDevice(RECT{box.x1, box.y1, box.x2, box.y2});
        boxes.push_back({device.left, device.top, device.right, device.bottom});
    }
    return Region(boxes.data(), static_cast<int>(boxes.size()));
}

void Fill(DeviceContext& context, const Region& logical, std::uint8_t rop, Pattern pattern) {
    Region region = ToDevice(context.State().mapping, logical);
    region.Intersect(context.Visible());
    const RECT box = region.Box();
    RasterJob job;
    job.target = context.Target();
    job.clip = region.Get();
    job.x = MakeAxis(box.left, box.right - box.left, 0, 0);
    job.y = MakeAxis(box.top, box.bottom - box.top, 0, 0);
    job.rop = rop;
    job.pattern = std::move(pattern);
    Run(job);
}

bool FillWith(DeviceContext& context, const Region& logical, const BrushObject& brush) {
    if (brush.Style() != BS_NULL)
        Fill(context, logical, TernaryOf(context.State().rasterMode), PatternOf(context, brush, context.Target()));
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
    Region inside = Inside(region, width, 0);
    inside.Intersect(Inside(region, 0, height));
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
        Fill(context, pixels, DSTINVERT >> 16, {});
        return true;
    });
}

BOOL WINAPI FrameRgn(HDC dc, HRGN region, HBRUSH brush, int width, int height) {
    return !CallFails("FrameRgn") &&
           WithBrush(dc, region, brush, [&](DeviceContext& context, const Region& pixels, const BrushObject& with) {
               return Frame(context, pixels, with, width, height);
           });
}
