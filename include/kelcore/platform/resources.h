#pragma once

/// @file
/// Resources of modules: blocks of bytes found by type, name and language.
///
/// A PE file has its resources in itself. A native module carries them in a PE file beside it, named after it plus
/// ".rsrc" (libfoo.so.rsrc, program.rsrc), which is read at the module's first resource call.
///
/// Types and names are numbers below 65536 (MAKEINTRESOURCEA, or the text "#123") or texts compared without regard to
/// case: compilers of resources store them in capitals. All that these calls give belongs to the module and lasts as
/// long as it is loaded.

#include <kelcore/platform/modules.h>

typedef struct HRSRC__* HRSRC;
typedef void* HGLOBAL;

#define MAKEINTRESOURCEA(number) (reinterpret_cast<LPSTR>(static_cast<ULONG_PTR>(static_cast<WORD>(number))))
#define IS_INTRESOURCE(name) ((reinterpret_cast<ULONG_PTR>(name) >> 16) == 0)

/// @name Types
/// @{
#define RT_CURSOR MAKEINTRESOURCEA(1)
#define RT_BITMAP MAKEINTRESOURCEA(2)
#define RT_ICON MAKEINTRESOURCEA(3)
#define RT_MENU MAKEINTRESOURCEA(4)
#define RT_DIALOG MAKEINTRESOURCEA(5)
#define RT_STRING MAKEINTRESOURCEA(6)
#define RT_ACCELERATOR MAKEINTRESOURCEA(9)
#define RT_RCDATA MAKEINTRESOURCEA(10)
#define RT_MESSAGETABLE MAKEINTRESOURCEA(11)
#define RT_GROUP_CURSOR MAKEINTRESOURCEA(12)
#define RT_GROUP_ICON MAKEINTRESOURCEA(14)
#define RT_VERSION MAKEINTRESOURCEA(16)
#define RT_HTML MAKEINTRESOURCEA(23)
#define RT_MANIFEST MAKEINTRESOURCEA(24)
/// @}

extern "C" {

/// Finds a resource in the language that suits the user: FindResourceExA with the neutral language.
KELPLATFORM_API HRSRC WINAPI FindResourceA(HMODULE module, LPCSTR name, LPCSTR type);

/// Finds a resource. A language is looked for exactly, then without its sublanguage, then as the neutral language. The
/// neutral language itself goes on to the system's default language (GetSystemDefaultLangID, with and without its
/// sublanguage), to English of the United States, and ends with the first language there is.
/// @param module null asks the program.
/// @return null with ERROR_RESOURCE_DATA_NOT_FOUND (no module, one without resources, or damaged ones),
///         ERROR_RESOURCE_TYPE_NOT_FOUND, ERROR_RESOURCE_NAME_NOT_FOUND, ERROR_RESOURCE_LANG_NOT_FOUND, or
///         ERROR_INVALID_PARAMETER for a text "#..." of a number that is too large.
KELPLATFORM_API HRSRC WINAPI FindResourceExA(HMODULE module, LPCSTR type, LPCSTR name, WORD language);

/// The bytes of a resource. @return 0 with ERROR_RESOURCE_DATA_NOT_FOUND for what is none of @p module.
KELPLATFORM_API DWORD WINAPI SizeofResource(HMODULE module, HRSRC resource);

/// A resource's block, to be locked; it needs no freeing.
/// @return null with ERROR_RESOURCE_DATA_NOT_FOUND for what is none of @p module.
KELPLATFORM_API HGLOBAL WINAPI LoadResource(HMODULE module, HRSRC resource);

/// The address of a resource's bytes, aligned as in the file, which is to 4 as a rule; they must not be changed.
/// @return null for null.
KELPLATFORM_API LPVOID WINAPI LockResource(HGLOBAL block);

} // extern "C"
