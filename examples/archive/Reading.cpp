#include "Reading.h"

#include "BlockFile.h"
#include "Progress.h"

namespace kelarchive {
namespace {

/// Passes everything on to a visitor and tells the terminal.
class ProgressVisitor : public EntryVisitor {
public:
    ProgressVisitor(EntryVisitor& inner, const char* verb) : m_inner(inner), m_progress(verb) {}

    void Begin(const Totals& totals) override {
        m_progress.Expect(totals.bytes);
        m_inner.Begin(totals);
    }
    void EnterFolder(const Folder& folder) override { m_inner.EnterFolder(folder); }
    void LeaveFolder(const Folder& folder) override { m_inner.LeaveFolder(folder); }
    void BeginFile(const FileEntry& file) override { m_inner.BeginFile(file); }
    void Bytes(const char* data, unsigned count) override {
        m_inner.Bytes(data, count);
        m_progress.Add(count);
    }
    void EndBytes(Content& content) override { m_inner.EndBytes(content); }
    void SameBytes(const Content& content) override {
        m_inner.SameBytes(content);
        m_progress.Add(content.size);
    }
    void EndFile(const FileEntry& file) override { m_inner.EndFile(file); }

private:
    EntryVisitor& m_inner;
    Progress m_progress;
};

} // namespace

void ReadArchive(const WideString& path, const char* verb, EntryVisitor& visitor) {
    BlockFileInput input(path, "archive");
    Owned<ObjectFactory> factory(new ObjectFactory);
    RegisterClasses(*factory);
    ProgressVisitor watched(visitor, verb);
    try {
        Archive archive;
        ArchiveReader reader(*factory, input.Stream(), watched);
        reader.Read(archive);
    } catch (const StreamBase::Exception& error) {
        throw Failure{input.Describe(error)};
    }
    input.ExpectEnd();
}

} // namespace kelarchive
