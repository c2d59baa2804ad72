#pragma once

#include <kelcore/platform.h>

namespace kel::toolkit {

/// Registers the module at @p path as the server of the control's class. @return a system's error code.
LONG Register(const char* path);

/// Takes the registration back; there need not be one. @return a system's error code.
LONG Unregister();

} // namespace kel::toolkit
