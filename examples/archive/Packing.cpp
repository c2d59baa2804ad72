#include "Packing.h"

#include "BlockFile.h"
#include "Progress.h"
#include "Tree.h"

#include <kelcore/text.h>

#include <cstdio>
#include <typeinfo>

namespace kelarchive {
namespace {

/// Passes bytes on, counts them and tells the terminal.
class CountingOutput : public OutputStream {
public:
    CountingOutput(OutputStream& inner, Progress& progress) : m_inner(inner), m_progress(progress) {}

    void Write(const char* data, int count) override {
        m_inner.Write(data, count);
        m_written += static_cast<unsigned>(count);
        m_progress.Add(static_cast<unsigned>(count));
    }
    unsigned long long Written() const { return m_written; }

private:
    OutputStream& m_inner;
    Progress& m_progress;
    unsigned long long m_written = 0;
};

/// @return the bytes that went into the archive's blocks.
unsigned long long WriteTree(const Tree& tree, const ObjectFactory& factory, BlockFileOutput& output) {
    Progress progress("packing");
    progress.Expect(tree.archive.totals.bytes);
    CountingOutput counting(output.Stream(), progress);
    SerializingOutputStream objects(factory, counting);
    objects.Write(tree.archive);
    return counting.Written();
}

void Summarise(const Tree& tree, unsigned long long written) {
    const Totals& totals = tree.archive.totals;
    std::printf("packed %s in %s, %s; %s stored\n", Counted(totals.files, "file").c_str(),
                Counted(tree.folders, "folder").c_str(), Bytes(totals.bytes).c_str(), Bytes(written).c_str());
    if (tree.leftOut != 0)
        std::printf("left out %s to folders, to nothing or to devices\n", Counted(tree.leftOut, "link").c_str());
}

} // namespace

void Pack(const WideString& archive, const std::vector<WideString>& paths, bool scramble) {
    Tree tree;
    Scan(tree, paths);
    Owned<ObjectFactory> factory(new ObjectFactory);
    RegisterClasses(*factory);
    BlockFileOutput output(archive, scramble, "archive", factory->GetClassID(typeid(Archive)));
    unsigned long long written = 0;
    try {
        written = WriteTree(tree, *factory, output);
        output.Commit();
    } catch (const StreamBase::Exception& error) {
        throw Failure{"cannot write " + Shown(archive) + ": " + FirstLine(error.message)};
    }
    Summarise(tree, written);
}

} // namespace kelarchive
