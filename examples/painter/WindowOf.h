#pragma once

#include <kelcore/platform.h>

/// A window whose messages are answered by an object.
class WindowOf {
public:
    WindowOf() = default;
    WindowOf(const WindowOf&) = delete;
    WindowOf& operator=(const WindowOf&) = delete;
    virtual ~WindowOf();

    HWND Handle() const { return m_window; }

protected:
    /// Makes the window. @return whether there is one.
    bool Create(const char* name, DWORD style, const RECT& place, HWND parent);

    virtual void OnPaint() = 0;
    virtual void OnColours() {}

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wide, LPARAM data);

    HWND m_window = nullptr;
};
