#include "BlockFile.h"
#include "Entries.h"
#include "Listing.h"
#include "Packing.h"
#include "Report.h"
#include "Unpacking.h"

#include "tests/support/Faults.h"
#include "tests/support/TempFolder.h"

#include <doctest/doctest.h>
#include <kelcore/file.h>

#include <functional>

using namespace kelarchive;

namespace {

// A tree with an empty file, equal files, a large one, a hidden, a read-only one and folders in folders.
struct SampleTree {
    SampleTree() {
        folder.Folder("tree");
        folder.Folder("tree\\inner");
        folder.Folder("tree\\inner\\empty folder");
        folder.Write("tree\\nothing", "");
        folder.Write("tree\\large", large);
        folder.Write("tree\\inner\\same", large);
        folder.Write("tree\\.hidden", "dot");
        const String fixed = folder.Write("tree\\fixed", "read only");
        REQUIRE(SetFileAttributesA(StdW2A(fixed).c_str(), FILE_ATTRIBUTE_READONLY));
    }

    String Tree() const { return folder.Path("tree"); }
    String Archive() const { return folder.Path("a.kel"); }
    String Unpacked() const { return folder.Path("out"); }

    TempFolder folder;
    std::string large = std::string(200000, 'x') + "end";
};

std::string FailureOf(const std::function<void()>& act) {
    try {
        act();
    } catch (const Failure& failure) {
        return failure.line;
    }
    return "";
}

bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

FileData EntryOf(const WideString& path) {
    FileFinder finder(path, false);
    return finder;
}

// Writes an archive that holds one file of the given name.
void MakeArchiveWithName(const String& path, const WideString& name) {
    Owned<ObjectFactory> factory(new ObjectFactory);
    RegisterClasses(*factory);
    BlockFileOutput output(path, false, "archive", factory->GetClassID(typeid(kelarchive::Archive)));
    kelarchive::Archive archive;
    auto* const folder = new Folder;
    folder->name = name;
    archive.entries.emplace_back(folder);
    SerializingOutputStream(*factory, output.Stream()).Write(archive);
    output.Commit();
}

} // namespace

TEST_CASE("a packed tree comes back with contents, times and attributes, equal contents stored once") {
    for (const bool scramble : {false, true}) {
        CAPTURE(scramble);
        const SampleTree sample;
        Pack(sample.Archive(), {sample.Tree()}, scramble);
        CHECK(EntryOf(sample.Archive()).GetFileSize() < 210000);
        Verify(sample.Archive());
        Unpack(sample.Archive(), sample.Unpacked());
        for (const char* name : {"nothing", "large", "inner\\same", ".hidden", "fixed"}) {
            CAPTURE(name);
            CHECK(sample.folder.Read(std::string("out\\tree\\") + name) ==
                  sample.folder.Read(std::string("tree\\") + name));
            const FileData before = EntryOf(sample.folder.Path(std::string("tree\\") + name));
            const FileData after = EntryOf(sample.folder.Path(std::string("out\\tree\\") + name));
            const FILETIME changed[] = {before.GetLastWriteTime(), after.GetLastWriteTime()};
            CHECK(CompareFileTime(&changed[0], &changed[1]) == 0);
            CHECK(before.IsReadOnly() == after.IsReadOnly());
        }
        CHECK(EntryOf(sample.folder.Path("out\\tree\\inner\\empty folder")).IsDirectory());
        CHECK(Contains(FailureOf([&] { Unpack(sample.Archive(), sample.Unpacked()); }), "cannot make"));
    }
}

TEST_CASE("damage is named by block and offset, and leaves no file that is not whole") {
    const SampleTree sample;
    Pack(sample.Archive(), {sample.Tree()}, false);
    const std::string sound = sample.folder.Read("a.kel");
    const std::size_t blockBytes = 4088 + 8;
    for (const std::size_t offset : {std::size_t{5}, blockBytes + 100, 20 * blockBytes + 4000, sound.size() - 1}) {
        CAPTURE(offset);
        std::string damaged = sound;
        damaged[offset] ^= 1;
        const String path = sample.folder.Write("damaged.kel", damaged);
        const std::size_t block = offset / blockBytes;
        const std::string expected = "block " + std::to_string(block + 1) + " at file offset " +
                                     std::to_string(block * blockBytes) + ": CRC checksum error";
        CHECK(Contains(FailureOf([&] { Verify(path); }), expected));
    }
    CHECK(Contains(FailureOf([&] { Unpack(sample.folder.Path("damaged.kel"), sample.Unpacked()); }), "damaged"));
    sample.folder.Write("cut.kel", sound.substr(0, 10 * blockBytes));
    const String cut = sample.folder.Path("cut out");
    CHECK(Contains(FailureOf([&] { Unpack(sample.folder.Path("cut.kel"), cut); }), "cut off: it ends in block 11"));
    CHECK_FALSE(File::FileExists(sample.folder.Path("cut out\\tree\\large")));
    sample.folder.Write("long.kel", sound + "tail");
    CHECK(Contains(FailureOf([&] { Verify(sample.folder.Path("long.kel")); }), "goes on behind its end"));
    sample.folder.Write("short.kel", "ab");
    CHECK(Contains(FailureOf([&] { Verify(sample.folder.Path("short.kel")); }), "too short"));
}

TEST_CASE("an archive cannot name a place outside the folder it is unpacked into") {
    const SampleTree sample;
    for (const char* name : {"", ".", "..", "..\\x", "a/b", "C:x"}) {
        CAPTURE(name);
        MakeArchiveWithName(sample.Archive(), StdA2W(name));
        CHECK(Contains(FailureOf([&] { Unpack(sample.Archive(), sample.Unpacked()); }), "which no file can have"));
    }
}

TEST_CASE("what cannot be packed is refused with one line and leaves no archive") {
    const SampleTree sample;
    const String missing = sample.folder.Path("missing");
    CHECK(Contains(FailureOf([&] { Pack(sample.Archive(), {missing}, false); }), "cannot read"));
    CHECK(Contains(FailureOf([&] {
                       Pack(sample.Archive(), {sample.Tree(), sample.Tree()}, false);
                   }),
                   "are named tree"));
    CHECK_FALSE(File::FileExists(sample.Archive()));
    const String text = sample.folder.Write("text", "no archive at all");
    CHECK(Contains(FailureOf([&] { Pack(text, {sample.Tree()}, false); }), "is no archive: it is not replaced"));
    CHECK(sample.folder.Read("text") == "no archive at all");
}

TEST_CASE("a failing platform call ends packing with one line and leaves nothing behind") {
    const SampleTree sample;
    int round = 0;
    kel::test::WithEachCallFailing(ERROR_DISK_FULL, [&] {
        const std::string name = std::to_string(++round) + ".kel";
        const std::string line = FailureOf([&] { Pack(sample.folder.Path(name), {sample.Tree()}, false); });
        if (line.empty())
            return;
        CHECK_FALSE(File::FileExists(sample.folder.Path(name)));
        CHECK_FALSE(File::FileExists(sample.folder.Path(name + ".part")));
    });
}
