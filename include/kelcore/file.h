#pragma once

/// @file
/// Files and paths: path arithmetic and the file handle, directory search, memory-mapped files.

#include <kelcore/export.h>
#include <kelcore/platform.h>
#include <kelcore/widestring.h>

/// An open file of the system together with its full path, and the path functions as static members.
///
/// Opening takes the full set of the system's options; buffers are narrow strings used as bytes; positions, sizes and
/// regions are 64-bit byte counts. Every failing operation throws File::Exception and leaves handle and path as they
/// were; nothing is retried.
///
/// Copies share one handle, and with it the file position; the last of them to be closed or destroyed closes it.
/// Neither assignment nor a second opening closes the handle that the File held before: the File merely lets go of it,
/// so call Close first unless other copies hold it. Closing never changes the caller's last error. One File, with its
/// copies, belongs to one thread at a time.
/// @code
/// File file;
/// file.OpenForReading(path);
/// std::string bytes;
/// file.Read(bytes);
/// @endcode
///
/// Path functions: a backslash is the only separator, a drive is a letter (`iswalpha`) and a colon, two leading
/// backslashes begin a network path; a slash is an ordinary character. Extensions are compared exactly, with case. All
/// but GetFullPath, GetShortPath and CompactPath look at the text alone; none fails on odd input.
class KELCORE_API File {
public:
    /// What a failed operation of File throws, by value.
    struct KELCORE_API Exception {
        /// The system's error code (`GetLastError`) at the moment of the failure.
        unsigned long m_dwError;
        /// The system's message for that code, as it gives it (usually ending in "\r\n"); empty when it has none.
        WideString m_strMessage;
    };

    /// A closed File: no path, the invalid handle.
    File();
    /// Opens like Create.
    /// @throws Exception as Create does.
    File(const WideString& path, unsigned int access, unsigned int share, bool inheritable, unsigned int disposition,
         unsigned int flags = FILE_ATTRIBUTE_NORMAL);
    /// Holds the handle of @p other together with it.
    File(const File& other);
    /// Lets go of the handle held so far without closing it, and holds that of @p other together with it.
    File& operator=(const File& other);
    /// Close.
    virtual ~File();

    /// Opens or creates a file (`CreateFileA`; every number is passed on unchanged) and holds it with its full path. A
    /// handle held so far is let go, not closed.
    /// @param access GENERIC_READ, GENERIC_WRITE …
    /// @param share what others may do meanwhile: FILE_SHARE_READ, FILE_SHARE_WRITE …; 0 for nothing.
    /// @param inheritable whether child processes inherit the handle.
    /// @param disposition CREATE_NEW, CREATE_ALWAYS, OPEN_EXISTING, OPEN_ALWAYS or TRUNCATE_EXISTING.
    /// @param flags attributes of a new file, and FILE_FLAG_ values.
    /// @throws Exception if the system refuses; the File stays as it was.
    void Create(const WideString& path, unsigned int access, unsigned int share, bool inheritable,
                unsigned int disposition, unsigned int flags = FILE_ATTRIBUTE_NORMAL);
    /// The same as Create.
    void Open(const WideString& path, unsigned int access, unsigned int share, bool inheritable,
              unsigned int disposition, unsigned int flags = FILE_ATTRIBUTE_NORMAL);
    /// Opens an existing file to read it (Create with GENERIC_READ and OPEN_EXISTING).
    void OpenForReading(const WideString& path, unsigned int share = FILE_SHARE_READ, bool inheritable = false,
                        unsigned int flags = FILE_ATTRIBUTE_NORMAL);
    /// Opens an existing file to read and write it (Create with both rights and OPEN_EXISTING).
    void OpenForReadWrite(const WideString& path, unsigned int share = 0, bool inheritable = false,
                          unsigned int flags = FILE_ATTRIBUTE_NORMAL);
    /// Lets go of the handle, closes it if no other copy holds it (`CloseHandle`), and empties the path. Harmless on a
    /// closed File.
    void Close();
    /// Whether a handle is held.
    bool IsValid() const;

    /// Reads up to @p count bytes at the file position into @p buffer, which ends up with exactly those that arrived:
    /// none at the end of the file (`ReadFile`).
    /// @param count 0 asks for as many bytes as the whole file has by its directory entry, wherever the position is.
    ///        More than 2^32 - 1 count as that many.
    /// @return the number of bytes read.
    /// @throws std::length_error if @p count is 0 and the File holds no path; nothing has changed then.
    /// @throws Exception if the system refuses; @p buffer then has @p count bytes without meaning.
    unsigned long Read(NarrowString& buffer, unsigned long count);
    /// Reads with the count 0.
    unsigned long Read(NarrowString& buffer);
    /// Writes the bytes of @p data, NUL bytes included, at the file position (`WriteFile`, one call, which takes up to
    /// 2^32 - 1 bytes).
    /// @return the number of bytes written.
    unsigned long Write(const NarrowString& data);
    /// Has the system write what it holds back to the disk (`FlushFileBuffers`).
    void Flush();

    /// Moves the file position (`SetFilePointer`).
    /// @param method 0: @p distance counts from the start, 1: from the current position, 2: from the end.
    /// @return the new position in bytes.
    /// @throws Exception if the system refuses, also for a position whose low 32 bits are all ones, which the system's
    ///         answer does not tell from a failure.
    __int64 SetFilePos(__int64 distance, int method);
    /// The file position in bytes.
    __int64 GetFilePos() const;
    /// Reads the file's times (`GetFileTime`); a null pointer skips that time.
    void GetFileTimes(FILETIME* created, FILETIME* accessed, FILETIME* written) const;
    /// Sets the file's times (`SetFileTime`); a null pointer leaves that time.
    void SetFileTimes(const FILETIME* created, const FILETIME* accessed, const FILETIME* written);
    /// The size in the directory entry of the path held, in bytes (GetSizeRecursive): -1 for a closed File. The entry
    /// of a file that is being written may lag behind.
    __int64 GetFileSize() const;

    /// Locks @p length bytes from @p offset on against other handles (`LockFile`). On the 95 family, whose offsets have
    /// 32 bits, the high half of @p offset is passed as its sign.
    void LockRegion(__int64 offset, __int64 length);
    /// Ends a lock taken with the same offset and length (`UnlockFile`).
    void UnlockRegion(__int64 offset, __int64 length);
    /// Locks as many bytes as GetFileSize tells, from the start.
    void Lock();
    /// Unlocks as many bytes as GetFileSize tells, from the start.
    void Unlock();

    /// @name The path functions below, applied to the path held
    /// @{
    WideString GetFilePath() const; ///< The path held itself.
    WideString GetDirname() const;
    WideString GetBasename() const;
    WideString GetFileName() const; ///< The same as GetBasename.
    WideString GetFileExtension() const;
    WideString GetFileTitleA() const;
    WideString GetShortPath() const;
    /// @}

    /// The directory part: what stands before the last backslash, with the backslash if that is a drive alone. A drive
    /// root is its own directory; "." when there is no backslash. "C:\\dir\\f" gives "C:\\dir", "C:\\f" gives "C:\\".
    static WideString GetDirname(const WideString& path);
    /// The last component, up to its first NUL: the text after the last backslash, else after the drive's colon, else
    /// all of it; "\\" for a drive root. If it ends with @p ext, that is cut off.
    static WideString GetBasename(const WideString& path, const WideString& ext);
    /// The last component from its last dot on: "a.tar.gz" gives ".gz", "file." gives "."; empty without a dot.
    static WideString GetFileExtension(const WideString& path);
    /// The last component up to its last dot: ".profile" gives the empty text; the whole component without a dot.
    static WideString GetFileTitleA(const WideString& path);
    /// Cuts @p path at the last @p ext in it, or at the last dot if @p ext is empty, unless a backslash follows: with
    /// ".txt", "report.txt.bak" gives "report". Trailing NUL units of both are dropped first.
    static WideString CutExtension(const WideString& path, const WideString& ext);
    /// Replaces what CutExtension cuts off at the last dot by @p newext, which brings its own dot; adds it when there
    /// is nothing to cut. An empty path stays empty.
    static WideString SwitchExtension(const WideString& path, const WideString& newext);
    /// Joins @p dir, less its trailing backslashes, and @p name with one backslash; gives @p name for an empty @p dir.
    static WideString MakePath(const WideString& dir, const WideString& name);
    /// The absolute form of @p path (`GetFullPathNameA`), of any length; @p path itself if the system refuses.
    static WideString GetFullPath(const WideString& path);
    /// The short (8.3) form of the path of an existing file (`GetShortPathNameA`); empty if the system refuses.
    static WideString GetShortPath(const WideString& path);
    /// @p path with an ellipsis in place of what exceeds @p maxchars narrow characters (`PathCompactPathExA`); empty if
    /// the system refuses.
    static WideString CompactPath(const WideString& path, unsigned int maxchars);
    /// Whether @p path, up to its first NUL, is a letter, a colon and a backslash.
    static bool IsDriveRoot(const WideString& path);
    /// Whether @p path begins with a letter, a colon and a backslash, or with two backslashes.
    static bool IsPathAbsolute(const WideString& path);

    /// Whether @p path names an existing file or folder (`GetFileAttributesA`).
    static bool FileExists(const WideString& path);
    /// The size in bytes of a file, or of all files in a folder and the folders below it. A path with wildcards gives
    /// that of its first match.
    /// @return -1 for an empty path, 0 for a missing one; a folder that cannot be read adds nothing.
    static __int64 GetSizeRecursive(const WideString& path);

protected:
    /// The handle held, the invalid one (all bits set) when closed; it stays this File's.
    void* GetHandle() const;
    /// Throws an Exception for the calling thread's last error.
    [[noreturn]] void ThrowException();
    /// Adds the sizes of all files in the folder @p path and the folders below it to @p total.
    static void GetDirSize(const WideString& path, __int64& total);

private:
    void Hold(void* handle, WideString path);

    WideString m_strPath;
    void* m_hFile;
};

/// One directory entry as the directory search of the system reports it: the fields of its wide record, in order.
class KELCORE_API FileData {
public:
    /// All zero.
    FileData();
    FileData(const FileData& other);
    FileData& operator=(const FileData& other);
    /// Takes an entry of the narrow search; the names are converted from the ANSI code page. The reserved words stay.
    const FileData& operator=(const WIN32_FIND_DATAA& entry);

    /// Whether attributes, names, creation time, last write time and size are equal; names without regard to case
    /// (`_wcsicmp`). The last access time does not count.
    bool operator==(const FileData& other) const;
    /// The negation of ==.
    bool operator!=(const FileData& other) const;

    /// The name without its directory.
    WideString GetFileName() const;
    /// The 8.3 name; the name when it already is one.
    WideString GetShortFileName() const;
    /// The name from its last dot on, empty without a dot.
    WideString GetFileExtension() const;
    /// The size in bytes.
    __int64 GetFileSize() const;
    FILETIME GetCreationTime() const;
    FILETIME GetLastAccessTime() const;
    FILETIME GetLastWriteTime() const;

    bool IsReadOnly() const;
    bool IsHidden() const;
    bool IsSystem() const;
    bool IsDirectory() const;
    bool IsArchived() const;
    bool IsCompressed() const;
    /// Whether this is the entry "." or ".." of a directory.
    bool IsDots() const;

private:
    unsigned __int32 m_dwAttributes;
    FILETIME m_ftCreation;
    FILETIME m_ftLastAccess;
    FILETIME m_ftLastWrite;
    unsigned __int32 m_dwSizeHigh;
    unsigned __int32 m_dwSizeLow;
    [[maybe_unused]] unsigned __int32 m_dwReserved[2];
    unsigned short m_szName[260];
    unsigned short m_szShortName[14];
};

/// Walks the entries that match a wildcard pattern; the object itself is the current entry.
///
/// It owns the search and ends it in Reset or with its life; it cannot be copied. Nothing throws but allocation: a
/// failed search answers false.
/// @code
/// FileFinder finder;
/// for (bool found = finder.Start(pattern, false); found; found = finder.Next())
///     Visit(finder.GetFilePath());
/// @endcode
class KELCORE_API FileFinder : public FileData {
public:
    /// No search, an empty entry.
    FileFinder();
    /// Starts a search like Start.
    FileFinder(const WideString& pattern, bool withdots);
    FileFinder(const FileFinder&) = delete;
    FileFinder& operator=(const FileFinder&) = delete;
    /// Reset.
    ~FileFinder();

    /// Ends the search (`FindClose`) and clears the current entry; the caller's last error stays.
    void Reset();
    /// Begins a search (`FindFirstFileA`). Call Reset first if one is under way: it is not ended here.
    /// @param withdots whether the leading entries "." and ".." of a directory are shown.
    /// @return whether there is an entry, which then is the current one.
    bool Start(const WideString& pattern, bool withdots);
    /// Goes to the next entry (`FindNextFileA`).
    /// @return whether there is one; if not, the current entry stays.
    bool Next();

    /// The path of the current entry: the directory part of the pattern joined with the name.
    WideString GetFilePath() const;
    /// The name of the current entry without its extension.
    WideString GetFileTitleA() const;
    /// The short (8.3) form of GetFilePath.
    WideString GetShortPath() const;

private:
    void* m_hSearch;
    WideString m_strDirectory;
    bool m_bFound;
};

/// A whole existing file as bytes in memory, to read or to read and write; the file is locked against all other use
/// meanwhile.
///
/// Opening never throws (but for allocation): an object for a missing or locked file, an empty file or one of 4 GiB and
/// more is empty: null, size 0. The system's last error then tells why. Copies share the mapping and the last of them
/// ends it; ending it leaves the caller's last error alone.
class KELCORE_API MemoryMappedFile {
public:
    /// Maps the file at @p path; bytes written through the pointer change the file if @p writable.
    MemoryMappedFile(const WideString& path, bool writable);
    /// Shares the mapping of @p other.
    MemoryMappedFile(const MemoryMappedFile& other);
    /// Lets go of the own mapping, ending it if no copy holds it, and shares that of @p other.
    MemoryMappedFile& operator=(const MemoryMappedFile& other);
    /// Lets go of the mapping.
    ~MemoryMappedFile();

    /// The first byte, null when nothing is mapped. Writing through it needs a writable mapping.
    operator char*();
    /// The first byte, null when nothing is mapped.
    operator const char*() const;
    /// The size of the file in bytes, 0 when nothing is mapped.
    unsigned __int32 getSize();

private:
    bool map(bool writable);
    void unmap();

    void* m_hFile;
    void* m_hMapping;
    char* m_pView;
    unsigned __int32 m_dwSize;
};
