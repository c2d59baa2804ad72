#include "platform/kernel/Faults.h"
#include "platform/user/Frames.h"
#include "platform/user/WindowContexts.h"

#include <kelcore/platform/shapes.h>

#include <utility>

using namespace kel::platform;

namespace {

// With what is drawn with a context: the background of what it reaches.
LRESULT EraseBackground(const Window& window, HDC dc) {
    const HBRUSH brush = window.Class().Background();
    RECT box;
    if (!brush || GetClipBox(dc, &box) == ERROR)
        return 0;
    return FillRect(dc, &box, brush) != 0;
}

LRESULT PaintNothing(HWND window) {
    PAINTSTRUCT paint;
    if (BeginPaint(window, &paint))
        EndPaint(window, &paint);
    return 0;
}

LRESULT PaintFrame(Window& window) {
    return WithMemory(LRESULT(), [&] {
        DrawFrame(window);
        return LRESULT();
    });
}

/// The client area's corner on the screen.
POINT ClientOnScreen(const Window& window) {
    const POINT corner = window.OnScreen();
    const RECT client = window.Client();
    return {corner.x + client.left, corner.y + client.top};
}

BOOL MovePoint(const char* name, HWND handle, LPPOINT point, int sign) {
    if (CallFails(name))
        return FALSE;
    const auto window = FindWindowOf(handle, point);
    if (!window)
        return FALSE;
    const POINT corner = ClientOnScreen(*window);
    *point = {point->x + sign * corner.x, point->y + sign * corner.y};
    return TRUE;
}

} // namespace

LRESULT WINAPI SendMessageA(HWND handle, UINT message, WPARAM wide, LPARAM data) {
    if (CallFails("SendMessageA"))
        return 0;
    const auto window = FindWindowOf(handle);
    return window ? Send(*window, message, wide, data) : 0;
}

LRESULT WINAPI DefWindowProcA(HWND handle, UINT message, WPARAM wide, LPARAM /*data*/) {
    const auto window = FindWindowOf(handle);
    if (!window)
        return 0;
    switch (message) {
    case WM_NCCREATE:
        return TRUE;
    case WM_ERASEBKGND:
        return EraseBackground(*window, reinterpret_cast<HDC>(wide));
    case WM_PAINT:
        return PaintNothing(handle);
    case WM_NCPAINT:
        return PaintFrame(*window);
    default:
        return 0;
    }
}

LONG_PTR WINAPI GetWindowLongPtrA(HWND handle, int index) {
    if (CallFails("GetWindowLongPtrA"))
        return 0;
    const auto window = FindWindowOf(handle);
    if (!window)
        return 0;
    switch (index) {
    case GWLP_WNDPROC:
        return reinterpret_cast<LONG_PTR>(window->procedure);
    case GWL_STYLE:
        return static_cast<LONG>(window->Style());
    case GWL_EXSTYLE:
        return static_cast<LONG>(window->ExStyle());
    case GWLP_USERDATA:
        return window->userData;
    default:
        return Fail(ERROR_INVALID_INDEX);
    }
}

LONG_PTR WINAPI SetWindowLongPtrA(HWND handle, int index, LONG_PTR value) {
    if (CallFails("SetWindowLongPtrA"))
        return 0;
    const auto window = FindWindowOf(handle);
    if (!window)
        return 0;
    if (index == GWLP_USERDATA)
        return std::exchange(window->userData, value);
    if (index == GWLP_WNDPROC && value)
        return reinterpret_cast<LONG_PTR>(std::exchange(window->procedure, reinterpret_cast<WNDPROC>(value)));
    return Fail(ERROR_INVALID_INDEX);
}

HWND WINAPI GetParent(HWND handle) {
    if (CallFails("GetParent"))
        return nullptr;
    const auto window = FindWindowOf(handle);
    if (!window)
        return nullptr;
    if (window->Parent())
        return window->Parent()->handle;
    return window->Style() & WS_POPUP ? window->Owner() : nullptr;
}

BOOL WINAPI GetWindowRect(HWND handle, LPRECT rect) {
    if (CallFails("GetWindowRect"))
        return FALSE;
    const auto window = FindWindowOf(handle, rect);
    if (!window)
        return FALSE;
    const POINT corner = window->OnScreen();
    const SIZE size = window->Size();
    *rect = {corner.x, corner.y, corner.x + size.cx, corner.y + size.cy};
    return TRUE;
}

BOOL WINAPI GetClientRect(HWND handle, LPRECT rect) {
    if (CallFails("GetClientRect"))
        return FALSE;
    const auto window = FindWindowOf(handle, rect);
    if (!window)
        return FALSE;
    const SIZE size = window->ClientSize();
    *rect = {0, 0, size.cx, size.cy};
    return TRUE;
}

BOOL WINAPI ClientToScreen(HWND window, LPPOINT point) {
    return MovePoint("ClientToScreen", window, point, /*sign*/ 1);
}

BOOL WINAPI ScreenToClient(HWND window, LPPOINT point) {
    return MovePoint("ScreenToClient", window, point, /*sign*/ -1);
}
