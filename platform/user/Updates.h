#pragma once

/// @file
/// What of windows is to be painted.

#include "platform/user/Window.h"

namespace kel::platform {

enum class Spread {
    Unclipped, ///< to the children, unless the window clips them
    Always,    ///< to the children
};

/// Adds @p region of the client area to what is to be painted, and to that of the children below it. Nothing of a
/// window that is not visible. @throws std::bad_alloc
void Invalidate(Window& window, const Region& region, bool erase, Spread spread);

/// The window is about to be painted in @p region: what of its children that covers is to be painted after it.
void InvalidateCovered(Window& window, const Region& region);

/// All of the window, its frame and its children.
void InvalidateAll(Window& window);

/// Takes @p region of the client area out of what is to be painted.
void Validate(Window& window, const Region& region);

/// What has been covered by a child at @p place, in client coordinates, is to be painted again.
void Expose(Window& parent, const Region& place);

/// Has the frame drawn if it is not as it should be.
void FlushFrame(Window& window);

/// Has the window and its children painted as far as that is due.
void PaintNow(Window& window);

/// Tells this thread's top-level windows that there are other system colours, and paints them.
void ShowNewColours();

} // namespace kel::platform
