#pragma once

/// @file
/// Placing windows, as creation, destruction and the calls that place have in common.

#include "platform/user/Window.h"

namespace kel::platform {

/// The place of a window there and of that size; numbers beyond 2^20 and sizes below 0 are held at the limit.
RECT PlaceFor(POINT corner, SIZE size);

/// Sends WM_SIZE and WM_MOVE about what they are now.
void TellSize(Window& window);
void TellPlace(Window& window);

/// Shows or hides, and has painted what that changes. @return whether it was shown. @throws std::bad_alloc
bool Show(Window& window, bool shown);

} // namespace kel::platform
