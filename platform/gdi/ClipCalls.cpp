#include "platform/gdi/DeviceContext.h"
#include "platform/kernel/Faults.h"

#include <kelcore/platform/regions.h>

namespace kel::platform {
namespace {

int ClipBox(DeviceContext& context, RECT& box) {
    const Region& visible = context.Visible();
    const RECT device = visible.Box();
    box = {};
    if (visible.Kind() != NULLREGION) {
        const POINT first = context.ToLogical({device.left, device.top});
        const POINT last = context.ToLogical({device.right, device.bottom});
        box = {first.x, first.y, last.x, last.y};
    }
    return visible.Kind();
}

int SetClipTo(DeviceContext& context, HRGN handle) {
    if (!handle)
        return context.SetClip(std::nullopt);
    const auto region = FindObject<RegionObject>(handle);
    return region ? context.SetClip(region->Pixels()) : ERROR;
}

/// What a combination with the clip region begins with.
Region ClipOrBounds(const DeviceContext& context) {
    if (context.State().clip)
        return *context.State().clip;
    const Surface target = context.Target();
    return Region(RECT{0, 0, target.width, target.height});
}

int CombineClip(DeviceContext& context, const Region& region, int mode) {
    if (mode == RGN_DIFF)
        return context.ExcludeClip(region);
    if (mode == RGN_COPY)
        return context.SetClip(region);
    Region clip = ClipOrBounds(context);
    if (mode == RGN_AND)
        clip.Intersect(region);
    else if (mode == RGN_OR)
        clip.Unite(region);
    else
        clip.SetEither(clip, region);
    return context.SetClip(std::move(clip));
}

// Half a pixel rounds away from zero, so that moves there and back cancel out.
int OffsetClip(DeviceContext& context, int dx, int dy) {
    const ContextState& state = context.State();
    if (!state.clip)
        return SIMPLEREGION;
    Region clip = *state.clip;
    clip.Offset(MulDiv(dx, state.mapping.viewportExtent.cx, state.mapping.windowExtent.cx),
                MulDiv(dy, state.mapping.viewportExtent.cy, state.mapping.windowExtent.cy));
    return context.SetClip(std::move(clip));
}

int CopyClip(const DeviceContext& context, Region& region) {
    if (!context.State().clip)
        return 0;
    region = *context.State().clip;
    return 1;
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

int WINAPI IntersectClipRect(HDC dc, int left, int top, int right, int bottom) {
    if (CallFails("IntersectClipRect"))
        return ERROR;
    const auto context = FindContext(dc);
    if (!context)
        return ERROR;
    const Region rectangle(context->ToDevice(RECT{left, top, right, bottom}));
    return WithMemory(ERROR, [&] { return context->IntersectClip(rectangle); });
}

int WINAPI ExcludeClipRect(HDC dc, int left, int top, int right, int bottom) {
    if (CallFails("ExcludeClipRect"))
        return ERROR;
    const auto context = FindContext(dc);
    if (!context)
        return ERROR;
    const Region rectangle(context->ToDevice(RECT{left, top, right, bottom}));
    return WithMemory(ERROR, [&] { return context->ExcludeClip(rectangle); });
}

int WINAPI GetClipBox(HDC dc, LPRECT box) {
    if (CallFails("GetClipBox"))
        return ERROR;
    const auto context = FindContext(dc);
    return context && box ? WithMemory(ERROR, [&] { return ClipBox(*context, *box); }) : ERROR;
}

int WINAPI SelectClipRgn(HDC dc, HRGN region) {
    if (CallFails("SelectClipRgn"))
        return ERROR;
    const auto context = FindContext(dc);
    return context ? WithMemory(ERROR, [&] { return SetClipTo(*context, region); }) : ERROR;
}

int WINAPI ExtSelectClipRgn(HDC dc, HRGN handle, int mode) {
    if (CallFails("ExtSelectClipRgn"))
        return ERROR;
    const auto context = FindContext(dc);
    if (!context)
        return ERROR;
    if (mode < RGN_MIN || mode > RGN_MAX)
        return Fail(ERROR_INVALID_PARAMETER);
    if (!handle && mode == RGN_COPY)
        return context->SetClip(std::nullopt);
    const auto region = FindObject<RegionObject>(handle);
    return region ? WithMemory(ERROR, [&] { return CombineClip(*context, region->Pixels(), mode); }) : ERROR;
}

int WINAPI GetClipRgn(HDC dc, HRGN handle) {
    if (CallFails("GetClipRgn"))
        return -1;
    const auto context = FindContext(dc);
    const auto region = context ? FindObject<RegionObject>(handle) : nullptr;
    return region ? WithMemory(-1, [&] { return CopyClip(*context, region->Pixels()); }) : -1;
}

int WINAPI OffsetClipRgn(HDC dc, int dx, int dy) {
    if (CallFails("OffsetClipRgn"))
        return ERROR;
    const auto context = FindContext(dc);
    return context ? WithMemory(ERROR, [&] { return OffsetClip(*context, dx, dy); }) : ERROR;
}

BOOL WINAPI PtVisible(HDC dc, int x, int y) {
    if (CallFails("PtVisible"))
        return FALSE;
    const auto context = FindContext(dc);
    return context && WithMemory(false, [&] { return context->Visible().Holds(context->ToDevice(POINT{x, y})); });
}

BOOL WINAPI RectVisible(HDC dc, const RECT* rect) {
    if (CallFails("RectVisible"))
        return FALSE;
    const auto context = FindContext(dc);
    if (!context)
        return FALSE;
    if (!rect)
        return Fail(ERROR_INVALID_PARAMETER);
    return WithMemory(false, [&] { return context->Visible().Meets(context->ToDevice(*rect)); });
}
