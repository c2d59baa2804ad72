#include "platform/gdi/Colours.h"
#include "platform/gdi/PixelAccess.h"
#include "platform/gdi/Resolve.h"
#include "platform/kernel/Faults.h"

namespace kel::platform {
namespace {

bool IsVisible(DeviceContext& context, POINT device) {
    return pixman_region32_contains_point(const_cast<pixman_region32_t*>(context.Visible().Get()), device.x, device.y,
                                          nullptr);
}

COLORREF PixelAt(const DeviceContext& context, POINT device) {
    const Surface surface = context.Target();
    return ColourOfPixel(surface, ReadPixel(surface, device.x, device.y));
}

COLORREF Set(DeviceContext& context, POINT device, COLORREF colour) {
    if (!IsVisible(context, device))
        return CLR_INVALID;
    WritePixel(context.Target(), device.x, device.y, PixelFor(context.Target(), colour));
    return PixelAt(context, device);
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

COLORREF WINAPI SetPixel(HDC dc, int x, int y, COLORREF colour) {
    if (CallFails("SetPixel"))
        return CLR_INVALID;
    const auto context = FindContext(dc);
    return context ? WithMemory(CLR_INVALID,
                                [&] {
                                    return Set(*context, context->ToDevice(POINT{x, y}), colour);
                                })
                   : CLR_INVALID;
}

COLORREF WINAPI GetPixel(HDC dc, int x, int y) {
    if (CallFails("GetPixel"))
        return CLR_INVALID;
    const auto context = FindContext(dc);
    if (!context)
        return CLR_INVALID;
    return WithMemory(CLR_INVALID, [&] {
        const POINT device = context->ToDevice(POINT{x, y});
        return IsVisible(*context, device) ? PixelAt(*context, device) : CLR_INVALID;
    });
}
