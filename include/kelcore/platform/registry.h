#pragma once

/// @file
/// The registry: a tree of keys with typed values, shared by the processes of a user and kept in one file, the hive.
///
/// Every call returns its error code, ERROR_SUCCESS (0) when all went well. Texts are narrow, in the process's ANSI
/// code page; the hive keeps them independently of it. Names are compared without regard to case and kept as they were
/// first written. Calls may be made from any thread, and by any number of processes at once: each sees all that was
/// done before it began, and what a call changes is there as a whole or not at all, whenever the process ends.
/// RegFlushKey makes it outlast the loss of power, too.
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

/// @name Results that every call may have: ERROR_INVALID_HANDLE for a key that is not open, and for
/// HKEY_PERFORMANCE_DATA, which is not there; ERROR_KEY_DELETED for one that was deleted while it was open (closing it
/// still succeeds); ERROR_ACCESS_DENIED where it lacks the rights that are named; ERROR_INVALID_PARAMETER for missing
/// results and reserved arguments; and those above.
///
/// A subkey is named by a path of any depth, with backslashes between its keys. Several in a row count as one, those at
/// the end do not count, and one in front is refused with ERROR_BAD_PATHNAME. The empty path means the key itself.
/// Sizes are in bytes.
/// @{

/// Opens a subkey. With no path or an empty one, @p result is another handle of the same key, or @p key itself if it is
/// predefined. @param options not looked at. @param access checked by later calls; every key can be opened for
/// anything.
/// @return ERROR_FILE_NOT_FOUND if there is none; @p result is then null.
KELPLATFORM_API LONG WINAPI RegOpenKeyExA(HKEY key, LPCSTR subkey, DWORD options, REGSAM access, PHKEY result);

/// RegOpenKeyExA with MAXIMUM_ALLOWED; but no path or an empty one means @p key itself, not another handle of it.
KELPLATFORM_API LONG WINAPI RegOpenKeyA(HKEY key, LPCSTR subkey, PHKEY result);

/// Opens a subkey, making every key of the path that is missing. Needs no right.
/// @param className the class of the last key, if it is made; may be null.
/// @param options REG_OPTION_VOLATILE: keys that are made live until the host starts again. All that is made below them
///        has to be volatile, too, else ERROR_CHILD_MUST_BE_VOLATILE.
/// @param security not looked at. @param disposition receives REG_CREATED_NEW_KEY or REG_OPENED_EXISTING_KEY; may be
///        null.
/// @return ERROR_BADKEY for no path, ERROR_INVALID_PARAMETER for a name of more than 255 16-bit units or a key more
///         than 512 levels below a predefined one.
KELPLATFORM_API LONG WINAPI RegCreateKeyExA(HKEY key, LPCSTR subkey, DWORD reserved, LPSTR className, DWORD options,
                                            REGSAM access, const SECURITY_ATTRIBUTES* security, PHKEY result,
                                            LPDWORD disposition);

/// Closes a key; does nothing to a predefined one.
KELPLATFORM_API LONG WINAPI RegCloseKey(HKEY key);

/// Deletes a key and its values. Needs no right.
/// @return ERROR_ACCESS_DENIED if it has subkeys, or is a predefined key or above one; ERROR_FILE_NOT_FOUND if there is
///         none.
KELPLATFORM_API LONG WINAPI RegDeleteKeyA(HKEY key, LPCSTR subkey);

/// Gives out the predefined @p key itself if @p machine is null, empty or this host's name, with or without two
/// backslashes in front. @return ERROR_BAD_NETPATH for every other machine.
KELPLATFORM_API LONG WINAPI RegConnectRegistryA(LPCSTR machine, HKEY key, PHKEY result);

/// Tells about a key; results that are not wanted may be null. Needs KEY_QUERY_VALUE.
/// @param className, classSize a buffer and its size, which becomes the length of the class without terminator; too
///        small a buffer gives ERROR_MORE_DATA.
/// @param longestSubkey, longestClass, longestValueName without terminator, in the code page.
/// @param longestData what RegQueryValueExA would report at most. @param securityDescriptor becomes 0.
/// @param lastWrite when subkeys or values were last made, changed or deleted.
KELPLATFORM_API LONG WINAPI RegQueryInfoKeyA(HKEY key, LPSTR className, LPDWORD classSize, LPDWORD reserved,
                                             LPDWORD subkeys, LPDWORD longestSubkey, LPDWORD longestClass,
                                             LPDWORD values, LPDWORD longestValueName, LPDWORD longestData,
                                             LPDWORD securityDescriptor, LPFILETIME lastWrite);

/// Gives out the subkey number @p index, counted from 0, in the order of their names without regard to case. Needs
/// KEY_ENUMERATE_SUB_KEYS.
/// @param nameSize, classSize the room for a terminated text; become its length without terminator.
/// @return ERROR_NO_MORE_ITEMS behind the last one; ERROR_MORE_DATA if a buffer is too small.
KELPLATFORM_API LONG WINAPI RegEnumKeyExA(HKEY key, DWORD index, LPSTR name, LPDWORD nameSize, LPDWORD reserved,
                                          LPSTR className, LPDWORD classSize, LPFILETIME lastWrite);

/// Gives out the value number @p index, counted from 0, in the order in which they were made. Needs KEY_QUERY_VALUE.
/// @param nameSize as for RegEnumKeyExA. @param type, data, dataSize as for RegQueryValueExA.
/// @return ERROR_NO_MORE_ITEMS behind the last one; ERROR_MORE_DATA if a buffer is too small.
KELPLATFORM_API LONG WINAPI RegEnumValueA(HKEY key, DWORD index, LPSTR name, LPDWORD nameSize, LPDWORD reserved,
                                          LPDWORD type, BYTE* data, LPDWORD dataSize);

/// Reads a value; no name or an empty one means the default value. Needs KEY_QUERY_VALUE. Data of the types 1, 2 and 7
/// is text: it comes in the code page, in as many bytes as it has there, and gets a terminator behind it if it has none
/// and there is room.
/// @param type, data may be null. @param dataSize the room at @p data; becomes the size of the data. May be null
///        without @p data.
/// @return ERROR_FILE_NOT_FOUND if there is none, with all results untouched; ERROR_MORE_DATA if the room is too small,
///         with type and size.
KELPLATFORM_API LONG WINAPI RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, BYTE* data,
                                             LPDWORD dataSize);

/// Sets a value, making it if it is missing. Needs KEY_SET_VALUE. Exactly @p dataSize bytes are taken; those of the
/// types 1, 2 and 7 are text in the code page, terminators included.
/// @return ERROR_INVALID_PARAMETER for a name of more than 16,383 16-bit units, ERROR_NOACCESS for no data with a size,
///         ERROR_NO_SYSTEM_RESOURCES for more than 1,000,000,000 bytes.
KELPLATFORM_API LONG WINAPI RegSetValueExA(HKEY key, LPCSTR name, DWORD reserved, DWORD type, const BYTE* data,
                                           DWORD dataSize);

/// Sets the default value of a subkey, which is made if it is missing, to a text with its terminator. Needs
/// KEY_SET_VALUE if the subkey is the key itself. @param type REG_SZ. @param dataSize not looked at.
KELPLATFORM_API LONG WINAPI RegSetValueA(HKEY key, LPCSTR subkey, DWORD type, LPCSTR data, DWORD dataSize);

/// Reads the default value of a subkey like RegQueryValueExA; a key without one has the empty text. Needs
/// KEY_QUERY_VALUE if the subkey is the key itself.
/// @return ERROR_FILE_NOT_FOUND if there is no such subkey.
KELPLATFORM_API LONG WINAPI RegQueryValueA(HKEY key, LPCSTR subkey, LPSTR data, PLONG dataSize);

/// Deletes a value. Needs KEY_SET_VALUE. @return ERROR_FILE_NOT_FOUND if there is none.
KELPLATFORM_API LONG WINAPI RegDeleteValueA(HKEY key, LPCSTR name);

/// Returns when all that was changed in the hive is on the disk. Needs no right.
KELPLATFORM_API LONG WINAPI RegFlushKey(HKEY key);

/// @}

} // extern "C"
