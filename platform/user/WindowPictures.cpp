#include "platform/kernel/Faults.h"
#include "platform/user/Window.h"

#include <kelcore/platform/windowpictures.h>

#include <algorithm>
#include <cstring>

namespace kel::platform {
namespace {

// Rows of the view as far as it lies on the surface.
void Copy(const AreaView& view, const Surface& target) {
    const int left = std::max<int>(0, -view.origin.x);
    const int right = std::min<int>(view.size.cx, view.whole.width - view.origin.x);
    const int top = std::max<int>(0, -view.origin.y);
    const int bottom = std::min<int>(view.size.cy, view.whole.height - view.origin.y);
    if (left >= right)
        return;
    for (int y = top; y < bottom; ++y)
        std::memcpy(target.Row(y) + left * 4, view.whole.Row(y + view.origin.y) + (view.origin.x + left) * 4,
                    static_cast<std::size_t>(right - left) * 4);
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
    Copy(view, bitmap->Pixels());
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
