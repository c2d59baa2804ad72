#pragma once

/// @file
/// Windows as pictures. This exists off Windows only, where nobody can see a window, and is not part of the door.

#include <kelcore/platform/windowsurfaces.h>

namespace kel::platform {

/// What @p window shows, its frame and its children included, as a DIB section of 32 bits a pixel whose bottom row
/// comes first. What of a child lies outside its parent is black. The caller deletes the bitmap.
/// @return null with ERROR_INVALID_WINDOW_HANDLE, ERROR_INVALID_PARAMETER for a window without pixels, or
///         ERROR_NOT_ENOUGH_MEMORY.
KELPLATFORM_API HBITMAP WindowPicture(HWND window);

} // namespace kel::platform
