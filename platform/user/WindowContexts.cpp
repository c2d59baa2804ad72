#include "platform/user/WindowContexts.h"

#include "platform/gdi/Screen.h"
#include "platform/kernel/Faults.h"

namespace kel::platform {
namespace {

HDC Open(std::shared_ptr<DeviceContext> context) {
    return static_cast<HDC>(AddObject(std::move(context)));
}

HDC OpenScreen() {
    return WithMemory(HDC(), [] {
        Screen(); // here a lack of memory can be told; drawing comes to it later
        return Open(std::make_shared<DeviceContext>(DeviceContext::Kind::Screen));
    });
}

HDC OpenContext(HWND handle, WindowArea::Part part) {
    if (!handle)
        return OpenScreen();
    const auto window = FindWindowOf(handle);
    return window ? WithMemory(HDC(), [&] { return Open(MakeWindowContext(*window, part)); }) : nullptr;
}

} // namespace

Region WindowArea::Reachable() const {
    Region region = m_window->Reachable(IsWhole());
    if (m_narrowed)
        region.Intersect(*m_narrowed);
    return region;
}

std::shared_ptr<DeviceContext> MakeWindowContext(Window& window, WindowArea::Part part) {
    return std::make_shared<DeviceContext>(std::make_shared<WindowArea>(window, part));
}

HDC OpenPaintContext(Window& window, Region region) {
    return WithMemory(HDC(), [&] {
        const auto area = std::make_shared<WindowArea>(window, WindowArea::Part::Client);
        area->Narrow(std::move(region));
        return Open(std::make_shared<DeviceContext>(area));
    });
}

bool CloseContext(HDC dc) {
    const auto context = FindContext(dc);
    return context && !context->IsMemory() && RemoveObject(*context);
}

} // namespace kel::platform

using namespace kel::platform;

HDC WINAPI GetDC(HWND window) {
    return CallFails("GetDC") ? nullptr : OpenContext(window, WindowArea::Part::Client);
}

HDC WINAPI GetWindowDC(HWND window) {
    return CallFails("GetWindowDC") ? nullptr : OpenContext(window, WindowArea::Part::Whole);
}

int WINAPI ReleaseDC(HWND /*window*/, HDC dc) {
    const bool fails = CallFails("ReleaseDC");
    return CloseContext(dc) && !fails;
}
