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

/// The colour that @p use leaves at a visible pixel. @return CLR_INVALID if the call fails or nothing is there
template <class Use>
COLORREF AtPixel(const char* call, HDC dc, POINT logical, Use use) {
    if (CallFails(call))
        return CLR_INVALID;
    const auto context = FindContext(dc);
    if (!context)
        return CLR_INVALID;
    return WithMemory(CLR_INVALID, [&]() -> COLORREF {
        const POINT device = context->ToDevice(logical);
        if (!IsVisible(*context, device))
            return CLR_INVALID;
        const Surface surface = context->Target();
        use(surface, device);
        return ColourOfPixel(surface, ReadPixel(surface, device.x, device.y));
    });
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

COLORREF WINAPI SetPixel(HDC dc, int x, int y, COLORREF colour) {
    return AtPixel("SetPixel", dc, {x, y}, [=](const Surface& surface, POINT device) {
        WritePixel(surface, device.x, device.y, PixelFor(surface, colour));
    });
}

COLORREF WINAPI GetPixel(HDC dc, int x, int y) {
    return AtPixel("GetPixel", dc, {x, y}, [](const Surface&, POINT) {});
}
