#pragma once

/// @file
/// Classes of windows.

#include <kelcore/platform/windowsurfaces.h>

#include <atomic>
#include <memory>
#include <string>

namespace kel::platform {

struct WindowClass {
    std::string name; ///< in lower case
    const void* module;
    UINT style;
    WNDPROC procedure;
    HBRUSH background; ///< a handle, or 1 + an index of a system colour
    ATOM atom;
    std::atomic<int> windows{0};

    /// The brush to erase with, null for none.
    HBRUSH Background() const;
};

/// The class that a window of @p instance finds by that name, or by MAKEINTRESOURCEA of its atom.
/// @return null with ERROR_CANNOT_FIND_WND_CLASS.
std::shared_ptr<WindowClass> FindClass(LPCSTR name, HINSTANCE instance);

} // namespace kel::platform
