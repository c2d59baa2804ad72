#pragma once

/// @file
/// A window: its place among others, its pixels, and what of it is to be painted.
///
/// Coordinates: a window's own have (0, 0) at its corner, its client area's at that of the area; those of the surface
/// are the own ones of the top-level window it is in. A window is used by the thread that made it, so nothing here is
/// guarded but the table of handles.

#include "platform/gdi/BitmapObject.h"
#include "platform/gdi/DrawingArea.h"
#include "platform/user/WindowClasses.h"

#include <thread>
#include <vector>

namespace kel::platform {

/// What a window is made from.
struct WindowPlan {
    std::shared_ptr<WindowClass> windowClass;
    DWORD style = 0;
    DWORD exStyle = 0;
    std::string name;
    RECT place{0, 0, 0, 0};
    HWND owner = nullptr; ///< of a window that is no child
};

class Window : public std::enable_shared_from_this<Window> {
public:
    /// Hidden, among no siblings. @throws std::bad_alloc
    explicit Window(WindowPlan plan);
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    ~Window();

    HWND handle = nullptr;
    WNDPROC procedure;
    LONG_PTR userData = 0;

    const WindowClass& Class() const { return *m_class; }
    DWORD Style() const { return m_style; }
    DWORD ExStyle() const { return m_exStyle; }
    const std::string& Name() const { return m_name; }
    HWND Owner() const { return m_owner; }
    bool IsChild() const { return (m_style & WS_CHILD) != 0; }
    bool IsMine() const { return m_thread == std::this_thread::get_id(); }

    /// @name Kinship
    /// @{
    Window* Parent() const { return m_parent; }

    /// From the top to the bottom.
    const std::vector<std::shared_ptr<Window>>& Children() const { return m_children; }

    /// Puts the window below its siblings-to-be. @throws std::bad_alloc
    void Join(Window& parent);

    /// Moves it below @p sibling; null: to the top.
    void Restack(const Window* sibling);

    /// Takes it from its siblings; from then on nothing of it can be drawn.
    void Leave();
    /// @}

    /// @name Place
    /// @{

    /// In the parent's client coordinates, or on the screen.
    RECT Place() const { return m_place; }
    /// @throws std::bad_alloc, and nothing has changed
    void SetPlace(RECT place);

    SIZE Size() const { return {m_place.right - m_place.left, m_place.bottom - m_place.top}; }

    /// The client area in own coordinates; never turned inside out.
    RECT Client() const;
    SIZE ClientSize() const;

    /// Of its corner on the surface and on the screen.
    POINT OnSurface() const;
    POINT OnScreen() const;

    void SetShown(bool shown);
    bool IsShown() const { return (m_style & WS_VISIBLE) != 0; }
    /// With all its parents.
    bool IsVisible() const;
    /// @}

    /// @name Pixels
    /// @{

    /// The part of the surface that is the window, or its client area.
    AreaView View(bool whole) const;

    /// What drawing can reach of it, in the coordinates of the window or of its client area. @throws std::bad_alloc
    Region Reachable(bool whole) const;

    /// Another number whenever the place, the kinship or the visibility of any window has changed.
    static unsigned Layout();
    /// @}

    /// @name What is to be painted
    /// @{
    Region update; ///< of the client area
    bool erase = false;
    bool frameInvalid = false;
    /// @}

    bool destroying = false;

private:
    const std::shared_ptr<BitmapObject>& Pixels() const;
    Region Unhidden(Region region, POINT corner) const;

    const std::shared_ptr<WindowClass> m_class;
    DWORD m_style;
    DWORD m_exStyle;
    const std::string m_name;
    const HWND m_owner;
    const std::thread::id m_thread = std::this_thread::get_id();
    RECT m_place;
    Window* m_parent = nullptr;
    std::vector<std::shared_ptr<Window>> m_children;
    std::shared_ptr<BitmapObject> m_pixels; ///< of a top-level window that has any
    bool m_gone = false;
};

/// @name Handles
/// @{

/// Gives the window its handle. @throws std::bad_alloc
void AddWindow(const std::shared_ptr<Window>& window);
void RemoveWindow(const Window& window);

/// The window of a handle, of this thread.
/// @return null with ERROR_INVALID_WINDOW_HANDLE, or ERROR_ACCESS_DENIED if it is another thread's.
std::shared_ptr<Window> FindWindowOf(HWND handle);

/// The same for a call that has to be given something, too. @return null with ERROR_INVALID_PARAMETER without that
std::shared_ptr<Window> FindWindowOf(HWND handle, const void* given);

/// Whether there is such a window, of any thread.
bool IsWindowHandle(HWND handle);

/// Those of this thread, in the order of their making. @throws std::bad_alloc
std::vector<std::shared_ptr<Window>> MyWindows();
/// @}

/// Calls the window's procedure, unless it is gone.
LRESULT Send(Window& window, UINT message, WPARAM wide = 0, LPARAM data = 0);

} // namespace kel::platform
