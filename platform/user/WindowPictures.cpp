#include "platform/kernel/Faults.h"
#include "platform/user/Window.h"

#include <kelcore/platform/windowpictures.h>

#include <algorithm>
#include <cstring>

namespace kel::platform {
namespace {

RECT Common(RECT a, RECT b) {
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right), std::min(a.bottom, b.bottom)};
}

/// The part of the window within the client areas of its parents, on the surface.
RECT ShownPart(const Window& window, const AreaView& view) {
    const POINT corner = view.origin;
    RECT part = Common({0, 0, view.whole.width, view.whole.height},
                       {corner.x, corner.y, corner.x + view.size.cx, corner.y + view.size.cy});
    for (const Window* parent = window.Parent(); parent; parent = parent->Parent()) {
        const POINT at = parent->OnSurface();
        const RECT client = parent->Client();
        part = Common(part, {at.x + client.left, at.y + client.top, at.x + client.right, at.y + client.bottom});
    }
    return part;
}

void Copy(const Window& window, const AreaView& view, const Surface& target) {
    const RECT part = ShownPart(window, view);
    if (part.left >= part.right)
        return;
    for (int y = part.top; y < part.bottom; ++y)
        std::memcpy(target.Row(y - view.origin.y) + (part.left - view.origin.x) * 4, view.whole.Row(y) + part.left * 4,
                    static_cast<std::size_t>(part.right - part.left) * 4);
}

HBITMAP Picture(const Window& window) {
    const AreaView view = window.View(/*whole*/ true);
    if (view.size.cx == 0 || view.size.cy == 0)
        return Fail(ERROR_INVALID_PARAMETER), nullptr;
    BitmapLayout layout;
    layout.width = view.size.cx;
    layout.height = view.size.cy;
    layout.format = PixelFormat::Bgrx32;
    layout.section = true;
    layout.topDown = false;
    auto bitmap = std::make_shared<BitmapObject>(std::move(layout));
    Copy(window, view, bitmap->Pixels());
    return static_cast<HBITMAP>(AddObject(std::move(bitmap)));
}

} // namespace

HBITMAP WindowPicture(HWND handle) {
    if (CallFails("WindowPicture"))
        return nullptr;
    const auto window = FindWindowOf(handle);
    return window ? WithMemory(HBITMAP(), [&] { return Picture(*window); }) : nullptr;
}

} // namespace kel::platform
