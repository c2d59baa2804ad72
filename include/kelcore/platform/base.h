#pragma once

/// @file
/// The types and constants that every family of the platform layer shares, with the widths they have on Windows:
/// DWORD and LONG are 32 bits everywhere, WCHAR is one 16-bit unit of text.

#include <cstddef>
#include <cstdint>

#define KELPLATFORM_API __attribute__((visibility("default")))

#define WINAPI
#define CALLBACK
#define STDMETHODCALLTYPE
#define __int32 int
#define __int64 long long

typedef int BOOL;
typedef unsigned char BYTE;
typedef std::uint16_t WORD;
typedef std::uint32_t DWORD;
typedef std::int32_t INT;
typedef std::uint32_t UINT;
typedef std::int32_t LONG;
typedef std::uint32_t ULONG;
typedef std::int64_t LONGLONG;
typedef std::uint64_t ULONGLONG;
typedef std::uint64_t DWORD64;
typedef std::uintptr_t ULONG_PTR;
typedef std::uintptr_t DWORD_PTR;
typedef std::size_t SIZE_T;
typedef std::uintptr_t WPARAM;
typedef std::intptr_t LPARAM;
typedef char CHAR;
typedef short SHORT;
typedef unsigned short WCHAR;
typedef void* LPVOID;
typedef void* HANDLE;
typedef void* HLOCAL;
typedef DWORD* LPDWORD;
typedef LONG* PLONG;
typedef const void* LPCVOID;
typedef char* LPSTR;
typedef const char* LPCSTR;
typedef WCHAR* LPWSTR;
typedef const WCHAR* LPCWSTR;
typedef WORD LANGID;
typedef DWORD LCID;

#ifndef FALSE
#define FALSE 0
#endif
#ifndef TRUE
#define TRUE 1
#endif

#define MAX_PATH 260
#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(-1)))

/// 100 ns units since 1 January 1601 UTC, in two halves.
typedef struct _FILETIME {
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
} FILETIME, *PFILETIME, *LPFILETIME;

typedef union _LARGE_INTEGER {
    struct {
        DWORD LowPart;
        LONG HighPart;
    } u;
    LONGLONG QuadPart;
} LARGE_INTEGER, *PLARGE_INTEGER;

typedef struct _SECURITY_ATTRIBUTES {
    DWORD nLength;
    LPVOID lpSecurityDescriptor;
    BOOL bInheritHandle;
} SECURITY_ATTRIBUTES, *PSECURITY_ATTRIBUTES, *LPSECURITY_ATTRIBUTES;
