#include "platform/gdi/Screen.h"
#include "platform/kernel/Faults.h"
#include "platform/user/Placing.h"
#include "platform/user/Updates.h"

using namespace kel::platform;

namespace {

// What a window with such styles always has.
DWORD CompletedStyle(DWORD style) {
    if (style & WS_CHILD)
        return style;
    const bool overlapped = !(style & WS_POPUP);
    return style | WS_CLIPSIBLINGS | (overlapped ? WS_CAPTION : 0);
}

DWORD CompletedExStyle(DWORD style, DWORD exStyle) {
    const bool raised = exStyle & WS_EX_DLGMODALFRAME || style & (WS_DLGFRAME | WS_THICKFRAME);
    return raised ? exStyle | WS_EX_WINDOWEDGE : exStyle & ~WS_EX_WINDOWEDGE;
}

RECT WantedPlace(const CREATESTRUCTA& wanted) {
    const Surface& screen = Screen();
    const POINT corner = wanted.x == CW_USEDEFAULT ? POINT{0, 0} : POINT{wanted.x, wanted.y};
    if (wanted.cx == CW_USEDEFAULT)
        return PlaceFor(corner, {screen.width * 3 / 4, screen.height * 3 / 4});
    return PlaceFor(corner, {wanted.cx, wanted.cy});
}

/// The parent of a child, the owner of another window.
bool FindRelative(const CREATESTRUCTA& wanted, std::shared_ptr<Window>& relative) {
    if (!wanted.hwndParent)
        return !(wanted.style & WS_CHILD) || Fail(ERROR_TLW_WITH_WSCHILD);
    relative = FindWindowOf(wanted.hwndParent);
    return relative != nullptr;
}

void Forget(Window& window) {
    const std::vector<std::shared_ptr<Window>> children = window.Children();
    for (const auto& child : children)
        Forget(*child);
    Send(window, WM_NCDESTROY);
    if (IsWindowHandle(window.handle)) {
        RemoveWindow(window);
        window.Leave();
    }
}

// The procedure agrees, and lets the window live until it has.
bool Agrees(Window& window, CREATESTRUCTA& wanted) {
    const LPARAM data = reinterpret_cast<LPARAM>(&wanted);
    const bool agrees = Send(window, WM_NCCREATE, 0, data) != 0 && Send(window, WM_CREATE, 0, data) != -1;
    return agrees && IsWindowHandle(window.handle);
}

HWND Create(CREATESTRUCTA& wanted) {
    std::shared_ptr<Window> relative;
    WindowPlan plan;
    plan.windowClass = FindClass(wanted.lpszClass, wanted.hInstance);
    if (!plan.windowClass || !FindRelative(wanted, relative))
        return nullptr;
    const bool shown = wanted.style & WS_VISIBLE;
    const bool child = wanted.style & WS_CHILD;
    plan.style = CompletedStyle(static_cast<DWORD>(wanted.style));
    plan.exStyle = CompletedExStyle(plan.style, wanted.dwExStyle);
    plan.name = wanted.lpszName ? wanted.lpszName : "";
    plan.place = WantedPlace(wanted);
    plan.owner = child ? nullptr : wanted.hwndParent;
    const auto window = std::make_shared<Window>(std::move(plan));
    if (child)
        window->Join(*relative);
    AddWindow(window);
    if (!Agrees(*window, wanted))
        return Forget(*window), nullptr;
    TellSize(*window);
    TellPlace(*window);
    if (shown)
        Show(*window, true);
    return IsWindowHandle(window->handle) ? window->handle : nullptr;
}

void SendDestroy(Window& window) {
    Send(window, WM_DESTROY);
    const std::vector<std::shared_ptr<Window>> children = window.Children();
    for (const auto& child : children)
        if (child->Parent())
            SendDestroy(*child);
}

void Destroy(Window& window) {
    window.destroying = true;
    for (const auto& other : MyWindows())
        if (other->Owner() == window.handle && !other->destroying)
            Destroy(*other);
    Show(window, false);
    SendDestroy(window);
    Forget(window);
}

} // namespace

HWND WINAPI CreateWindowExA(DWORD exStyle, LPCSTR className, LPCSTR name, DWORD style, int x, int y, int width,
                            int height, HWND parent, HMENU menu, HINSTANCE instance, LPVOID parameter) {
    if (CallFails("CreateWindowExA"))
        return nullptr;
    CREATESTRUCTA wanted = {parameter, instance,  menu,   parent, height, width, y, x, static_cast<LONG>(style),
                            name,      className, exStyle};
    return WithMemory(HWND(), [&] { return Create(wanted); });
}

BOOL WINAPI DestroyWindow(HWND handle) {
    const bool fails = CallFails("DestroyWindow");
    const auto window = FindWindowOf(handle);
    if (!window || window->destroying)
        return FALSE;
    return WithMemory(false,
                      [&] {
                          Destroy(*window);
                          return true;
                      }) &&
           !fails;
}

BOOL WINAPI IsWindow(HWND window) {
    return IsWindowHandle(window);
}
