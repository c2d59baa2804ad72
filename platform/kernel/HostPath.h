#pragma once

#include <kelcore/platform/base.h>

#include <string>
#include <string_view>

struct stat;

namespace kel::platform {

/// Translates a narrow Win32 path into the host's path.
///
/// Drive C: is the host's root, both separators are understood, a relative path is taken from the current directory.
/// Every component is matched exactly first, then without regard to case. The last component may be missing: it is then
/// kept as written, less the dots and spaces at its end that Windows drops, so that it can be created under that name.
/// A path that begins with \\?\ is taken as it is written: each component is matched exactly and keeps its end.
/// The usual road costs one system call. "NUL" is the host's null device. A link at the end is not followed.
/// @param host receives an absolute or relative host path in the host's encoding.
/// @return 0, or the Win32 error code: ERROR_PATH_NOT_FOUND for a missing folder on the way, an unknown drive or an
/// empty
///         path, ERROR_BAD_NETPATH for a network path, ERROR_INVALID_NAME for a text that can be no path (or a file's
///         name followed by a separator), or what the host reports on the way.
DWORD ResolveHostPath(const char* path, std::string& host);

/// As ResolveHostPath, for a path that is in UTF-8 already.
/// @param existing receives the host's record of the thing itself (links not followed); st_mode is 0 if it is missing.
DWORD ResolveHostPath(std::string_view utf8, std::string& host, struct stat& existing);

/// Translates the text alone, without asking the host whether anything is there. @return as ResolveHostPath.
DWORD TranslateHostPath(std::string_view utf8, std::string& host);

/// Whether @p c separates the components of a Win32 path.
inline bool IsSeparator(char c) {
    return c == '\\' || c == '/';
}

/// Whether @p path, as a whole and in any case, names the null device: "NUL" or "NUL:".
bool IsNullDevice(std::string_view path);

/// Whether @p path begins with \\?\ or \\.\, which promise that a plain path or a device follows.
bool HasVerbatimPrefix(std::string_view path);

/// A host path (absolute, without "." and "..") as a Win32 path in UTF-8: "/home/x" becomes "C:\home\x".
std::string Win32FromHostPath(std::string_view host);

/// @p name less what Windows drops from its end: the dots and spaces of a last component, one single dot of another. A
/// name of nothing but dots and spaces is left alone.
std::string_view DropTrailing(std::string_view name, bool last);

} // namespace kel::platform
