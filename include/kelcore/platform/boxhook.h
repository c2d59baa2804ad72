#pragma once

/// @file
/// Lets a program or a test answer message boxes. It exists off Windows only and is not part of the door.

#include <kelcore/platform/messageboxes.h>

#include <functional>
#include <string>

namespace kel::platform {

/// A message box that asks for an answer, its texts in the ANSI code page.
struct BoxQuestion {
    std::string text;
    std::string caption;
    UINT style;     ///< MB_ values
    DWORD language; ///< a LANGID; 0 unless the caller named one
};

/// @return the button that is pressed (IDOK …), or 0 to leave the box to standard error.
using BoxHook = std::function<int(const BoxQuestion&)>;

/// Hands all message boxes to @p hook, called on the threads that show them; an empty one ends it.
/// @return the hook that was there.
KELPLATFORM_API BoxHook SetBoxHook(BoxHook hook);

} // namespace kel::platform
