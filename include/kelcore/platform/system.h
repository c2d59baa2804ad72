#pragma once

/// @file
/// Facts about the system, the process and its threads, and the clocks.

#include <kelcore/platform/base.h>

/// @name Platform families
/// @{
#define VER_PLATFORM_WIN32s 0
#define VER_PLATFORM_WIN32_WINDOWS 1
#define VER_PLATFORM_WIN32_NT 2
#define VER_NT_WORKSTATION 1
/// @}

/// What GetVersionExA tells: 148 bytes.
typedef struct _OSVERSIONINFOA {
    DWORD dwOSVersionInfoSize; ///< set by the caller: the size of the record
    DWORD dwMajorVersion;
    DWORD dwMinorVersion;
    DWORD dwBuildNumber;
    DWORD dwPlatformId;
    CHAR szCSDVersion[128];
} OSVERSIONINFOA, *LPOSVERSIONINFOA;

/// What GetVersionExA tells to callers with room for 156 bytes.
typedef struct _OSVERSIONINFOEXA {
    DWORD dwOSVersionInfoSize;
    DWORD dwMajorVersion;
    DWORD dwMinorVersion;
    DWORD dwBuildNumber;
    DWORD dwPlatformId;
    CHAR szCSDVersion[128];
    WORD wServicePackMajor;
    WORD wServicePackMinor;
    WORD wSuiteMask;
    BYTE wProductType;
    BYTE wReserved;
} OSVERSIONINFOEXA, *LPOSVERSIONINFOEXA;

extern "C" {

/// Tells the version of the platform: family 2, version 6.2, build 9200, what a program without a manifest is told by
/// every current Windows.
/// @param information an OSVERSIONINFOA or OSVERSIONINFOEXA whose size field is set.
/// @return FALSE with ERROR_INSUFFICIENT_BUFFER if the size is neither.
KELPLATFORM_API BOOL WINAPI GetVersionExA(LPOSVERSIONINFOA information);

/// The bounds of the calling thread's stack: [*low, *high). The main thread's lower bound is where its limit lets it
/// grow to. Cheap from a thread's second call on.
KELPLATFORM_API void WINAPI GetCurrentThreadStackLimits(ULONG_PTR* low, ULONG_PTR* high);

/// The stand-in for a handle of this process; it needs no closing, and closing it does nothing.
KELPLATFORM_API HANDLE WINAPI GetCurrentProcess(void);

KELPLATFORM_API DWORD WINAPI GetCurrentProcessId(void);
KELPLATFORM_API DWORD WINAPI GetCurrentThreadId(void);

/// Milliseconds since the host was started, its sleep included.
KELPLATFORM_API ULONGLONG WINAPI GetTickCount64(void);

/// The time of day, UTC.
KELPLATFORM_API void WINAPI GetSystemTimeAsFileTime(LPFILETIME time);

} // extern "C"
