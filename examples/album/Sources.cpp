#include "Sources.h"

#include "Names.h"
#include "SourceFile.h"

#include <algorithm>
#include <map>
#include <utility>

namespace kelalbum {
namespace {

constexpr unsigned kPiece = 64 * 1024;

using LeaveOut = std::function<void(const WideString&, const std::string&)>;

class Finder {
public:
    Finder(std::vector<Source>& sources, WideString album, const LeaveOut& leaveOut)
        : m_sources(sources), m_album(std::move(album)), m_leaveOut(leaveOut) {}

    /// Adds what matches @p pattern, sorted by name.
    /// @return the system's code for the end of the search.
    unsigned long Add(const WideString& pattern);
    void AddFolder(const WideString& path);

private:
    void Add(const WideString& path, const FileData& found);

    std::vector<Source>& m_sources;
    WideString m_album;
    const LeaveOut& m_leaveOut;
};

unsigned long Finder::Add(const WideString& pattern) {
    std::map<WideString, FileData> entries;
    FileFinder finder;
    bool more = finder.Start(pattern, false);
    for (; more; more = finder.Next()) {
        const WideString path = finder.GetFilePath();
        if (IsLeftOut(finder, GetFileAttributesA(StdW2A(path).c_str())))
            m_leaveOut(path, "it is a link to a folder or to nothing, or a device");
        else
            entries.emplace(path, finder);
    }
    const unsigned long end = GetLastError();
    for (const auto& [path, found] : entries)
        Add(path, found);
    return end;
}

void Finder::AddFolder(const WideString& path) {
    const unsigned long end = Add(File::MakePath(path, u"*.*"_w));
    if (end != ERROR_NO_MORE_FILES && end != ERROR_FILE_NOT_FOUND)
        m_leaveOut(path, SystemText(end));
}

void Finder::Add(const WideString& path, const FileData& found) {
    if (found.IsDirectory())
        AddFolder(path);
    else if (!AreSameNames(path, m_album))
        m_sources.push_back({path, static_cast<unsigned long long>(found.GetFileSize())});
}

// A hash of all bytes.
unsigned long long MarkOf(const WideString& path) {
    SourceFile file(path);
    unsigned long long mark = 0;
    for (std::string piece = file.Next(kPiece); !piece.empty(); piece = file.Next(kPiece))
        mark = mark * 31 + std::hash<std::string>()(piece);
    return mark;
}

using Kind = std::pair<unsigned long long, unsigned long long>; // size and mark

// Only files whose size occurs twice are read for a mark, and only those with the same mark are compared. What cannot
// be read is like no other file: loading will tell why.
class Comparison {
public:
    explicit Comparison(std::vector<Source>& sources) : m_sources(sources) {
        for (const Source& source : sources)
            ++m_ofSize[source.bytes];
    }

    std::size_t FirstLike(std::size_t place) {
        if (m_ofSize[m_sources[place].bytes] < 2)
            return place;
        try {
            return FirstOfKind(place, m_kinds[{m_sources[place].bytes, MarkOf(m_sources[place].path)}]);
        } catch (const Failure&) {
            return place;
        }
    }

private:
    std::size_t FirstOfKind(std::size_t place, std::vector<std::size_t>& kind) {
        for (const std::size_t other : kind)
            if (HaveSameBytes(m_sources[place].path, m_sources[other].path))
                return other;
        kind.push_back(place);
        return place;
    }

    std::vector<Source>& m_sources;
    std::map<unsigned long long, unsigned> m_ofSize;
    std::map<Kind, std::vector<std::size_t>> m_kinds;
};

} // namespace

std::vector<Source> FindSources(const std::vector<WideString>& paths, const WideString& album,
                                const LeaveOut& leaveOut) {
    std::vector<Source> sources;
    Finder finder(sources, File::GetFullPath(album), leaveOut);
    for (const WideString& path : paths) {
        const WideString full = File::GetFullPath(path);
        // A drive has no entry in a folder above it. Wildcards are looked up here where no shell has done so.
        if (File::IsDriveRoot(full))
            finder.AddFolder(full);
        else if (const unsigned long end = finder.Add(full); end != ERROR_NO_MORE_FILES)
            leaveOut(full, SystemText(end));
    }
    Comparison comparison(sources);
    for (std::size_t place = 0; place < sources.size(); ++place)
        sources[place].same = comparison.FirstLike(place);
    return sources;
}

} // namespace kelalbum
