#pragma once

/// @file
/// Paths: full, short, long and compacted forms, the current and the temporary folder.
///
/// Drive C: is the host's root: C:\home\x is /home/x. Both separators are understood, results have backslashes. There
/// is one current directory, the host process's own. Paths are narrow texts in the ANSI code page and may be as long as
/// the host allows. Functions that fill a buffer return the length without the terminator when the text fits and the
/// size needed, terminator included, when it does not; the buffer is left alone then. They return 0 on failure.

#include <kelcore/platform/base.h>

extern "C" {

/// The absolute form of @p path, from its text and the current directory alone: nothing needs to exist. Doubled
/// separators collapse, "." and ".." are resolved (never above the root), one dot at the end of a folder's name and all
/// dots and spaces at the end of the last name are dropped. The drive letter stays as written; a drive other than C:
/// has its root as its current directory. NUL, alone, becomes \\.\NUL.
/// @param filePart null, or receives the beginning of the last component in @p buffer, null if there is none.
/// @return ERROR_INVALID_NAME for an empty or blank path.
KELPLATFORM_API DWORD WINAPI GetFullPathNameA(LPCSTR path, DWORD size, LPSTR buffer, LPSTR* filePart);

/// The short form of an existing path. The host has no short names: every component comes back with the spelling it has
/// on the host, the rest as written.
/// @return ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND; ERROR_BAD_PATHNAME for an empty path.
KELPLATFORM_API DWORD WINAPI GetShortPathNameA(LPCSTR path, LPSTR buffer, DWORD size);

/// The long form of an existing path; the same as its short form here.
/// @return as GetShortPathNameA, but ERROR_PATH_NOT_FOUND for an empty path.
KELPLATFORM_API DWORD WINAPI GetLongPathNameA(LPCSTR path, LPSTR buffer, DWORD size);

/// Shortens @p path to fewer than @p size bytes, the terminator included: the last component with its separator stays
/// whole as long as three dots fit before it, and as much of the beginning stays as has room. Then the last component
/// is cut and ends in three dots; when there is no room for that either, as much of "...\..." is given as fits. A path
/// is returned whole if it leaves one byte of the size unused: that is how the original counts. Characters are never
/// cut through. No path needs to exist.
/// @param size 0 writes nothing and fails. @param flags must be 0; nothing is defined for it.
KELPLATFORM_API BOOL WINAPI PathCompactPathExA(LPSTR buffer, LPCSTR path, UINT size, DWORD flags);

/// The current directory, with a separator at the end only if it is the root. Links in it are resolved.
KELPLATFORM_API DWORD WINAPI GetCurrentDirectoryA(DWORD size, LPSTR buffer);

/// Changes the current directory of the process.
/// @return FALSE with ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, ERROR_DIRECTORY for what is no folder,
///         ERROR_INVALID_NAME for an empty path, ERROR_ACCESS_DENIED.
KELPLATFORM_API BOOL WINAPI SetCurrentDirectoryA(LPCSTR path);

/// The folder for temporary files, with a separator at its end: what TMPDIR, TMP or TEMP name (the first that is set
/// and not empty), else /tmp. Whether it exists is not looked at.
KELPLATFORM_API DWORD WINAPI GetTempPathA(DWORD size, LPSTR buffer);

/// Builds the name of a temporary file: the folder, up to three bytes of the prefix, a number in hexadecimal, ".tmp".
/// @param unique the number, of which the low 16 bits count. 0: a number is found under which no file exists, and the
///        empty file is created, for its owner only.
/// @param buffer MAX_PATH bytes.
/// @return the number, or 0 with ERROR_DIRECTORY if there is no such folder, ERROR_BUFFER_OVERFLOW if its path is
/// longer
///         than MAX_PATH - 14, ERROR_FILE_EXISTS if all numbers are taken.
KELPLATFORM_API UINT WINAPI GetTempFileNameA(LPCSTR folder, LPCSTR prefix, UINT unique, LPSTR buffer);

} // extern "C"
