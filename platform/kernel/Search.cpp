#include "platform/kernel/Attributes.h"
#include "platform/kernel/Descriptor.h"
#include "platform/kernel/Faults.h"
#include "platform/kernel/FullPath.h"
#include "platform/kernel/Handles.h"
#include "platform/kernel/HostNames.h"
#include "platform/kernel/HostPath.h"
#include "platform/kernel/HostText.h"
#include "platform/kernel/LastError.h"
#include "platform/kernel/Wildcards.h"

#include <algorithm>
#include <dirent.h>
#include <fcntl.h>
#include <mutex>
#include <sys/stat.h>

namespace kel::platform {
namespace {

bool TellEntry(const EntryFacts& facts, std::string_view utf8, WIN32_FIND_DATAA& entry) {
    std::string room;
    const std::string_view name = AnsiFromUtf8(utf8, room);
    if (name.size() >= sizeof entry.cFileName)
        return Fail(ERROR_FILENAME_EXCED_RANGE);
    TellFacts(facts, entry);
    entry.dwReserved0 = facts.attributes & FILE_ATTRIBUTE_REPARSE_POINT ? IO_REPARSE_TAG_SYMLINK : 0;
    entry.dwReserved1 = 0;
    entry.cFileName[name.copy(entry.cFileName, name.size())] = '\0';
    entry.cAlternateFileName[0] = '\0';
    return true;
}

bool IsDots(std::string_view name) {
    return name == "." || name == "..";
}

// A search under way. Entries are looked at one by one, as they are asked for.
class Search final : public Object {
public:
    static constexpr ObjectKind kKind = ObjectKind::Search;

    // A search whose one entry is already given.
    Search() : Object(kKind), m_pattern("*") {}

    Search(Descriptor folder, std::string_view pattern, bool isRoot)
        : Object(kKind), m_folder(std::move(folder)), m_pattern(pattern),
          m_dotsGiven(isRoot || !m_pattern.MatchesDots() ? 2 : 0),
          m_block(std::make_unique_for_overwrite<char[]>(kBlockSize)) {}

    bool Next(WIN32_FIND_DATAA& entry) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        while (m_dotsGiven < 2) {
            const char* dots = m_dotsGiven++ == 0 ? "." : "..";
            if (Tell(dots, dots, DT_DIR, entry))
                return true;
        }
        std::string room;
        while (const dirent64* found = NextOfHost()) {
            const std::string_view name = HostNameToWin32(found->d_name, room);
            if (IsDots(name) || !m_pattern.Matches(name))
                continue;
            m_vanished = false;
            if (Tell(found->d_name, name, found->d_type, entry))
                return true;
            if (!m_vanished)
                return false;
        }
        return false;
    }

private:
    // Enough for some hundred names; the host gives what fits in one call.
    static constexpr std::size_t kBlockSize = 32 * 1024;

    bool Tell(const char* hostName, std::string_view name, unsigned char type, WIN32_FIND_DATAA& entry) {
        EntryFacts facts;
        const int error = ListedFacts(m_folder.Get(), hostName, facts);
        m_vanished = error == ENOENT;
        if (m_vanished)
            return false;
        // A folder may be readable and yet keep the facts about its entries to itself; the names are still there.
        if (error != 0)
            facts.attributes = type == DT_DIR ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_ARCHIVE;
        return TellEntry(facts, name, entry);
    }

    const dirent64* NextOfHost() {
        if (m_next == m_end && !ReadBlock())
            return nullptr;
        const auto* found = reinterpret_cast<const dirent64*>(m_block.get() + m_next);
        m_next += found->d_reclen;
        return found;
    }

    bool ReadBlock() {
        const ssize_t size = !m_folder ? 0 : getdents64(m_folder.Get(), m_block.get(), kBlockSize);
        if (size < 0)
            return FailFromHost();
        m_next = 0;
        m_end = static_cast<std::size_t>(size);
        return size != 0 || Fail(ERROR_NO_MORE_FILES);
    }

    std::mutex m_mutex;
    const Descriptor m_folder;
    const NamePattern m_pattern;
    int m_dotsGiven = 2;
    bool m_vanished = false; // the last entry went away between the host's list and the look at it
    std::unique_ptr<char[]> m_block;
    std::size_t m_next = 0;
    std::size_t m_end = 0;
};

using SearchPointer = std::shared_ptr<Search>;

SearchPointer Refuse(DWORD error) {
    Fail(error);
    return nullptr;
}

// Where the last component of the path begins.
std::size_t NameStart(std::string_view path) {
    const std::size_t separator = path.find_last_of("\\/");
    if (separator != std::string_view::npos)
        return separator + 1;
    return path.size() >= 2 && path[1] == ':' ? 2 : 0;
}

// Resolves a path so that the host path ends in the thing's own name: "." and ".." say nothing about it.
DWORD ResolveNamed(const std::string& path, std::string& host, struct stat& existing) {
    const DWORD error = ResolveHostPath(path, host, existing);
    std::string full;
    if (error != 0 || !IsDots(LastComponent(host)))
        return error;
    return FullPath(path, full) ? ResolveHostPath(full, host, existing) : GetLastError();
}

SearchPointer FindOne(const std::string& path, WIN32_FIND_DATAA& entry) {
    std::string host;
    struct stat existing;
    if (const DWORD error = ResolveNamed(path, host, existing))
        return Refuse(error);
    if (existing.st_mode == 0 || host == "/")
        return Refuse(ERROR_FILE_NOT_FOUND);
    EntryFacts facts;
    if (const int error = ListedFacts(AT_FDCWD, host.c_str(), facts))
        return Refuse(ErrorFromHost(error));
    const std::string name = IsNullDevice(path) ? path : HostNameToWin32(LastComponent(host));
    return TellEntry(facts, name, entry) ? std::make_shared<Search>() : nullptr;
}

Descriptor OpenHostFolder(const std::string& host) {
    return Descriptor(open(host.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

// The folder spelled otherwise than on the host, or not there.
Descriptor OpenFolderIgnoringCase(std::string_view path, std::string& host) {
    while (!path.empty() && IsSeparator(path.back()))
        path.remove_suffix(1);
    struct stat existing;
    if (const DWORD error = ResolveHostPath(path, host, existing)) {
        Fail(error);
        return {};
    }
    Descriptor folder = existing.st_mode == 0 ? Descriptor() : OpenHostFolder(host);
    if (existing.st_mode == 0)
        Fail(ERROR_PATH_NOT_FOUND);
    else if (!folder)
        Fail(errno == ENOTDIR ? ERROR_DIRECTORY : ErrorFromHost(errno));
    return folder;
}

// Opens the folder that stands before a pattern. @return none with the last error set on failure.
Descriptor OpenFolder(std::string_view path, std::string& host) {
    if (path.empty())
        path = ".";
    if (const DWORD error = TranslateHostPath(path, host)) {
        Fail(error);
        return {};
    }
    if (Descriptor folder = OpenHostFolder(host))
        return folder;
    if (errno == ENOENT || errno == ENOTDIR)
        return OpenFolderIgnoringCase(path, host);
    FailFromHost();
    return {};
}

bool IsRoot(int folder, const std::string& host) {
    struct stat here;
    struct stat root;
    // Only paths of dots can mean the root under another name, save for links.
    return host == "/" || (host.find_first_not_of("./") == std::string::npos && fstat(folder, &here) == 0 &&
                           stat("/", &root) == 0 && here.st_dev == root.st_dev && here.st_ino == root.st_ino);
}

bool CanBePattern(std::string_view name) {
    return name.find_first_of(":|") == std::string_view::npos &&
           std::all_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x20; });
}

SearchPointer FindMatching(std::string_view folderPath, std::string_view pattern, WIN32_FIND_DATAA& entry) {
    if (!CanBePattern(pattern))
        return Refuse(ERROR_INVALID_NAME);
    std::string host;
    Descriptor folder = OpenFolder(folderPath, host);
    if (!folder)
        return nullptr;
    const bool isRoot = IsRoot(folder.Get(), host);
    auto search = std::make_shared<Search>(std::move(folder), pattern, isRoot);
    if (search->Next(entry))
        return search;
    return GetLastError() == ERROR_NO_MORE_FILES ? Refuse(ERROR_FILE_NOT_FOUND) : nullptr;
}

SearchPointer BeginSearch(const std::string& path, WIN32_FIND_DATAA& entry) {
    const std::size_t start = NameStart(path);
    const std::string_view name = std::string_view(path).substr(start);
    if (name.empty())
        return Refuse(path.empty() ? ERROR_PATH_NOT_FOUND : ERROR_FILE_NOT_FOUND);
    if (!NamePattern::HasWildcards(name))
        return FindOne(path, entry);
    return FindMatching(std::string_view(path).substr(0, start), name, entry);
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

HANDLE WINAPI FindFirstFileA(LPCSTR pattern, LPWIN32_FIND_DATAA entry) {
    if (CallFails("FindFirstFileA"))
        return INVALID_HANDLE_VALUE;
    SearchPointer search = BeginSearch(Utf8FromAnsi(pattern == nullptr ? "" : pattern), *entry);
    const HANDLE handle = search ? OpenHandle(std::move(search)) : nullptr;
    return handle == nullptr ? INVALID_HANDLE_VALUE : handle;
}

BOOL WINAPI FindNextFileA(HANDLE handle, LPWIN32_FIND_DATAA entry) {
    if (CallFails("FindNextFileA"))
        return FALSE;
    const Pinned<Search> search(handle);
    return search && search->Next(*entry);
}

BOOL WINAPI FindClose(HANDLE handle) {
    const bool fails = CallFails("FindClose");
    const DWORD fault = GetLastError();
    Pinned<Search> search(handle);
    const bool closed = search && search.CloseHandle();
    return fails ? Fail(fault) : closed;
}
