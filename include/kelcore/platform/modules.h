#pragma once

/// @file
/// Modules: the program, the native shared objects of the process, and PE files opened for their resources.
///
/// A native module is one that the host's loader loads and runs. A PE file is data here, whatever machine it was made
/// for: its resources and its version are read, its code never runs, and it has no procedures. A file is told by its
/// content, not by its name, so "x.dll" may be either.
///
/// A module's handle is valid until its last FreeLibrary. Modules that the host has loaded by itself (the program,
/// libraries it is linked with) have handles that need no freeing. Every call here may be made from any thread.

#include <kelcore/platform/base.h>

typedef struct HINSTANCE__* HINSTANCE;
typedef HINSTANCE HMODULE;

/// A procedure of a module, to be cast to what it is. void* is asked back by a cast of its own.
typedef std::intptr_t(WINAPI* FARPROC)();

/// @name Options of LoadLibraryExA
/// @{
#define LOAD_LIBRARY_AS_DATAFILE 0x00000002
/// @}

/// @name Options of GetModuleHandleExA
/// @{
#define GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT 0x00000002
#define GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS 0x00000004
/// @}

extern "C" {

/// Loads a module, or counts one more use of a loaded one: the same file is one module, by whatever name.
///
/// A name without a path means a loaded module of that name, if there is one. Otherwise it is looked for in the
/// program's folder, in the current folder and then where the host's loader looks. Names are matched like paths:
/// exactly first, then without regard to case. A name without an extension gets
/// ".dll"; a dot at its end keeps it without one.
///
/// A PE file's resources are copied at once, so that the file may be replaced or cut while it is loaded.
/// @return null with
///         - ERROR_MOD_NOT_FOUND: no such file, an empty or null name, or a library that a native module needs is
///         missing;
///         - ERROR_PROC_NOT_FOUND: a native module needs a procedure that nobody has;
///         - ERROR_BAD_EXE_FORMAT: neither a PE file nor a native module for this machine, or a PE file cut short;
///         - ERROR_ACCESS_DENIED: a folder, or a file that may not be read; ERROR_NOT_ENOUGH_MEMORY.
KELPLATFORM_API HMODULE WINAPI LoadLibraryA(LPCSTR name);

/// As LoadLibraryA. With LOAD_LIBRARY_AS_DATAFILE nothing runs: a native module is opened for the resources beside it
/// alone (ERROR_RESOURCE_DATA_NOT_FOUND if it has none), apart from the module that LoadLibraryA would make of it, and
/// a missing file is ERROR_FILE_NOT_FOUND or ERROR_PATH_NOT_FOUND.
/// @param file must be null. @param flags 0 or LOAD_LIBRARY_AS_DATAFILE; others are refused with
///        ERROR_INVALID_PARAMETER.
KELPLATFORM_API HMODULE WINAPI LoadLibraryExA(LPCSTR name, HANDLE file, DWORD flags);

/// Ends one use of a module. The last one unloads it: its resources must not be used any more. The program and modules
/// that were not loaded here stay.
/// @return FALSE with ERROR_MOD_NOT_FOUND for what is no module, ERROR_INVALID_HANDLE for null.
KELPLATFORM_API BOOL WINAPI FreeLibrary(HMODULE module);

/// The full path of a module's file, links resolved, spelled as on the host; null asks for the program's.
/// @return the length without the terminator. A text that does not fit is cut to @p size - 1 bytes (no character is cut
///         in two) and terminated, the result is @p size and the last error ERROR_INSUFFICIENT_BUFFER. 0 with
///         ERROR_MOD_NOT_FOUND for what is no module.
KELPLATFORM_API DWORD WINAPI GetModuleFileNameA(HMODULE module, LPSTR path, DWORD size);

/// The handle of a loaded module, which is not counted; null asks for the program's.
/// @param name a path, or a file's name, compared without regard to case; without an extension it gets ".dll". Of
///        several modules of one name, native ones come first, in the order of their loading.
/// @return null with ERROR_MOD_NOT_FOUND if no such module is loaded.
KELPLATFORM_API HMODULE WINAPI GetModuleHandleA(LPCSTR name);

/// As GetModuleHandleA, counted like LoadLibraryA unless GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT is given. With
/// GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS @p name is an address in a native module's code or data, and the handle is
/// that of the module: how a module finds its own.
/// @param module receives the handle, null on failure.
/// @return FALSE with ERROR_MOD_NOT_FOUND, or ERROR_INVALID_PARAMETER for no @p module or other flags.
KELPLATFORM_API BOOL WINAPI GetModuleHandleExA(DWORD flags, LPCSTR name, HMODULE* module);

/// A procedure, or data, that a native module exports by name; null asks the program.
/// @return null with ERROR_PROC_NOT_FOUND if the module exports nothing of that name (PE files export nothing here, and
///         numbers below 65536 name nothing), ERROR_MOD_NOT_FOUND for what is no module.
KELPLATFORM_API FARPROC WINAPI GetProcAddress(HMODULE module, LPCSTR name);

} // extern "C"
