#pragma once

#include "Owned.h"
#include "Report.h"

#include <kelcore/stream.h>

#include <vector>

/// The classes of an archive's object graph. An Archive is stored by value; it refers to its top entries, a Folder to
/// its entries. A FileEntry holds its bytes by value as a Content, or as a SharedContent where another file may have
/// equal bytes: equal ones are then stored once.
///
/// No object ever holds the bytes of a file: they pass through in pieces while the object is written or read.
namespace kelarchive {

using namespace kelexamples;

class EntryVisitor;
class Folder;

/// A member that a copy of its object starts without: the registry copies objects, but what they own belongs to one.
template <class Member>
class NotCopied : public Member {
public:
    NotCopied() = default;
    NotCopied(const NotCopied&) : Member() {}
    NotCopied& operator=(const NotCopied&) {
        static_cast<Member&>(*this) = Member();
        return *this;
    }
};

/// Files and bytes of a whole archive, duplicates counted.
struct Totals {
    unsigned long long files = 0;
    unsigned long long bytes = 0;
};

/// What folders and files have in common.
class Entry : public ISerializable, public virtual KelUnknown {
public:
    void Read(SerializingInputStream& stream, short version) override;
    void Write(SerializingOutputStream& stream) const override;
    short Version() const override { return 1; }

    /// The path inside the archive, names joined by backslashes.
    WideString Path() const;

    WideString name;
    unsigned int attributes = 0;
    FILETIME created = {};
    FILETIME accessed = {};
    FILETIME written = {};
    /// The folder this entry lies in, null at the top. Not owned: the folder owns its entries.
    const Folder* parent = nullptr;
    /// Whether a folder or archive owns this entry.
    bool placed = false;
};

using Entries = NotCopied<std::vector<Owned<Entry>>>;

class Folder : public Entry {
public:
    /// Tells the reader's visitor when it is entered and when all its entries are read.
    void Read(SerializingInputStream& stream, short version) override;
    void Write(SerializingOutputStream& stream) const override;

    Entries entries;
};

/// The bytes of one file.
class Content : public ISerializable, public virtual KelUnknown {
public:
    /// Hands the bytes to the reader's visitor, piece by piece.
    void Read(SerializingInputStream& stream, short version) override;
    /// Writes the bytes of the file at `source`, piece by piece.
    /// @throws Failure if the file cannot be read or is not `size` bytes long any more.
    void Write(SerializingOutputStream& stream) const override;
    short Version() const override { return 1; }

    /// Where the bytes are: the file being packed, or the file that was unpacked first.
    WideString source;
    unsigned long long size = 0;
    /// A hash of the first bytes, so that most different contents differ at a glance; not stored.
    unsigned long long mark = 0;
};

/// Bytes that another file may have, too.
class SharedContent : public Content {
public:
    /// Whether size, mark and then all bytes of the two sources agree.
    bool operator==(const SharedContent& other) const;
};

class FileEntry : public Entry {
public:
    void Read(SerializingInputStream& stream, short version) override;
    void Write(SerializingOutputStream& stream) const override;

    NotCopied<Owned<Content>> content;
};

class Archive : public ISerializable, public virtual KelUnknown {
public:
    void Read(SerializingInputStream& stream, short version) override;
    void Write(SerializingOutputStream& stream) const override;
    short Version() const override { return 1; }

    Totals totals;
    Entries entries;
};

/// Enters the classes above, under the names that archives know them by.
void RegisterClasses(ObjectFactory& factory);

/// Meets the parts of an archive in the order in which they are read.
class EntryVisitor {
public:
    virtual ~EntryVisitor() = default;
    virtual void Begin(const Totals&) {}
    virtual void EnterFolder(const Folder&) {}
    virtual void LeaveFolder(const Folder&) {}
    virtual void BeginFile(const FileEntry&) {}
    /// The next bytes of the file begun.
    virtual void Bytes(const char*, unsigned) {}
    /// All bytes of @p content have arrived; a visitor that keeps them notes where in its `source`.
    virtual void EndBytes(Content&) {}
    /// The file begun has the bytes of an earlier one, whose visitor noted `source`.
    virtual void SameBytes(const Content&) {}
    virtual void EndFile(const FileEntry&) {}
};

/// An object stream whose objects report to a visitor while they are read.
class ArchiveReader : public SerializingInputStream {
public:
    ArchiveReader(const IObjectFactory& factory, InputStream& inner, EntryVisitor& entryVisitor)
        : SerializingInputStream(factory, inner), visitor(entryVisitor) {}

    EntryVisitor& visitor;
    /// The folders that are being read, outermost first.
    std::vector<const Folder*> open;
    /// How far the bytes of the file being read are; None outside a file.
    enum { None, Expected, Arrived } content = None;
};

} // namespace kelarchive
