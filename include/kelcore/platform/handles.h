#pragma once

/// @file
/// Handles: small numbers, multiples of four, that name an object of this process. The same value is not given out
/// again at once, so that a handle used after its closing is refused rather than mistaken. Null, foreign and closed
/// handles are refused with ERROR_INVALID_HANDLE by every call. Several handles may name one object (DuplicateHandle);
/// the object is let go with the last of them. Every call here may be made from any thread.

#include <kelcore/platform/base.h>

/// @name Standard handles
/// @{
#define STD_INPUT_HANDLE (static_cast<DWORD>(-10))
#define STD_OUTPUT_HANDLE (static_cast<DWORD>(-11))
#define STD_ERROR_HANDLE (static_cast<DWORD>(-12))
/// @}

/// @name Results of GetFileType
/// @{
#define FILE_TYPE_UNKNOWN 0x0000
#define FILE_TYPE_DISK 0x0001
#define FILE_TYPE_CHAR 0x0002
#define FILE_TYPE_PIPE 0x0003
/// @}

/// @name Options of DuplicateHandle and handle flags
/// @{
#define DUPLICATE_CLOSE_SOURCE 0x00000001
#define DUPLICATE_SAME_ACCESS 0x00000002
#define HANDLE_FLAG_INHERIT 0x00000001
#define HANDLE_FLAG_PROTECT_FROM_CLOSE 0x00000002
/// @}

extern "C" {

/// Closes @p handle. Handles of directory searches are closed by FindClose, not here.
/// @return FALSE with ERROR_INVALID_HANDLE for what is no open handle and for one that is protected from closing.
KELPLATFORM_API BOOL WINAPI CloseHandle(HANDLE handle);

/// Stores in @p target another handle for the object of @p source. Both share all state of the object: the file
/// position, byte-range locks, share modes.
/// @param sourceProcess, targetProcess GetCurrentProcess(); another value is refused with ERROR_INVALID_HANDLE.
/// @param target may be null, to close the source alone.
/// @param access the rights of the new handle, a subset of those of the source (else ERROR_ACCESS_DENIED); ignored with
///        DUPLICATE_SAME_ACCESS.
/// @param options DUPLICATE_CLOSE_SOURCE closes @p source even when the call fails.
KELPLATFORM_API BOOL WINAPI DuplicateHandle(HANDLE sourceProcess, HANDLE source, HANDLE targetProcess, HANDLE* target,
                                            DWORD access, BOOL inherit, DWORD options);

/// Stores the HANDLE_FLAG_ bits of @p handle.
KELPLATFORM_API BOOL WINAPI GetHandleInformation(HANDLE handle, LPDWORD flags);

/// Changes the HANDLE_FLAG_ bits of @p handle that @p mask names. An object whose handle is inheritable stays open in a
/// program that the process turns into by exec.
KELPLATFORM_API BOOL WINAPI SetHandleInformation(HANDLE handle, DWORD mask, DWORD flags);

/// The process's standard input, output or error as a handle, the same at every call; not to be closed as a rule.
/// @return null if the process has none; INVALID_HANDLE_VALUE with ERROR_INVALID_HANDLE for another @p which.
KELPLATFORM_API HANDLE WINAPI GetStdHandle(DWORD which);

/// What stands behind a file handle: FILE_TYPE_DISK for files and folders, FILE_TYPE_CHAR for terminals and devices,
/// FILE_TYPE_PIPE for pipes and sockets.
/// @return FILE_TYPE_UNKNOWN with ERROR_INVALID_HANDLE on failure.
KELPLATFORM_API DWORD WINAPI GetFileType(HANDLE file);

} // extern "C"
