#include "Tree.h"

#include "SourceFile.h"

#include <kelcore/file.h>
#include <kelcore/text.h>

#include <algorithm>
#include <functional>
#include <map>

namespace kelarchive {
namespace {

// The first bytes tell most different files of one size apart.
constexpr unsigned kMarkedBytes = 4096;

class Scanner {
public:
    explicit Scanner(Tree& tree) : m_tree(tree) {}

    void AddTop(const WideString& path);
    void GiveContents();

private:
    void Add(Entries& entries, const FileFinder& found, const Folder* parent);
    void AddFolder(Folder& folder, const WideString& path);
    void AddFile(FileEntry& file, const FileFinder& found);
    void MarkContents();

    Tree& m_tree;
    std::vector<FileEntry*> m_files;
};

template <class NewEntry>
NewEntry& Append(Entries& entries, const FileFinder& found, unsigned attributes, const Folder* parent) {
    Owned<NewEntry> entry(new NewEntry);
    NewEntry& made = *entry;
    made.parent = parent;
    made.name = found.GetFileName();
    made.attributes = attributes;
    made.created = found.GetCreationTime();
    made.accessed = found.GetLastAccessTime();
    made.written = found.GetLastWriteTime();
    entries.push_back(std::move(entry));
    return made;
}

void SortByName(Entries& entries) {
    std::sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) { return a->name < b->name; });
}

void Scanner::AddTop(const WideString& path) {
    const WideString full = File::GetFullPath(path);
    if (File::IsDriveRoot(full))
        throw Failure{"cannot pack " + Shown(full) + ": name the folders in it"};
    FileFinder found;
    if (!found.Start(full, false))
        FailOn("cannot read", full, GetLastError());
    for (const auto& entry : m_tree.archive.entries)
        if (entry->name == found.GetFileName())
            throw Failure{"two of the paths are named " + Shown(entry->name)};
    Add(m_tree.archive.entries, found, nullptr);
}

void Scanner::Add(Entries& entries, const FileFinder& found, const Folder* parent) {
    const WideString path = found.GetFilePath();
    const DWORD attributes = GetFileAttributesA(StdW2A(path).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES && GetLastError() != ERROR_FILE_NOT_FOUND &&
        GetLastError() != ERROR_PATH_NOT_FOUND)
        FailOn("cannot read", path, GetLastError());
    if (IsLeftOut(found, attributes))
        ++m_tree.leftOut;
    else if (found.IsDirectory())
        AddFolder(Append<Folder>(entries, found, attributes, parent), path);
    else
        AddFile(Append<FileEntry>(entries, found, attributes, parent), found);
}

void Scanner::AddFolder(Folder& folder, const WideString& path) {
    ++m_tree.folders;
    FileFinder inside;
    for (bool more = inside.Start(File::MakePath(path, u"*.*"_w), false); more; more = inside.Next())
        Add(folder.entries, inside, &folder);
    if (const unsigned long code = GetLastError(); code != ERROR_NO_MORE_FILES && code != ERROR_FILE_NOT_FOUND)
        FailOn("cannot read", path, code);
    SortByName(folder.entries);
}

void Scanner::AddFile(FileEntry& file, const FileFinder& found) {
    file.content.reset(new Content);
    file.content->source = found.GetFilePath();
    file.content->size = static_cast<unsigned long long>(found.GetFileSize());
    m_tree.archive.totals.bytes += file.content->size;
    ++m_tree.archive.totals.files;
    m_files.push_back(&file);
}

unsigned long long MarkOf(const WideString& path) {
    return std::hash<std::string>()(SourceFile(path).Next(kMarkedBytes));
}

void Scanner::MarkContents() {
    std::map<unsigned long long, unsigned> filesOfSize;
    for (const FileEntry* file : m_files)
        ++filesOfSize[file->content->size];
    for (FileEntry* file : m_files)
        if (file->content->size != 0 && filesOfSize[file->content->size] > 1)
            file->content->mark = MarkOf(file->content->source);
}

// Only contents whose size and mark occur twice can be equal; all others are spared the comparisons.
void Scanner::GiveContents() {
    MarkContents();
    std::map<std::pair<unsigned long long, unsigned long long>, unsigned> alike;
    for (const FileEntry* file : m_files)
        ++alike[{file->content->size, file->content->mark}];
    for (FileEntry* file : m_files) {
        if (alike[{file->content->size, file->content->mark}] < 2)
            continue;
        Owned<SharedContent> shared(new SharedContent);
        shared->source = file->content->source;
        shared->size = file->content->size;
        shared->mark = file->content->mark;
        file->content.reset(shared.release());
    }
}

} // namespace

void Scan(Tree& tree, const std::vector<WideString>& paths) {
    Scanner scanner(tree);
    for (const WideString& path : paths)
        scanner.AddTop(path);
    scanner.GiveContents();
}

} // namespace kelarchive
