#pragma once

/// @file
/// Files: opening with the sharing rules of Windows, transfer, position, size, times and byte-range locks.
///
/// Share modes and byte-range locks hold between all handles of all processes that use this layer on one machine. They
/// rest on open-file-description locks of the host; on a file system without them nothing is enforced.

#include <kelcore/platform/base.h>

/// @name Access rights
/// @{
#define GENERIC_READ 0x80000000u
#define GENERIC_WRITE 0x40000000u
#define GENERIC_EXECUTE 0x20000000u
#define GENERIC_ALL 0x10000000u
#define MAXIMUM_ALLOWED 0x02000000u
#define ACCESS_SYSTEM_SECURITY 0x01000000u
#define DELETE 0x00010000
#define READ_CONTROL 0x00020000
#define WRITE_DAC 0x00040000
#define WRITE_OWNER 0x00080000
#define SYNCHRONIZE 0x00100000
#define FILE_READ_DATA 0x0001
#define FILE_LIST_DIRECTORY 0x0001
#define FILE_WRITE_DATA 0x0002
#define FILE_ADD_FILE 0x0002
#define FILE_APPEND_DATA 0x0004
#define FILE_ADD_SUBDIRECTORY 0x0004
#define FILE_READ_EA 0x0008
#define FILE_WRITE_EA 0x0010
#define FILE_EXECUTE 0x0020
#define FILE_TRAVERSE 0x0020
#define FILE_DELETE_CHILD 0x0040
#define FILE_READ_ATTRIBUTES 0x0080
#define FILE_WRITE_ATTRIBUTES 0x0100
#define FILE_ALL_ACCESS 0x001F01FF
#define FILE_GENERIC_READ 0x00120089
#define FILE_GENERIC_WRITE 0x00120116
#define FILE_GENERIC_EXECUTE 0x001200A0
/// @}

/// @name Share modes
/// @{
#define FILE_SHARE_READ 0x00000001
#define FILE_SHARE_WRITE 0x00000002
#define FILE_SHARE_DELETE 0x00000004
/// @}

/// @name Dispositions
/// @{
#define CREATE_NEW 1
#define CREATE_ALWAYS 2
#define OPEN_EXISTING 3
#define OPEN_ALWAYS 4
#define TRUNCATE_EXISTING 5
/// @}

/// @name Attributes
/// @{
#define FILE_ATTRIBUTE_READONLY 0x00000001
#define FILE_ATTRIBUTE_HIDDEN 0x00000002
#define FILE_ATTRIBUTE_SYSTEM 0x00000004
#define FILE_ATTRIBUTE_DIRECTORY 0x00000010
#define FILE_ATTRIBUTE_ARCHIVE 0x00000020
#define FILE_ATTRIBUTE_DEVICE 0x00000040
#define FILE_ATTRIBUTE_NORMAL 0x00000080
#define FILE_ATTRIBUTE_TEMPORARY 0x00000100
#define FILE_ATTRIBUTE_SPARSE_FILE 0x00000200
#define FILE_ATTRIBUTE_REPARSE_POINT 0x00000400
#define FILE_ATTRIBUTE_COMPRESSED 0x00000800
#define FILE_ATTRIBUTE_OFFLINE 0x00001000
#define FILE_ATTRIBUTE_NOT_CONTENT_INDEXED 0x00002000
#define FILE_ATTRIBUTE_ENCRYPTED 0x00004000
#define INVALID_FILE_ATTRIBUTES (static_cast<DWORD>(-1))
/// @}

/// @name Flags of CreateFileA
/// @{
#define FILE_FLAG_WRITE_THROUGH 0x80000000u
#define FILE_FLAG_OVERLAPPED 0x40000000u
#define FILE_FLAG_NO_BUFFERING 0x20000000u
#define FILE_FLAG_RANDOM_ACCESS 0x10000000u
#define FILE_FLAG_SEQUENTIAL_SCAN 0x08000000u
#define FILE_FLAG_DELETE_ON_CLOSE 0x04000000u
#define FILE_FLAG_BACKUP_SEMANTICS 0x02000000u
#define FILE_FLAG_POSIX_SEMANTICS 0x01000000u
#define FILE_FLAG_OPEN_REPARSE_POINT 0x00200000u
#define FILE_FLAG_OPEN_NO_RECALL 0x00100000u
/// @}

/// @name Methods and results of positioning
/// @{
#define FILE_BEGIN 0
#define FILE_CURRENT 1
#define FILE_END 2
#define INVALID_SET_FILE_POINTER (static_cast<DWORD>(-1))
#define INVALID_FILE_SIZE (static_cast<DWORD>(-1))
/// @}

/// @name Flags of LockFileEx
/// @{
#define LOCKFILE_FAIL_IMMEDIATELY 0x00000001
#define LOCKFILE_EXCLUSIVE_LOCK 0x00000002
/// @}

/// A file offset for one transfer or lock, in two halves.
typedef struct _OVERLAPPED {
    ULONG_PTR Internal;     ///< receives 0 when a transfer has succeeded
    ULONG_PTR InternalHigh; ///< receives the number of bytes transferred
    DWORD Offset;
    DWORD OffsetHigh;
    HANDLE hEvent; ///< null: a transfer is over when its call returns
} OVERLAPPED, *LPOVERLAPPED;

/// What GetFileInformationByHandle tells.
typedef struct _BY_HANDLE_FILE_INFORMATION {
    DWORD dwFileAttributes;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    DWORD dwVolumeSerialNumber; ///< the host's device number
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
    DWORD nNumberOfLinks;
    DWORD nFileIndexHigh;
    DWORD nFileIndexLow;
} BY_HANDLE_FILE_INFORMATION, *LPBY_HANDLE_FILE_INFORMATION;

extern "C" {

/// Opens or creates a file, or opens a folder, and returns a handle that the caller closes with CloseHandle.
///
/// - @p disposition CREATE_ALWAYS and OPEN_ALWAYS set the last error to ERROR_ALREADY_EXISTS when the file was there
///   before and to 0 when it was not; every other success sets it to 0.
/// - @p access 0, and attribute rights alone, open without taking part in the share modes; so do folders.
/// - A write handle needs a file that is not read-only, for the superuser too. FILE_ATTRIBUTE_READONLY in @p flags
/// makes
///   a new file read-only, but for the handle that creates it. Other attributes of @p flags are accepted and not
///   stored: whether a file is hidden follows from its name here, and is no condition of replacing it.
/// - FILE_FLAG_BACKUP_SEMANTICS opens folders; DELETE_ON_CLOSE removes the file with the object's last handle;
///   WRITE_THROUGH makes each write reach the disk; SEQUENTIAL_SCAN and RANDOM_ACCESS are passed to the host as advice;
///   NO_BUFFERING, POSIX_SEMANTICS and OPEN_NO_RECALL are accepted without effect. OVERLAPPED makes an OVERLAPPED
///   argument obligatory for transfers, which are still complete when the call returns.
/// - The name NUL, in any case, opens the device that swallows what is written and is empty when read. No other device
///   name is known.
/// - A file that may be written but not read on the host takes no part in the share modes.
///
/// @param security null, or tells whether the handle is inheritable; descriptors are not looked at.
/// @param pattern must be null (else ERROR_NOT_SUPPORTED).
/// @return INVALID_HANDLE_VALUE on failure, with ERROR_FILE_NOT_FOUND; ERROR_PATH_NOT_FOUND (a folder on the way, an
///         empty name); ERROR_INVALID_NAME (a file's name with a separator at its end); ERROR_ACCESS_DENIED (a folder
///         without BACKUP_SEMANTICS, a read-only file to be written or deleted, the host's rules);
///         ERROR_SHARING_VIOLATION; ERROR_FILE_EXISTS (CREATE_NEW, or a folder to be replaced); ERROR_USER_MAPPED_FILE
///         (a file to be emptied of which this process has a mapping); ERROR_INVALID_PARAMETER (an unknown disposition
///         or share mode, TRUNCATE_EXISTING without GENERIC_WRITE); ERROR_NOT_SUPPORTED (OPEN_REPARSE_POINT on a
///         symbolic link); ERROR_PRIVILEGE_NOT_HELD (ACCESS_SYSTEM_SECURITY); ERROR_TOO_MANY_OPEN_FILES;
///         ERROR_DISK_FULL.
KELPLATFORM_API HANDLE WINAPI CreateFileA(LPCSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                                          DWORD disposition, DWORD flags, HANDLE pattern);

/// Reads up to @p count bytes at the file position and moves it. Fewer arrive only at the end of the file and from
/// pipes and terminals; none, with success, at the end itself.
/// @param overlapped null, or gives the position to read at, and receives the result; the end of the file is then a
///        failure with ERROR_HANDLE_EOF.
/// @return FALSE with ERROR_ACCESS_DENIED (no right to read), ERROR_LOCK_VIOLATION (another handle has locked some of
/// the
///         bytes), ERROR_INVALID_FUNCTION (a folder), ERROR_NOACCESS (a buffer that cannot be written).
KELPLATFORM_API BOOL WINAPI ReadFile(HANDLE file, LPVOID buffer, DWORD count, LPDWORD read, LPOVERLAPPED overlapped);

/// Writes @p count bytes at the file position and moves it; a handle with FILE_APPEND_DATA as its only right to write
/// always writes at the end.
/// @param overlapped null, or gives the position to write at, with both halves 0xFFFFFFFF for the end.
/// @return FALSE with ERROR_ACCESS_DENIED, ERROR_LOCK_VIOLATION, ERROR_DISK_FULL, ERROR_DISK_QUOTA_EXCEEDED,
///         ERROR_FILE_TOO_LARGE, ERROR_NO_DATA (a pipe that nobody reads). Some bytes may have been written then: @p
///         written tells how many.
KELPLATFORM_API BOOL WINAPI WriteFile(HANDLE file, LPCVOID buffer, DWORD count, LPDWORD written,
                                      LPOVERLAPPED overlapped);

/// Writes what the system holds back of the file to the disk.
/// @return FALSE with ERROR_ACCESS_DENIED for a handle without the right to write.
KELPLATFORM_API BOOL WINAPI FlushFileBuffers(HANDLE file);

/// Moves the file position; it may lie past the end. Needs a right to the contents (else ERROR_ACCESS_DENIED).
/// @param low, high the signed distance; without @p high, @p low alone is it. @p high receives the upper half.
/// @return the lower half of the new position. INVALID_SET_FILE_POINTER is a failure if the last error is not 0 (a
///         success sets it to 0 then): ERROR_NEGATIVE_SEEK; ERROR_INVALID_PARAMETER for an unknown @p method, for a
///         position past what the host can hold, and for one of more than 32 bits without @p high. The position stays.
KELPLATFORM_API DWORD WINAPI SetFilePointer(HANDLE file, LONG low, PLONG high, DWORD method);

/// Moves the file position like SetFilePointer. @param position null, or receives the new one.
KELPLATFORM_API BOOL WINAPI SetFilePointerEx(HANDLE file, LARGE_INTEGER distance, PLARGE_INTEGER position,
                                             DWORD method);

/// Cuts or extends the file at the position; bytes between the old end and the new one are zero.
/// @return FALSE with ERROR_ACCESS_DENIED for a handle without the right to write, ERROR_USER_MAPPED_FILE when a
/// mapping
///         made with this handle would lose bytes.
KELPLATFORM_API BOOL WINAPI SetEndOfFile(HANDLE file);

/// The lower half of the file's size. @param high null, or receives the upper half.
/// @return INVALID_FILE_SIZE is a failure if the last error is not 0; a success sets it to 0 then.
KELPLATFORM_API DWORD WINAPI GetFileSize(HANDLE file, LPDWORD high);

/// The file's size.
KELPLATFORM_API BOOL WINAPI GetFileSizeEx(HANDLE file, PLARGE_INTEGER size);

/// The file's times; null pointers are skipped. The time of creation is the host's time of birth or, where a file
/// system keeps none, the earliest of the others.
KELPLATFORM_API BOOL WINAPI GetFileTime(HANDLE file, LPFILETIME created, LPFILETIME accessed, LPFILETIME written);

/// Sets the file's times; null pointers, zero times and times with all bits set leave theirs as it is. The host cannot
/// set a time of creation: it is accepted and not kept, as on other file systems without one.
/// @return FALSE with ERROR_ACCESS_DENIED for a handle without FILE_WRITE_ATTRIBUTES and for another user's file,
///         ERROR_INVALID_PARAMETER for a time past the year 30827.
KELPLATFORM_API BOOL WINAPI SetFileTime(HANDLE file, const FILETIME* created, const FILETIME* accessed,
                                        const FILETIME* written);

/// All facts about an open file or folder.
KELPLATFORM_API BOOL WINAPI GetFileInformationByHandle(HANDLE file, LPBY_HANDLE_FILE_INFORMATION information);

/// -1, 0 or 1 as @p first is earlier than, equal to or later than @p second.
KELPLATFORM_API LONG WINAPI CompareFileTime(const FILETIME* first, const FILETIME* second);

/// Locks @p length bytes from an offset, which may lie past the end, against every other handle: nobody else can lock,
/// read or write them. Locks are not inherited and end with the object's last handle. A lock of no bytes
/// keeps off the ranges that have its offset inside.
/// @return FALSE with ERROR_LOCK_VIOLATION when a byte is locked already, by this handle too; ERROR_ACCESS_DENIED for a
///         handle that can neither read nor write; ERROR_INVALID_PARAMETER when the range passes 2^64.
///
/// Bytes from 2^63 - 256 on exist for locking only: those locks hold inside the process. A read-only handle on a file
/// that the user may not write locks exclusively inside the process and shared towards others.
KELPLATFORM_API BOOL WINAPI LockFile(HANDLE file, DWORD offsetLow, DWORD offsetHigh, DWORD lengthLow, DWORD lengthHigh);

/// Ends a lock. The range must be one that was locked as a whole.
/// @return FALSE with ERROR_NOT_LOCKED otherwise.
KELPLATFORM_API BOOL WINAPI UnlockFile(HANDLE file, DWORD offsetLow, DWORD offsetHigh, DWORD lengthLow,
                                       DWORD lengthHigh);

/// Locks like LockFile, from the offset in @p overlapped. Without LOCKFILE_EXCLUSIVE_LOCK the lock is shared: others
/// may lock shared and read, nobody may write, this handle included. A shared lock may lie over this handle's own
/// exclusive one. Without LOCKFILE_FAIL_IMMEDIATELY the call waits for the bytes.
KELPLATFORM_API BOOL WINAPI LockFileEx(HANDLE file, DWORD flags, DWORD reserved, DWORD lengthLow, DWORD lengthHigh,
                                       LPOVERLAPPED overlapped);

/// Ends a lock like UnlockFile; of an exclusive and a shared lock on the same range the exclusive one goes first.
KELPLATFORM_API BOOL WINAPI UnlockFileEx(HANDLE file, DWORD reserved, DWORD lengthLow, DWORD lengthHigh,
                                         LPOVERLAPPED overlapped);

} // extern "C"
