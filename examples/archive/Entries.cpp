#include "Entries.h"

#include "PlainName.h"
#include "SourceFile.h"

#include <kelcore/file.h>

#include <algorithm>

namespace kelarchive {
namespace {

constexpr unsigned kPiece = 64 * 1024;

OutputStream& operator<<(OutputStream& stream, const FILETIME& time) {
    return stream << static_cast<unsigned int>(time.dwLowDateTime) << static_cast<unsigned int>(time.dwHighDateTime);
}

InputStream& operator>>(InputStream& stream, FILETIME& time) {
    unsigned int low = 0;
    unsigned int high = 0;
    stream >> low >> high;
    time.dwLowDateTime = low;
    time.dwHighDateTime = high;
    return stream;
}

void WriteCount(OutputStream& stream, unsigned long long count) {
    stream << static_cast<__int64>(count);
}

unsigned long long ReadCount(InputStream& stream) {
    __int64 count = 0;
    stream >> count;
    return static_cast<unsigned long long>(count);
}

[[noreturn]] void FailMisplaced() {
    throw Failure{"the archive holds an object in a place where none of its kind belongs"};
}

void WriteEntries(SerializingOutputStream& stream, const Entries& entries) {
    WriteCount(stream, entries.size());
    for (const auto& entry : entries)
        stream.WriteRef(entry.get());
}

// Only readers made by this program read its classes.
ArchiveReader& ReaderOf(SerializingInputStream& stream) {
    return dynamic_cast<ArchiveReader&>(stream);
}

Owned<Entry> ReadEntry(SerializingInputStream& stream) {
    ISerializable* const object = stream.ReadRef();
    auto* const entry = dynamic_cast<Entry*>(object);
    // A second reference to an entry carries no ownership, and an open folder cannot lie in itself.
    if (entry != nullptr) {
        const auto& open = ReaderOf(stream).open;
        if (entry->placed || std::find(open.begin(), open.end(), entry) != open.end())
            FailMisplaced();
        entry->placed = true;
        return Owned<Entry>(entry);
    }
    if (object != nullptr)
        object->Release();
    FailMisplaced();
}

// The count is believed only as far as entries really follow.
void ReadEntries(SerializingInputStream& stream, Entries& entries) {
    for (unsigned long long left = ReadCount(stream); left != 0; --left)
        entries.push_back(ReadEntry(stream));
}

// A file that ends early or goes on behind its size would make a wrong archive.
[[noreturn]] void FailChanged(const WideString& path) {
    throw Failure{"cannot pack " + Shown(path) + ": it changed meanwhile"};
}

} // namespace

WideString Entry::Path() const {
    return parent == nullptr ? name : File::MakePath(parent->Path(), name);
}

void Entry::Read(SerializingInputStream& stream, short) {
    const auto& open = ReaderOf(stream).open;
    parent = open.empty() ? nullptr : open.back();
    stream >> name >> attributes;
    InputStream& times = stream;
    times >> created >> accessed >> written;
    if (!IsPlainName(name))
        throw Failure{"the archive holds the name \"" + Shown(name) + "\", which no file can have"};
}

void Entry::Write(SerializingOutputStream& stream) const {
    stream << name << attributes;
    OutputStream& times = stream;
    times << created << accessed << written;
}

void Folder::Read(SerializingInputStream& stream, short version) {
    Entry::Read(stream, version);
    ArchiveReader& reader = ReaderOf(stream);
    reader.visitor.EnterFolder(*this);
    reader.open.push_back(this);
    ReadEntries(stream, entries);
    reader.open.pop_back();
    reader.visitor.LeaveFolder(*this);
}

void Folder::Write(SerializingOutputStream& stream) const {
    Entry::Write(stream);
    WriteEntries(stream, entries);
}

void Content::Read(SerializingInputStream& stream, short) {
    ArchiveReader& reader = ReaderOf(stream);
    if (reader.content != ArchiveReader::Expected)
        FailMisplaced();
    size = ReadCount(stream);
    std::string piece(static_cast<std::size_t>(std::min<unsigned long long>(size, kPiece)), '\0');
    for (unsigned long long left = size; left != 0;) {
        const auto count = static_cast<unsigned>(std::min<unsigned long long>(left, kPiece));
        stream.Read(piece.data(), static_cast<int>(count));
        reader.visitor.Bytes(piece.data(), count);
        left -= count;
    }
    reader.visitor.EndBytes(*this);
    reader.content = ArchiveReader::Arrived;
}

void Content::Write(SerializingOutputStream& stream) const {
    WriteCount(stream, size);
    SourceFile file(source);
    for (unsigned long long left = size; left != 0;) {
        const std::string piece = file.Next(kPiece);
        if (piece.empty() || piece.size() > left)
            FailChanged(source);
        stream.Write(piece.data(), static_cast<int>(piece.size()));
        left -= piece.size();
    }
    if (!file.Next(1).empty())
        FailChanged(source);
}

bool SharedContent::operator==(const SharedContent& other) const {
    return size == other.size && mark == other.mark && HaveSameBytes(source, other.source);
}

void FileEntry::Read(SerializingInputStream& stream, short version) {
    Entry::Read(stream, version);
    ArchiveReader& reader = ReaderOf(stream);
    reader.visitor.BeginFile(*this);
    reader.content = ArchiveReader::Expected;
    const Owned<ISerializable> object(stream.Create());
    const auto* const read = dynamic_cast<Content*>(object.get());
    if (read == nullptr)
        FailMisplaced();
    if (reader.content == ArchiveReader::Expected)
        reader.visitor.SameBytes(*read);
    reader.content = ArchiveReader::None;
    reader.visitor.EndFile(*this);
}

void FileEntry::Write(SerializingOutputStream& stream) const {
    Entry::Write(stream);
    stream.Write(*content);
}

void Archive::Read(SerializingInputStream& stream, short) {
    totals.files = ReadCount(stream);
    totals.bytes = ReadCount(stream);
    ReaderOf(stream).visitor.Begin(totals);
    ReadEntries(stream, entries);
}

void Archive::Write(SerializingOutputStream& stream) const {
    WriteCount(stream, totals.files);
    WriteCount(stream, totals.bytes);
    WriteEntries(stream, entries);
}

void RegisterClasses(ObjectFactory& factory) {
    factory.RegisterType<Archive>();
    factory.RegisterType<Folder>();
    factory.RegisterType<FileEntry>();
    factory.RegisterType<Content>();
    factory.RegisterType<SharedContent>(/*shareEqualObjects*/ true);
}

} // namespace kelarchive
