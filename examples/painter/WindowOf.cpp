#include "WindowOf.h"

namespace {

constexpr char kClass[] = "KelPainterWindow";

} // namespace

WindowOf::~WindowOf() {
    if (m_window && IsWindow(m_window))
        DestroyWindow(m_window);
}

bool WindowOf::Create(const char* name, DWORD style, const RECT& place, HWND parent) {
    // Nothing is erased: what is painted covers everything.
    WNDCLASSA description = {};
    description.lpfnWndProc = Procedure;
    description.hInstance = GetModuleHandleA(nullptr);
    description.lpszClassName = kClass;
    RegisterClassA(&description); // fails but the first time
    m_window = CreateWindowExA(0, kClass, name, style, place.left, place.top, place.right - place.left,
                               place.bottom - place.top, parent, nullptr, description.hInstance, this);
    return m_window != nullptr;
}

LRESULT CALLBACK WindowOf::Procedure(HWND window, UINT message, WPARAM wide, LPARAM data) {
    if (message == WM_NCCREATE) {
        auto* const object = reinterpret_cast<CREATESTRUCTA*>(data)->lpCreateParams;
        SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(object));
    }
    auto* const self = reinterpret_cast<WindowOf*>(GetWindowLongPtrA(window, GWLP_USERDATA));
    if (self && message == WM_PAINT)
        return self->OnPaint(), 0;
    if (self && message == WM_SYSCOLORCHANGE)
        return self->OnColours(), 0;
    return DefWindowProcA(window, message, wide, data);
}
