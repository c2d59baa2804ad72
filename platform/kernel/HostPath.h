#pragma once

#include <kelcore/platform/base.h>

#include <string>

namespace kel::platform {

/// Translates a narrow Win32 path into the host's path.
///
/// Drive C: is the host's root, both separators are understood, a relative path is taken from the current directory.
/// Every component is matched exactly first, then without regard to case. The last component may be missing: it is then
/// kept as written, so that it can be created under that name.
/// @param host receives an absolute or relative host path in the host's encoding.
/// @return 0, or the Win32 error code: ERROR_PATH_NOT_FOUND for a missing folder on the way or an unknown drive,
///         ERROR_BAD_NETPATH for a network path, ERROR_INVALID_NAME for a text that can be no path.
DWORD ResolveHostPath(const char* path, std::string& host);

} // namespace kel::platform
