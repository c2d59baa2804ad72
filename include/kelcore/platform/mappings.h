#pragma once

/// @file
/// Files and anonymous memory mapped into the process. A view keeps its mapping and a mapping its file, whatever
/// handles are closed meanwhile; share modes and locks of the file end with its handles all the same.

#include <kelcore/platform/base.h>

/// @name Protections of a mapping
/// @{
#define PAGE_READONLY 0x02
#define PAGE_READWRITE 0x04
#define PAGE_WRITECOPY 0x08
#define SEC_RESERVE 0x04000000
#define SEC_COMMIT 0x08000000
/// @}

/// @name Access of a view
/// @{
#define FILE_MAP_COPY 0x0001
#define FILE_MAP_WRITE 0x0002
#define FILE_MAP_READ 0x0004
#define FILE_MAP_ALL_ACCESS 0x000F001F
/// @}

extern "C" {

/// Makes a mapping of a file, or of zeroed memory for INVALID_HANDLE_VALUE, and returns a handle for CloseHandle.
/// @param protection PAGE_READONLY and PAGE_WRITECOPY need a handle that reads, PAGE_READWRITE one that reads and
/// writes;
///        SEC_COMMIT and SEC_RESERVE are accepted, memory is given as it is touched.
/// @param sizeHigh, sizeLow the bytes to map; 0 maps the whole file. A larger size makes the file longer with
///        PAGE_READWRITE.
/// @param name null or "": named mappings are refused with ERROR_NOT_SUPPORTED.
/// @return null on failure, with ERROR_FILE_INVALID (an empty file and size 0), ERROR_ACCESS_DENIED,
///         ERROR_NOT_ENOUGH_MEMORY (a size past the end of a file that does not grow), ERROR_BAD_EXE_FORMAT (a handle
///         of no plain file), ERROR_INVALID_PARAMETER (an unknown protection, memory of size 0), ERROR_DISK_FULL.
KELPLATFORM_API HANDLE WINAPI CreateFileMappingA(HANDLE file, LPSECURITY_ATTRIBUTES security, DWORD protection,
                                                 DWORD sizeHigh, DWORD sizeLow, LPCSTR name);

/// Maps bytes of a mapping and returns the address of the first.
/// @param access FILE_MAP_READ; FILE_MAP_WRITE or FILE_MAP_ALL_ACCESS for reading and writing; FILE_MAP_COPY for
/// writing
///        that stays with this view.
/// @param offsetHigh, offsetLow a multiple of 64 KiB (else ERROR_MAPPED_ALIGNMENT).
/// @param count bytes; 0 maps all from the offset on.
/// @return null on failure, with ERROR_ACCESS_DENIED for an access that the protection does not allow and for bytes
/// past
///         the mapping's end.
KELPLATFORM_API LPVOID WINAPI MapViewOfFile(HANDLE mapping, DWORD access, DWORD offsetHigh, DWORD offsetLow,
                                            SIZE_T count);

/// Ends a view. @param view the address that MapViewOfFile returned. @return FALSE with ERROR_INVALID_ADDRESS
/// otherwise.
KELPLATFORM_API BOOL WINAPI UnmapViewOfFile(LPCVOID view);

/// Writes the changed pages of a part of a view to the file.
/// @param address lies in a view (else ERROR_INVALID_ADDRESS). @param count bytes; 0 means to the view's end.
KELPLATFORM_API BOOL WINAPI FlushViewOfFile(LPCVOID address, SIZE_T count);

} // extern "C"
