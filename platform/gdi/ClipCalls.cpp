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

HRGN WINAPI CreateRectRgn(int left, int top, int right, int bottom) {
    if (CallFails("CreateRectRgn"))
        return nullptr;
    return static_cast<HRGN>(WithMemory(HGDIOBJ(), [&] {
        return AddObject(std::make_shared<RegionObject>(Region(RECT{left, top, right, bottom})));
    }));
}

int WINAPI SelectClipRgn(HDC dc, HRGN region) {
    if (CallFails("SelectClipRgn"))
        return ERROR;
    const auto context = FindContext(dc);
    return context ? WithMemory(ERROR, [&] { return SetClipTo(*context, region); }) : ERROR;
}
