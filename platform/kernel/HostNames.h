#pragma once

#include <string>
#include <string_view>

namespace kel::platform {

/// A host's file name as a Win32 program sees it, in UTF-8.
///
/// A host name is any bytes but '/' and NUL. Bytes that a Win32 name cannot hold (control characters, \ : * ? " < > |,
/// and whatever is no well-formed UTF-8) become U+F000 plus the byte, in the private use area. Where a host name really
/// holds such a character of the private use area, its three bytes are mapped one by one, so that no two host names
/// look alike and each comes back exactly. A name that would be longer than the 259 bytes of a directory entry is cut,
/// and ends in U+F000 and a number made from the whole of it; such an alias is found by comparing it with the names
/// that are there.
std::string HostNameToWin32(std::string_view name);

/// As HostNameToWin32, without a copy where the name stays as it is. @p room holds the result where it does not.
std::string_view HostNameToWin32(std::string_view name, std::string& room);

/// The inverse of HostNameToWin32 for one name (no separators); an alias comes back as it is.
std::string Win32NameToHost(std::string_view name);

} // namespace kel::platform
