#include "platform/kernel/Faults.h"
#include "platform/user/Updates.h"
#include "platform/user/WindowContexts.h"

#include <utility>

using namespace kel::platform;

namespace {

// What of the update region can be seen.
Region Paintable(const Window& window) {
    Region region = window.Reachable(/*whole*/ false);
    region.Intersect(window.update);
    return region;
}

// @return whether the background is as it should be.
bool Erase(Window& window, HDC dc) {
    window.erase = false;
    return Send(window, WM_ERASEBKGND, reinterpret_cast<WPARAM>(dc)) != 0;
}

HDC Begin(Window& window, PAINTSTRUCT& paint) {
    FlushFrame(window);
    const Region region = Paintable(window);
    const HDC dc = OpenPaintContext(window, region);
    if (!dc)
        return nullptr;
    const bool erase = window.erase;
    window.update = Region();
    InvalidateCovered(window, region);
    paint = {};
    paint.hdc = dc;
    paint.rcPaint = region.Box();
    paint.fErase = erase && !Erase(window, dc);
    return dc;
}

void EraseUpdate(Window& window) {
    if (!window.erase)
        return;
    FlushFrame(window);
    const HDC dc = OpenPaintContext(window, Paintable(window));
    if (!dc)
        return;
    Erase(window, dc);
    CloseContext(dc);
}

} // namespace

HDC WINAPI BeginPaint(HWND handle, LPPAINTSTRUCT paint) {
    if (CallFails("BeginPaint"))
        return nullptr;
    const auto window = FindWindowOf(handle, paint);
    return window ? WithMemory(HDC(), [&] { return Begin(*window, *paint); }) : nullptr;
}

// The window may have gone while it was painted.
BOOL WINAPI EndPaint(HWND /*window*/, const PAINTSTRUCT* paint) {
    const bool fails = CallFails("EndPaint");
    if (!paint)
        return Fail(ERROR_INVALID_PARAMETER);
    CloseContext(paint->hdc);
    return !fails;
}

BOOL WINAPI UpdateWindow(HWND handle) {
    if (CallFails("UpdateWindow"))
        return FALSE;
    const auto window = FindWindowOf(handle);
    return window && WithMemory(false, [&] {
               PaintNow(*window);
               return true;
           });
}

BOOL WINAPI GetUpdateRect(HWND handle, LPRECT rect, BOOL erase) {
    if (CallFails("GetUpdateRect"))
        return FALSE;
    const auto window = FindWindowOf(handle);
    if (!window)
        return FALSE;
    if (rect)
        *rect = window->update.Box();
    const bool any = window->update.Kind() != NULLREGION;
    return any && WithMemory(false, [&] {
               if (erase)
                   EraseUpdate(*window);
               return true;
           });
}

int WINAPI GetUpdateRgn(HWND handle, HRGN region, BOOL erase) {
    if (CallFails("GetUpdateRgn"))
        return ERROR;
    const auto window = FindWindowOf(handle);
    const auto object = FindObject<RegionObject>(region);
    if (!window || !object)
        return ERROR;
    return WithMemory(ERROR, [&] {
        object->Pixels() = window->update;
        if (erase)
            EraseUpdate(*window);
        return object->Pixels().Kind();
    });
}
