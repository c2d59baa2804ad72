#pragma once

/// @file
/// The registry: a tree of keys with typed values, shared by the processes of a user and kept in one file, the hive.
///
/// Every call returns its error code, ERROR_SUCCESS (0) when all went well, and leaves the last error alone. Texts are
/// narrow, in the process's ANSI code page; the hive keeps them independently of it. Names are compared without regard
/// to case and kept as they were first written. Calls may be made from any thread, and by any number of processes at
/// once: each sees all that was done before it began, and what a call changes is there as a whole or not at all,
/// whenever the process ends. RegFlushKey makes it outlast the loss of power, too.
///
/// The environment variable KELCORE_REGISTRY names the hive's file by its host path; unset or empty, it is
/// kelcore/registry.db in the user's data directory ($XDG_DATA_HOME, else ~/.local/share), made with mode 0600 when it
/// is missing. ":memory:" is a hive of the process's own that goes with it. What keeps a hive from being opened is the
/// result of every call until it is put right:
///
///     ERROR_PATH_NOT_FOUND, ERROR_ACCESS_DENIED    the folder is missing; file or folder may not be read and written
///     ERROR_NOT_REGISTRY_FILE                      the file is something else; it is left as it was
///     ERROR_REGISTRY_CORRUPT                       the file is damaged; it is left as it was
///     ERROR_UNKNOWN_REVISION                       the file was made by a later version; it is left as it was
///
/// and, at any time, ERROR_DISK_FULL, ERROR_REGISTRY_IO_FAILED, ERROR_NOT_ENOUGH_MEMORY, and ERROR_BUSY when another
/// process holds the hive for half a minute.

#include <kelcore/platform/base.h>

/// A key that was opened, or a predefined one.
typedef struct HKEY__* HKEY;
typedef HKEY* PHKEY;

/// Rights of an open key.
typedef DWORD REGSAM;

/// @name Predefined keys. They need no opening, and closing them does nothing.
/// @{
#define HKEY_CLASSES_ROOT (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG>(0x80000000u))))
#define HKEY_CURRENT_USER (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG>(0x80000001u))))
#define HKEY_LOCAL_MACHINE (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG>(0x80000002u))))
#define HKEY_USERS (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG>(0x80000003u))))
#define HKEY_PERFORMANCE_DATA (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG>(0x80000004u))))
#define HKEY_CURRENT_CONFIG (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG>(0x80000005u))))
/// @}

/// @name Rights. Those that a call needs are named with it; GENERIC_READ, GENERIC_WRITE, GENERIC_EXECUTE, GENERIC_ALL
/// and MAXIMUM_ALLOWED stand for KEY_READ, KEY_WRITE, KEY_EXECUTE and KEY_ALL_ACCESS (twice).
/// @{
#define KEY_QUERY_VALUE 0x0001
#define KEY_SET_VALUE 0x0002
#define KEY_CREATE_SUB_KEY 0x0004
#define KEY_ENUMERATE_SUB_KEYS 0x0008
#define KEY_NOTIFY 0x0010
#define KEY_CREATE_LINK 0x0020
#define KEY_WOW64_64KEY 0x0100 ///< changes nothing: there is one view
#define KEY_WOW64_32KEY 0x0200 ///< changes nothing
#define KEY_READ 0x20019
#define KEY_WRITE 0x20006
#define KEY_EXECUTE 0x20019
#define KEY_ALL_ACCESS 0xF003F
/// @}

/// @name Types of values. Others are kept as they are.
/// @{
#define REG_NONE 0
#define REG_SZ 1
#define REG_EXPAND_SZ 2
#define REG_BINARY 3
#define REG_DWORD 4
#define REG_DWORD_LITTLE_ENDIAN 4
#define REG_DWORD_BIG_ENDIAN 5
#define REG_LINK 6
#define REG_MULTI_SZ 7
#define REG_QWORD 11
#define REG_QWORD_LITTLE_ENDIAN 11
/// @}

/// @name Options and disposition of RegCreateKeyExA
/// @{
#define REG_OPTION_RESERVED 0
#define REG_OPTION_NON_VOLATILE 0
#define REG_OPTION_VOLATILE 1
#define REG_CREATED_NEW_KEY 1
#define REG_OPENED_EXISTING_KEY 2
/// @}

extern "C" {

KELPLATFORM_API LONG WINAPI RegOpenKeyExA(HKEY key, LPCSTR subkey, DWORD options, REGSAM access, PHKEY result);
KELPLATFORM_API LONG WINAPI RegCreateKeyExA(HKEY key, LPCSTR subkey, DWORD reserved, LPSTR className, DWORD options,
                                            REGSAM access, const SECURITY_ATTRIBUTES* security, PHKEY result,
                                            LPDWORD disposition);
KELPLATFORM_API LONG WINAPI RegCloseKey(HKEY key);
KELPLATFORM_API LONG WINAPI RegDeleteKeyA(HKEY key, LPCSTR subkey);
KELPLATFORM_API LONG WINAPI RegConnectRegistryA(LPCSTR machine, HKEY key, PHKEY result);
KELPLATFORM_API LONG WINAPI RegQueryInfoKeyA(HKEY key, LPSTR className, LPDWORD classSize, LPDWORD reserved,
                                             LPDWORD subkeys, LPDWORD longestSubkey, LPDWORD longestClass,
                                             LPDWORD values, LPDWORD longestValueName, LPDWORD longestData,
                                             LPDWORD securityDescriptor, LPFILETIME lastWrite);
KELPLATFORM_API LONG WINAPI RegEnumKeyExA(HKEY key, DWORD index, LPSTR name, LPDWORD nameSize, LPDWORD reserved,
                                          LPSTR className, LPDWORD classSize, LPFILETIME lastWrite);
KELPLATFORM_API LONG WINAPI RegEnumValueA(HKEY key, DWORD index, LPSTR name, LPDWORD nameSize, LPDWORD reserved,
                                          LPDWORD type, BYTE* data, LPDWORD dataSize);
KELPLATFORM_API LONG WINAPI RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, BYTE* data,
                                             LPDWORD dataSize);
KELPLATFORM_API LONG WINAPI RegSetValueExA(HKEY key, LPCSTR name, DWORD reserved, DWORD type, const BYTE* data,
                                           DWORD dataSize);
KELPLATFORM_API LONG WINAPI RegSetValueA(HKEY key, LPCSTR subkey, DWORD type, LPCSTR data, DWORD dataSize);
KELPLATFORM_API LONG WINAPI RegDeleteValueA(HKEY key, LPCSTR name);
KELPLATFORM_API LONG WINAPI RegFlushKey(HKEY key);

} // extern "C"
