#pragma once

/// @file
/// Contexts that draw on windows.

#include "platform/gdi/DeviceContext.h"
#include "platform/user/Window.h"

namespace kel::platform {

/// What a context of a window sees of it, for as long as the context lives: once the window is gone, nothing.
class WindowArea final : public DrawingArea {
public:
    enum class Part { Client, Whole };

    WindowArea(Window& window, Part part) : m_window(window.shared_from_this()), m_part(part) {}

    AreaView View() const override { return m_window->View(IsWhole()); }
    Region Reachable() const override;
    unsigned Version() const override { return Window::Layout(); }

    /// Narrows it to @p region for good, in the area's pixels.
    void Narrow(Region region) { m_narrowed = std::move(region); }

private:
    bool IsWhole() const { return m_part == Part::Whole; }

    const std::shared_ptr<Window> m_window;
    const Part m_part;
    std::optional<Region> m_narrowed;
};

/// A context without a handle. @throws std::bad_alloc
std::shared_ptr<DeviceContext> MakeWindowContext(Window& window, WindowArea::Part part);

/// A context of the client area that reaches @p region of it alone. @return null when memory or handles are short.
HDC OpenPaintContext(Window& window, Region region);

/// Lets a context of a window or of the screen go. @return false for what is no such context.
bool CloseContext(HDC dc);

} // namespace kel::platform
