#include "platform/user/Updates.h"

#include "platform/kernel/Faults.h"

namespace kel::platform {
namespace {

Region ClientRegion(const Window& window) {
    const SIZE size = window.ClientSize();
    return Region(RECT{0, 0, size.cx, size.cy});
}

/// A region of the parent's client area as seen from the child's corner.
Region FromParent(const Window& child, Region region) {
    region.Offset(-child.Place().left, -child.Place().top);
    return region;
}

bool SpreadsTo(const Window& window, Spread spread) {
    return spread == Spread::Always || !(window.Style() & WS_CLIPCHILDREN);
}

// @p region counts from the corner of the window.
void InvalidateOwn(Window& window, Region region, bool erase, Spread spread) {
    if (!window.IsShown())
        return;
    const SIZE size = window.Size();
    const RECT client = window.Client();
    region.Intersect(Region(RECT{0, 0, size.cx, size.cy}));
    Region frame(region);
    frame.Subtract(Region(client));
    window.frameInvalid |= frame.Kind() != NULLREGION;
    region.Intersect(Region(client));
    region.Offset(-client.left, -client.top);
    Invalidate(window, region, erase, spread);
}

} // namespace

void Invalidate(Window& window, const Region& region, bool erase, Spread spread) {
    if (!window.IsVisible())
        return;
    Region part = ClientRegion(window);
    part.Intersect(region);
    if (part.Kind() == NULLREGION)
        return;
    window.update.Unite(part);
    window.erase |= erase;
    if (SpreadsTo(window, spread))
        for (const auto& child : window.Children())
            InvalidateOwn(*child, FromParent(*child, part), erase, spread);
}

void InvalidateCovered(Window& window, const Region& region) {
    if (SpreadsTo(window, Spread::Unclipped) && region.Kind() != NULLREGION)
        for (const auto& child : window.Children())
            InvalidateOwn(*child, FromParent(*child, region), /*erase*/ true, Spread::Unclipped);
}

void InvalidateAll(Window& window) {
    if (!window.IsVisible())
        return;
    const SIZE size = window.Size();
    InvalidateOwn(window, Region(RECT{0, 0, size.cx, size.cy}), /*erase*/ true, Spread::Always);
}

void Validate(Window& window, const Region& whole) {
    Region region = ClientRegion(window);
    region.Intersect(whole);
    window.update.Subtract(region);
    if (window.update.Kind() == NULLREGION)
        window.erase = false;
    if (!SpreadsTo(window, Spread::Unclipped))
        return;
    for (const auto& child : window.Children()) {
        const RECT client = child->Client();
        Region part = FromParent(*child, region);
        part.Offset(-client.left, -client.top);
        Validate(*child, part);
    }
}

void Expose(Window& parent, const Region& place) {
    Invalidate(parent, place, /*erase*/ true, Spread::Always);
}

void FlushFrame(Window& window) {
    if (!window.frameInvalid || !window.IsVisible())
        return;
    window.frameInvalid = false;
    Send(window, WM_NCPAINT, /*all of it*/ 1);
}

void PaintNow(Window& window) {
    if (window.IsVisible() && window.update.Kind() != NULLREGION)
        Send(window, WM_PAINT);
    FlushFrame(window);
    // Procedures may destroy windows: the children are held, and one without a parent has gone.
    const std::vector<std::shared_ptr<Window>> children = window.Children();
    for (const auto& child : children)
        if (child->Parent())
            PaintNow(*child);
}

void ShowNewColours() {
    for (const auto& window : MyWindows())
        if (!window->Parent())
            Send(*window, WM_SYSCOLORCHANGE);
    for (const auto& window : MyWindows())
        if (!window->Parent()) {
            InvalidateAll(*window);
            PaintNow(*window);
        }
}

} // namespace kel::platform

using namespace kel::platform;

namespace {

using Change = void (*)(Window& window, const Region& region, BOOL erase);

void AddTo(Window& window, const Region& region, BOOL erase) {
    Invalidate(window, region, erase != FALSE, Spread::Unclipped);
}

void TakeFrom(Window& window, const Region& region, BOOL /*erase*/) {
    Validate(window, region);
}

// A null region stands for all of the client area.
bool ChangeUpdate(HWND handle, const Region* region, BOOL erase, Change change) {
    const auto window = FindWindowOf(handle);
    return window && WithMemory(false, [&] {
               change(*window, region ? *region : ClientRegion(*window), erase);
               return true;
           });
}

bool ChangeByRect(HWND handle, const RECT* rect, BOOL erase, Change change) {
    const Region region(rect ? *rect : RECT{0, 0, 0, 0});
    return ChangeUpdate(handle, rect ? &region : nullptr, erase, change);
}

bool ChangeByRegion(HWND handle, HRGN region, BOOL erase, Change change) {
    if (!region)
        return ChangeUpdate(handle, nullptr, erase, change);
    const auto object = FindObject<RegionObject>(region);
    return object && ChangeUpdate(handle, &object->Pixels(), erase, change);
}

} // namespace

BOOL WINAPI InvalidateRect(HWND window, const RECT* rect, BOOL erase) {
    return !CallFails("InvalidateRect") && ChangeByRect(window, rect, erase, AddTo);
}

BOOL WINAPI InvalidateRgn(HWND window, HRGN region, BOOL erase) {
    return !CallFails("InvalidateRgn") && ChangeByRegion(window, region, erase, AddTo);
}

BOOL WINAPI ValidateRect(HWND window, const RECT* rect) {
    return !CallFails("ValidateRect") && ChangeByRect(window, rect, FALSE, TakeFrom);
}

BOOL WINAPI ValidateRgn(HWND window, HRGN region) {
    return !CallFails("ValidateRgn") && ChangeByRegion(window, region, FALSE, TakeFrom);
}
