#pragma once

/// @file
/// Frames of windows, with the classic sizes.

#include <kelcore/platform/windowsurfaces.h>

namespace kel::platform {

class Window;

/// How far the frame of a window with these styles reaches in from each edge.
RECT FrameOf(DWORD style, DWORD exStyle);

/// Draws the frame. Does nothing when memory is short.
void DrawFrame(Window& window);

} // namespace kel::platform
