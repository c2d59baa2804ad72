#include "BlockFile.h"
#include "Entries.h"
#include "Listing.h"
#include "Packing.h"
#include "Unpacking.h"

#include "tests/examples/Failures.h"

using namespace kelarchive;

namespace {

using doctest::Contains;

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

FileData EntryOf(const WideString& path) {
    return FileFinder(path, false);
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
            const std::string packed = std::string("tree\\") + name, unpacked = "out\\" + packed;
            CHECK(sample.folder.Read(unpacked) == sample.folder.Read(packed));
            const FileData before = EntryOf(sample.folder.Path(packed)), after = EntryOf(sample.folder.Path(unpacked));
            const FILETIME changed[] = {before.GetLastWriteTime(), after.GetLastWriteTime()};
            CHECK(CompareFileTime(&changed[0], &changed[1]) == 0);
            CHECK(before.IsReadOnly() == after.IsReadOnly());
        }
        CHECK(EntryOf(sample.folder.Path("out\\tree\\inner\\empty folder")).IsDirectory());
        CHECK_THROWS_WITH(Unpack(sample.Archive(), sample.Unpacked()), Contains("cannot make"));
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
        CHECK_THROWS_WITH(Verify(path), Contains(expected.c_str()));
    }
    CHECK_THROWS_WITH(Unpack(sample.folder.Path("damaged.kel"), sample.Unpacked()), Contains("damaged"));
    const String cut = sample.folder.Write("cut.kel", sound.substr(0, 10 * blockBytes));
    CHECK_THROWS_WITH(Unpack(cut, sample.folder.Path("cut out")), Contains("cut off: it ends in block 11"));
    CHECK_FALSE(File::FileExists(sample.folder.Path("cut out\\tree\\large")));
    CHECK_THROWS_WITH(Verify(sample.folder.Write("long.kel", sound + "tail")), Contains("goes on behind its end"));
    CHECK_THROWS_WITH(Verify(sample.folder.Write("short.kel", "ab")), Contains("too short"));
}

TEST_CASE("an archive cannot name a place outside the folder it is unpacked into") {
    const SampleTree sample;
    for (const char* name : {"", ".", "..", "..\\x", "a/b", "C:x"}) {
        CAPTURE(name);
        MakeArchiveWithName(sample.Archive(), StdA2W(name));
        CHECK_THROWS_WITH(Unpack(sample.Archive(), sample.Unpacked()), Contains("which no file can have"));
    }
}

TEST_CASE("what cannot be packed is refused with one line and leaves no archive") {
    const SampleTree sample;
    CHECK_THROWS_WITH(Pack(sample.Archive(), {sample.folder.Path("missing")}, false), Contains("cannot read"));
    CHECK_THROWS_WITH(Pack(sample.Archive(), {sample.Tree(), sample.Tree()}, false), Contains("are named tree"));
    CHECK_FALSE(File::FileExists(sample.Archive()));
    const String text = sample.folder.Write("text", "no archive at all");
    CHECK_THROWS_WITH(Pack(text, {sample.Tree()}, false), Contains("is no archive: it is not replaced"));
    CHECK(sample.folder.Read("text") == "no archive at all");
}

TEST_CASE("a failing platform call ends packing with one line and leaves nothing behind") {
    const SampleTree sample;
    int round = 0;
    kel::test::WithEachCallFailing(ERROR_DISK_FULL, [&] {
        const std::string name = std::to_string(++round) + ".kel";
        if (Succeeds([&] { Pack(sample.folder.Path(name), {sample.Tree()}, false); }))
            return;
        CHECK_FALSE(File::FileExists(sample.folder.Path(name)));
        CHECK_FALSE(File::FileExists(sample.folder.Path(name + ".part")));
    });
}
