#pragma once

/// @file
/// Folders: search with wildcards, attributes, making and removing, moving and copying.
///
/// What the host does not keep follows from what it has: a file or folder is read-only when nobody may write it, hidden
/// when its name begins with a dot; every plain file has the archive bit; nothing is a system file or compressed.
/// Pipes, sockets and devices have FILE_ATTRIBUTE_DEVICE and no size. See docs/platform-differences.md for links and
/// names.

#include <kelcore/platform/files.h>

#define IO_REPARSE_TAG_SYMLINK 0xA000000Cu

/// @name Flags of MoveFileExA
/// @{
#define MOVEFILE_REPLACE_EXISTING 0x00000001
#define MOVEFILE_COPY_ALLOWED 0x00000002
#define MOVEFILE_DELAY_UNTIL_REBOOT 0x00000004
#define MOVEFILE_WRITE_THROUGH 0x00000008
/// @}

/// One entry of a folder. There are no short names: cAlternateFileName is empty.
typedef struct _WIN32_FIND_DATAA {
    DWORD dwFileAttributes;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
    DWORD dwReserved0; ///< IO_REPARSE_TAG_SYMLINK for an entry with FILE_ATTRIBUTE_REPARSE_POINT, else 0
    DWORD dwReserved1;
    CHAR cFileName[MAX_PATH];
    CHAR cAlternateFileName[14];
} WIN32_FIND_DATAA, *PWIN32_FIND_DATAA, *LPWIN32_FIND_DATAA;
static_assert(sizeof(WIN32_FIND_DATAA) == 320, "the record has the size it has on Windows");

/// The wide form of the record; no call of the layer fills it.
typedef struct _WIN32_FIND_DATAW {
    DWORD dwFileAttributes;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
    DWORD dwReserved0;
    DWORD dwReserved1;
    WCHAR cFileName[MAX_PATH];
    WCHAR cAlternateFileName[14];
} WIN32_FIND_DATAW, *PWIN32_FIND_DATAW, *LPWIN32_FIND_DATAW;
static_assert(sizeof(WIN32_FIND_DATAW) == 592, "the record has the size it has on Windows");

typedef enum _GET_FILEEX_INFO_LEVELS { GetFileExInfoStandard, GetFileExMaxInfoLevel } GET_FILEEX_INFO_LEVELS;

typedef struct _WIN32_FILE_ATTRIBUTE_DATA {
    DWORD dwFileAttributes;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
} WIN32_FILE_ATTRIBUTE_DATA, *LPWIN32_FILE_ATTRIBUTE_DATA;

extern "C" {

/// Begins a search for the entries of one folder that match the last component of @p pattern, and gives the first. A
/// pattern without wildcards names one entry. "." and ".." come first, save in the root, then the host's order. Entries
/// that come or go during a search may or may not be met.
///
/// Wildcards, without regard to case: "*" any characters; "?" one character, or none at the end of a name or before a
/// dot; "*.*" every name; a dot before a wildcard also matches nothing at the end of a name; "*." names without a dot.
/// Dots and spaces at the end of other patterns are dropped. The DOS wildcards < > " are understood too.
/// @return the search, closed by FindClose, or INVALID_HANDLE_VALUE with ERROR_FILE_NOT_FOUND (nothing matches; a
/// pattern
///         that ends in a separator; a root without a pattern), ERROR_PATH_NOT_FOUND (no such folder, an empty
///         pattern), ERROR_DIRECTORY (a file in place of the folder), ERROR_INVALID_NAME, ERROR_ACCESS_DENIED.
KELPLATFORM_API HANDLE WINAPI FindFirstFileA(LPCSTR pattern, LPWIN32_FIND_DATAA entry);

/// Gives the next entry of a search.
/// @return FALSE with ERROR_NO_MORE_FILES at the end, ERROR_INVALID_HANDLE for what is no search; @p entry is left
/// alone.
KELPLATFORM_API BOOL WINAPI FindNextFileA(HANDLE search, LPWIN32_FIND_DATAA entry);

/// Ends a search. @return FALSE with ERROR_INVALID_HANDLE for what is no search.
KELPLATFORM_API BOOL WINAPI FindClose(HANDLE search);

/// The attributes of a file or folder, FILE_ATTRIBUTE_NORMAL if there are none. Links are followed.
/// @return INVALID_FILE_ATTRIBUTES with ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, ERROR_BAD_NETPATH or
///         ERROR_INVALID_NAME.
KELPLATFORM_API DWORD WINAPI GetFileAttributesA(LPCSTR path);

/// Attributes, times and size of a file or folder; links are followed.
/// @param level GetFileExInfoStandard. @param data a WIN32_FILE_ATTRIBUTE_DATA.
/// @return FALSE as GetFileAttributesA, and with ERROR_INVALID_PARAMETER for another level.
KELPLATFORM_API BOOL WINAPI GetFileAttributesExA(LPCSTR path, GET_FILEEX_INFO_LEVELS level, LPVOID data);

/// Makes a file or folder read-only (nobody may write it) or writable again (its owner may), as FILE_ATTRIBUTE_READONLY
/// says. NORMAL, ARCHIVE, TEMPORARY, NOT_CONTENT_INDEXED and REPARSE_POINT are accepted and not stored.
/// @return FALSE as GetFileAttributesA; with ERROR_NOT_SUPPORTED, and nothing changed, for a hidden bit that does not
///         agree with the name and for attributes that the host does not have; ERROR_INVALID_PARAMETER for the
///         directory bit on a file; ERROR_ACCESS_DENIED.
KELPLATFORM_API BOOL WINAPI SetFileAttributesA(LPCSTR path, DWORD attributes);

/// Makes a folder, open to those whom the process's mask allows. @param security not looked at.
/// @return FALSE with ERROR_ALREADY_EXISTS (a file counts), ERROR_PATH_NOT_FOUND, ERROR_ACCESS_DENIED,
/// ERROR_INVALID_NAME.
KELPLATFORM_API BOOL WINAPI CreateDirectoryA(LPCSTR path, LPSECURITY_ATTRIBUTES security);

/// Removes an empty folder, or a link to a folder (the folder itself then stays).
/// @return FALSE with ERROR_DIR_NOT_EMPTY, ERROR_DIRECTORY (no folder), ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND,
///         ERROR_ACCESS_DENIED (a read-only one), ERROR_SHARING_VIOLATION (the current directory as ".").
KELPLATFORM_API BOOL WINAPI RemoveDirectoryA(LPCSTR path);

/// Removes a file, or a link (what it leads to stays). The name goes at once; handles opened with FILE_SHARE_DELETE
/// keep the contents.
/// @return FALSE with ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, ERROR_ACCESS_DENIED (a folder, a device, a read-only
///         file), ERROR_SHARING_VIOLATION (open without FILE_SHARE_DELETE).
KELPLATFORM_API BOOL WINAPI DeleteFileA(LPCSTR path);

/// Renames or moves a file or folder, as MoveFileExA with MOVEFILE_COPY_ALLOWED.
KELPLATFORM_API BOOL WINAPI MoveFileA(LPCSTR from, LPCSTR to);

/// Renames or moves a file or folder; a link is moved itself.
/// - MOVEFILE_REPLACE_EXISTING replaces a file in one step: at every moment one of the two is there under its name.
/// - MOVEFILE_COPY_ALLOWED copies a file to another file system and removes the original then; a folder never moves
/// there.
/// - MOVEFILE_WRITE_THROUGH returns when the new name is on the disk.
/// @return FALSE with ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND; ERROR_ALREADY_EXISTS (without REPLACE_EXISTING);
///         ERROR_ACCESS_DENIED (replacing a folder, a read-only file, or one that is open without FILE_SHARE_DELETE);
///         ERROR_SHARING_VIOLATION (the original is open without FILE_SHARE_DELETE); ERROR_NOT_SAME_DEVICE;
///         ERROR_NOT_SUPPORTED for MOVEFILE_DELAY_UNTIL_REBOOT and flags not named here.
KELPLATFORM_API BOOL WINAPI MoveFileExA(LPCSTR from, LPCSTR to, DWORD flags);

/// Copies a plain file with its times of access and change, its attributes and its permissions. Links are followed.
/// When the copy fails underway, the incomplete file is removed.
/// @return FALSE with ERROR_FILE_EXISTS (if @p failIfExists), ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND,
///         ERROR_ACCESS_DENIED (a folder on either side, a read-only target), ERROR_SHARING_VIOLATION (another handle
///         is in the way; both names mean one file), ERROR_DISK_FULL, ERROR_NOT_SUPPORTED for what is no file.
KELPLATFORM_API BOOL WINAPI CopyFileA(LPCSTR from, LPCSTR to, BOOL failIfExists);

} // extern "C"
