#include "tests/support/TempFolder.h"
#include "tests/support/Text.h"

#include <kelcore/file.h>

#include <cstring>
#include <set>

namespace {

static_assert(sizeof(FileData) == 592, "the system's wide record");
static_assert(sizeof(void*) != 4 || sizeof(FileFinder) == 624, "entry, search, directory, flag");

WIN32_FIND_DATAA Entry(const char* name, DWORD attributes = FILE_ATTRIBUTE_ARCHIVE) {
    WIN32_FIND_DATAA entry = {};
    entry.dwFileAttributes = attributes;
    entry.ftCreationTime = {1, 2};
    entry.ftLastAccessTime = {3, 4};
    entry.ftLastWriteTime = {5, 6};
    entry.nFileSizeHigh = 1;
    entry.nFileSizeLow = 0x40000000;
    std::strcpy(entry.cFileName, name);
    std::strcpy(entry.cAlternateFileName, "SHORT~1.EXT");
    return entry;
}

FileData Data(const WIN32_FIND_DATAA& entry) {
    FileData data;
    data = entry;
    return data;
}

std::set<WideString> Names(FileFinder& finder, const WideString& pattern, bool withdots) {
    std::set<WideString> names;
    for (bool found = finder.Start(pattern, withdots); found; found = finder.Next())
        CHECK(names.insert(finder.GetFileName()).second);
    return names;
}

} // namespace

TEST_CASE("an entry has the layout of the system's wide record") {
    const WIN32_FIND_DATAA entry = Entry("name", 0x21);
    FileData data;
    data = entry;
    WIN32_FIND_DATAW wide = {};
    std::memcpy(&wide, &data, sizeof wide);
    CHECK(std::memcmp(&wide, &entry, offsetof(WIN32_FIND_DATAA, cFileName)) == 0);
    CHECK(WideString(reinterpret_cast<const unsigned short*>(wide.cFileName)) == u"name"_w);
    CHECK(WideString(reinterpret_cast<const unsigned short*>(wide.cAlternateFileName)) == u"SHORT~1.EXT"_w);
    data = FileData();
    wide = {};
    CHECK(std::memcmp(&data, &wide, sizeof wide) == 0);
}

TEST_CASE("an entry answers for its names, size, times and attributes") {
    const FileData data = Data(Entry("a.tar.gz"));
    CHECK(data.GetFileName() == u"a.tar.gz"_w);
    CHECK(data.GetShortFileName() == u"SHORT~1.EXT"_w);
    CHECK(data.GetFileSize() == 5368709120);
    CHECK(data.GetCreationTime().dwHighDateTime == 2);
    CHECK(data.GetLastAccessTime().dwHighDateTime == 4);
    CHECK(data.GetLastWriteTime().dwHighDateTime == 6);
    WIN32_FIND_DATAA plain = Entry("\xC3\xA4");
    plain.cAlternateFileName[0] = '\0';
    CHECK(Data(plain).GetShortFileName() == StdA2W("\xC3\xA4"));

    const std::pair<const char*, String> extensions[] = {
        {"readme", u""_w}, {"a.tar.gz", u".gz"_w}, {".profile", u".profile"_w}, {"a.", u"."_w}};
    for (const auto& [name, extension] : extensions)
        CHECK(Data(Entry(name)).GetFileExtension() == extension);

    const std::pair<bool (FileData::*)() const, DWORD> attributes[] = {
        {&FileData::IsReadOnly, 0x1},   {&FileData::IsHidden, 0x2},    {&FileData::IsSystem, 0x4},
        {&FileData::IsDirectory, 0x10}, {&FileData::IsArchived, 0x20}, {&FileData::IsCompressed, 0x800}};
    for (const auto& [is, bit] : attributes) {
        CAPTURE(bit);
        CHECK((Data(Entry("x", bit)).*is)());
        CHECK_FALSE((Data(Entry("x", ~bit)).*is)());
    }
    for (const std::string name : {".", "..", "...", ".a"}) {
        CAPTURE(name);
        CHECK(Data(Entry(name.c_str(), FILE_ATTRIBUTE_DIRECTORY)).IsDots() == (name == "." || name == ".."));
        CHECK_FALSE(Data(Entry(name.c_str())).IsDots());
    }
}

TEST_CASE("entries are equal apart from case and access time, and unequal by anything else") {
    const struct {
        bool equal;
        void (*change)(WIN32_FIND_DATAA&);
    } cases[] = {
        {true, [](auto& entry) { entry.ftLastAccessTime.dwHighDateTime = 99; }},
        {true, [](auto& entry) { entry.cFileName[0] = 'n'; }},
        {true, [](auto& entry) { entry.cAlternateFileName[0] = 's'; }},
        {true, [](auto& entry) { entry.dwReserved0 = 7; }},
        {false, [](auto& entry) { entry.dwFileAttributes = 0; }},
        {false, [](auto& entry) { entry.ftCreationTime.dwLowDateTime = 99; }},
        {false, [](auto& entry) { entry.ftLastWriteTime.dwHighDateTime = 99; }},
        {false, [](auto& entry) { entry.nFileSizeHigh = 0; }},
        {false, [](auto& entry) { entry.nFileSizeLow = 0; }},
        {false, [](auto& entry) { entry.cFileName[4] = 's'; }},
        {false, [](auto& entry) { entry.cAlternateFileName[0] = '\0'; }},
    };
    for (const auto& row : cases) {
        CAPTURE(&row - cases);
        WIN32_FIND_DATAA entry = Entry("Name");
        const FileData base = Data(entry);
        row.change(entry);
        CHECK((Data(entry) == base) == row.equal);
        CHECK((Data(entry) != base) == !row.equal);
    }
}

TEST_CASE("a finder walks the matching entries, with or without the dots") {
    const TempFolder folder;
    folder.Write("one.txt", "1");
    folder.Write("two.txt", "22");
    folder.Write(".hidden", "");
    folder.Folder("sub.txt");
    FileFinder finder;
    const std::set<WideString> texts = {u"one.txt"_w, u"two.txt"_w, u"sub.txt"_w};
    CHECK(Names(finder, folder.Path("*.txt"), true) == texts);
    std::set<WideString> all = texts;
    all.insert(u".hidden"_w);
    finder.Reset();
    CHECK(Names(finder, folder.Path("*.*"), false) == all);
    CHECK_FALSE(finder.Next());
    all.insert({u"."_w, u".."_w});
    finder.Reset();
    CHECK(Names(finder, folder.Path("*"), true) == all);

    FileFinder one(folder.Path("TWO.TXT"), false);
    CHECK(one.GetFileName() == u"two.txt"_w);
    CHECK(one.GetFileSize() == 2);
    CHECK(one.GetFilePath() == folder.Path("two.txt"));
    CHECK(one.GetFileTitleA() == u"two"_w);
    CHECK(one.GetShortPath() == File::GetShortPath(folder.Path("two.txt")));
    CHECK_FALSE(one.Next());
    CHECK(one.GetFileName() == u"two.txt"_w);
    SetLastError(4711);
    one.Reset();
    CHECK(GetLastError() == 4711);
    CHECK(one.GetFileName().empty());
    CHECK_FALSE(one.Next());
}

TEST_CASE("a search without a result answers false and keeps the directory of the one before") {
    const TempFolder folder;
    folder.Folder("empty");
    folder.Write("file", "");
    FileFinder finder(folder.Path("file"), false);
    finder.Reset();
    for (const char* const pattern : {"empty\\none", "empty\\*.*"}) {
        CHECK_FALSE(finder.Start(folder.Path(pattern), false));
        CHECK_FALSE(finder.Next());
        CHECK(File::GetDirname(finder.GetFilePath()) == folder.Path());
        finder.Reset();
    }
    CHECK(finder.Start(folder.Path("empty\\*.*"), true));
    CHECK(finder.IsDots());
    CHECK(File::GetDirname(finder.GetFilePath()) == folder.Path("empty"));
}

TEST_CASE("sizes are summed over files and folders") {
    const TempFolder folder;
    const String tree = folder.Folder("tree");
    CHECK(File::GetSizeRecursive(tree) == 0);
    folder.Write("tree\\ten", "0123456789");
    folder.Folder("tree\\.sub");
    folder.Write("tree\\.sub\\.five", "01234");
    CHECK(File::GetSizeRecursive(tree) == 15);
    CHECK(File::GetSizeRecursive(tree + static_cast<unsigned short>(0)) == 15);
    CHECK(File::GetSizeRecursive(folder.Path("tree\\t?n")) == 10);
    CHECK(File::GetSizeRecursive(folder.Path("missing")) == 0);
    CHECK(File::GetSizeRecursive(u""_w) == -1);
    CHECK(File::GetSizeRecursive(u"\0C:\\"_w) == -1);
    CHECK(File::FileExists(tree));
    CHECK(File::FileExists(folder.Path("tree\\ten")));
    CHECK_FALSE(File::FileExists(folder.Path("missing")));

    File huge(folder.Path("tree\\huge"), GENERIC_WRITE, 0, false, CREATE_NEW);
    huge.SetFilePos(5368709119, FILE_BEGIN);
    huge.Write("x");
    huge.Close();
    CHECK(File::GetSizeRecursive(folder.Path("tree\\huge")) == 5368709120);
    CHECK(File::GetSizeRecursive(tree) == 5368709135);
}
