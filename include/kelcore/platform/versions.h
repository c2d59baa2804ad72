#pragma once

/// @file
/// Version records: resource 1 of type RT_VERSION of PE files, and of native modules through the file with their
/// resources (libfoo.so.rsrc).

#include <kelcore/platform/base.h>

#define VS_FFI_SIGNATURE 0xFEEF04BDu
#define VS_FFI_STRUCVERSION 0x00010000u
#define VS_FFI_FILEFLAGSMASK 0x0000003Fu
#define VOS_NT_WINDOWS32 0x00040004
#define VFT_APP 1
#define VFT_DLL 2

/// The fixed part of a version record.
typedef struct tagVS_FIXEDFILEINFO {
    DWORD dwSignature; ///< VS_FFI_SIGNATURE
    DWORD dwStrucVersion;
    DWORD dwFileVersionMS; ///< the first two numbers of the file's version, 16 bits each
    DWORD dwFileVersionLS;
    DWORD dwProductVersionMS;
    DWORD dwProductVersionLS;
    DWORD dwFileFlagsMask;
    DWORD dwFileFlags;
    DWORD dwFileOS;
    DWORD dwFileType;
    DWORD dwFileSubtype;
    DWORD dwFileDateMS;
    DWORD dwFileDateLS;
} VS_FIXEDFILEINFO;

extern "C" {

/// The bytes that GetFileVersionInfoA needs for the version record of a file: the record and room for its texts in
/// narrow form.
/// @param file a path, or a name that is looked for in the program's folder and in the current one; without an
/// extension
///        it gets ".dll".
/// @param ignored receives 0 if it is not null.
/// @return 0 with ERROR_FILE_NOT_FOUND or another code of opening; ERROR_RESOURCE_DATA_NOT_FOUND for a file without
///         resources, be it a PE file or not; ERROR_RESOURCE_TYPE_NOT_FOUND or ERROR_RESOURCE_NAME_NOT_FOUND for one
///         without a version record; ERROR_INVALID_DATA for a damaged record; ERROR_INVALID_PARAMETER for a null name,
///         ERROR_BAD_PATHNAME for an empty one.
KELPLATFORM_API DWORD WINAPI GetFileVersionInfoSizeA(LPCSTR file, LPDWORD ignored);

/// Copies the version record of a file. A block that is smaller than asked for gets what fits; texts cannot be asked of
/// it. @return FALSE with the codes of GetFileVersionInfoSizeA.
KELPLATFORM_API BOOL WINAPI GetFileVersionInfoA(LPCSTR file, DWORD ignored, DWORD size, LPVOID block);

/// Finds a value in a version record.
/// @param block what GetFileVersionInfoA stored. Texts are converted into room at its end: one block must not be asked
///        by two threads at once.
/// @param path "\\" for the VS_FIXEDFILEINFO, "\\VarFileInfo\\Translation" for pairs of a language and a code page, 16
///        bits each, "\\StringFileInfo\\040904b0\\ProductName" for a text. Names are compared without regard to case.
/// @param value receives the address in the block.
/// @param length receives the bytes of the value, the terminator of a text included; 0 for a part without a value.
/// @return FALSE with ERROR_RESOURCE_TYPE_NOT_FOUND if there is no such value, ERROR_INVALID_DATA if the block is
///         damaged or has no room for the text.
KELPLATFORM_API BOOL WINAPI VerQueryValueA(LPCVOID block, LPCSTR path, LPVOID* value, UINT* length);

} // extern "C"
