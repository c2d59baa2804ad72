#pragma once

#include <string>
#include <string_view>

namespace kel::platform {

/// The absolute form of a Win32 path, both in UTF-8, as GetFullPathNameA describes it.
/// @return false with the last error set for a blank path, or when the host cannot name its current directory.
bool FullPath(std::string_view path, std::string& full);

/// The current directory as a Win32 path in UTF-8. @return false with the last error set if the host has none.
bool CurrentFolder(std::string& path);

} // namespace kel::platform
