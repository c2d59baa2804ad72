#pragma once

#include "Drawing.h"

constexpr COLORREF kBack = RGB(10, 20, 30);

inline std::string g_log;
inline UINT g_refused = 0; // the message that windows refuse

/// What the windows have written since it was asked last.
inline std::string Log() {
    return std::exchange(g_log, {});
}

/// Windows write the letter they are made with, and the message's.
inline LRESULT CALLBACK LoggingProcedure(HWND window, UINT message, WPARAM wide, LPARAM data) {
    if (message == WM_NCCREATE)
        SetWindowLongPtrA(window, GWLP_USERDATA,
                          reinterpret_cast<LONG_PTR>(reinterpret_cast<CREATESTRUCTA*>(data)->lpCreateParams));
    const std::pair<UINT, char> logged[] = {{WM_CREATE, 'c'},        {WM_DESTROY, 'd'}, {WM_NCDESTROY, 'n'},
                                            {WM_PAINT, 'p'},         {WM_SIZE, 's'},    {WM_MOVE, 'm'},
                                            {WM_SYSCOLORCHANGE, 'y'}};
    for (const auto& [number, letter] : logged)
        if (message == number)
            g_log += {static_cast<char>(GetWindowLongPtrA(window, GWLP_USERDATA)), letter, ' '};
    if (g_refused != 0 && message == g_refused)
        return message == WM_NCCREATE ? 0 : -1;
    return DefWindowProcA(window, message, wide, data);
}

/// The classes of the tests: erased in a colour, not at all, in colours of the system.
inline void RegisterClasses() {
    static const bool done = [] {
        const auto systemBrush = [](int index) { return reinterpret_cast<HBRUSH>(static_cast<ULONG_PTR>(index + 1)); };
        const struct {
            const char* name;
            UINT style;
            HBRUSH background;
        } classes[] = {{"KelTestPlain", 0, CreateSolidBrush(kBack)},
                       {"KelTestBare", CS_HREDRAW, nullptr},
                       {"KelTestInfo", 0, systemBrush(COLOR_INFOBK)},
                       {"KelTestWindow", 0, systemBrush(COLOR_WINDOW)}};
        bool all = true;
        for (const auto& [name, style, background] : classes) {
            const WNDCLASSA c = {style, LoggingProcedure, 0, 0, nullptr, nullptr, nullptr, background, nullptr, name};
            all &= RegisterClassA(&c) != 0;
        }
        return all;
    }();
    REQUIRE(done);
}

/// A window that is destroyed at the end.
struct TestWindow {
    TestWindow(char letter, DWORD style, RECT place, HWND parent = nullptr, const char* name = "KelTestPlain",
               DWORD exStyle = 0) {
        RegisterClasses();
        handle = CreateWindowExA(exStyle, name, "test", style, place.left, place.top, place.right - place.left,
                                 place.bottom - place.top, parent, nullptr, nullptr,
                                 reinterpret_cast<void*>(static_cast<LONG_PTR>(letter)));
    }
    TestWindow(const TestWindow&) = delete;
    TestWindow& operator=(const TestWindow&) = delete;
    ~TestWindow() {
        if (handle)
            DestroyWindow(handle);
    }
    operator HWND() const { return handle; }

    HWND handle;
};

constexpr DWORD kTop = WS_POPUP | WS_VISIBLE;
constexpr DWORD kChild = WS_CHILD | WS_VISIBLE;
