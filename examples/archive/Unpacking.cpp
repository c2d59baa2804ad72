#include "Unpacking.h"

#include "Reading.h"

#include <kelcore/file.h>
#include <kelcore/text.h>

#include <cstdio>

namespace kelarchive {
namespace {

constexpr unsigned kKeptAttributes =
    FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE;

void MakeFolder(const WideString& path) {
    if (!CreateDirectoryA(StdW2A(path).c_str(), nullptr))
        FailOn("cannot make", path, GetLastError());
}

// Attributes that the system has no place for are let go, but for the one it always has.
void SetAttributes(const WideString& path, unsigned attributes) {
    const std::string narrow = StdW2A(path);
    const unsigned kept = attributes & kKeptAttributes;
    if (SetFileAttributesA(narrow.c_str(), kept != 0 ? kept : FILE_ATTRIBUTE_NORMAL))
        return;
    if (GetLastError() != ERROR_NOT_SUPPORTED || !SetFileAttributesA(narrow.c_str(), kept & FILE_ATTRIBUTE_READONLY))
        FailOn("cannot set the attributes of", path, GetLastError());
}

// The system takes such a path as it is written: of any length, and off Windows with names that differ in case only.
WideString ExactPath(const WideString& full) {
    const WideString prefix = u"\\\\?\\"_w;
    return full.compare(0, 2, prefix, 0, 2) == 0 ? full : prefix + full;
}

class Unpacker : public EntryVisitor {
public:
    explicit Unpacker(const WideString& folder) : m_folder(ExactPath(File::GetFullPath(folder))) {}
    ~Unpacker() override { RemoveUnfinished(); }

    void EnterFolder(const Folder& folder) override { MakeFolder(PathOf(folder)); }
    void LeaveFolder(const Folder& folder) override;
    void BeginFile(const FileEntry& file) override;
    void Bytes(const char* data, unsigned count) override;
    void EndBytes(Content& content) override { content.source = m_path; }
    void SameBytes(const Content& content) override;
    void EndFile(const FileEntry& file) override;

    unsigned long long Files() const { return m_files; }

private:
    WideString PathOf(const Entry& entry) const { return File::MakePath(m_folder, entry.Path()); }
    void RemoveUnfinished();

    WideString m_folder;
    WideString m_path;
    File m_file;
    unsigned long long m_files = 0;
};

// The folder's own time changes with every entry made in it, so it is set when all are there.
void Unpacker::LeaveFolder(const Folder& folder) {
    const WideString path = PathOf(folder);
    try {
        File handle;
        handle.Open(path, FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE, false, OPEN_EXISTING,
                    FILE_FLAG_BACKUP_SEMANTICS);
        handle.SetFileTimes(&folder.created, &folder.accessed, &folder.written);
    } catch (const File::Exception& error) {
        FailOn("cannot set the times of", path, error.m_dwError);
    }
    SetAttributes(path, folder.attributes);
}

void Unpacker::BeginFile(const FileEntry& file) {
    m_path = PathOf(file);
    try {
        m_file.Create(m_path, GENERIC_WRITE, 0, false, CREATE_NEW);
    } catch (const File::Exception& error) {
        FailOn("cannot make", m_path, error.m_dwError);
    }
}

void Unpacker::Bytes(const char* data, unsigned count) {
    try {
        if (m_file.Write(std::string(data, count)) != count)
            FailOn("cannot write", m_path, ERROR_DISK_FULL);
    } catch (const File::Exception& error) {
        FailOn("cannot write", m_path, error.m_dwError);
    }
}

void Unpacker::SameBytes(const Content& content) {
    File first;
    try {
        first.OpenForReading(content.source, FILE_SHARE_READ, false, FILE_FLAG_SEQUENTIAL_SCAN);
        constexpr unsigned kPiece = 64 * 1024;
        for (std::string piece; first.Read(piece, kPiece) != 0;)
            Bytes(piece.data(), static_cast<unsigned>(piece.size()));
    } catch (const File::Exception& error) {
        FailOn("cannot read", content.source, error.m_dwError);
    }
}

void Unpacker::EndFile(const FileEntry& file) {
    try {
        m_file.SetFileTimes(&file.created, &file.accessed, &file.written);
    } catch (const File::Exception& error) {
        FailOn("cannot set the times of", m_path, error.m_dwError);
    }
    m_file.Close();
    SetAttributes(m_path, file.attributes);
    ++m_files;
}

void Unpacker::RemoveUnfinished() {
    if (!m_file.IsValid())
        return;
    m_file.Close();
    DeleteFileA(StdW2A(m_path).c_str());
}

} // namespace

void Unpack(const WideString& archive, const WideString& folder) {
    if (!File::FileExists(folder))
        MakeFolder(File::GetFullPath(folder));
    Unpacker unpacker(folder);
    ReadArchive(archive, "unpacking", unpacker);
    std::printf("unpacked %s into %s\n", Counted(unpacker.Files(), "file").c_str(), Shown(folder).c_str());
}

} // namespace kelarchive
