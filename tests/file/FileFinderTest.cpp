#include "tests/support/TempFolder.h"
#include "tests/support/Text.h"

#include <kelcore/file.h>

#include <cstring>
#include <set>
#include <tuple>

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

std::set<WideString> Names(const WideString& pattern, bool withdots) {
    FileFinder finder;
    std::set<WideString> names;
    for (bool found = finder.Start(pattern, withdots); found; found = finder.Next())
        CHECK(names.insert(finder.GetFileName()).second);
    CHECK_FALSE(finder.Next());
    return names;
}

} // namespace

TEST_CASE("an entry has the layout of the system's wide record and answers from it") {
    const WIN32_FIND_DATAA entry = Entry("name");
    const FileData data = Data(entry), none;
    WIN32_FIND_DATAW wide = {};
    CHECK(std::memcmp(&none, &wide, sizeof wide) == 0);
    std::memcpy(&wide, &data, sizeof wide);
    CHECK(std::memcmp(&wide, &entry, offsetof(WIN32_FIND_DATAA, cFileName)) == 0);
    CHECK(data.GetFileName() == reinterpret_cast<const unsigned short*>(wide.cFileName));
    CHECK(data.GetShortFileName() == reinterpret_cast<const unsigned short*>(wide.cAlternateFileName));
    CHECK(data.GetFileName() + data.GetShortFileName() == u"nameSHORT~1.EXT"_w);
    CHECK((data.GetFileSize() == 5368709120 && data.GetCreationTime().dwHighDateTime == 2));
    CHECK((data.GetLastAccessTime().dwHighDateTime == 4 && data.GetLastWriteTime().dwHighDateTime == 6));

    WIN32_FIND_DATAA plain = Entry("\xC3\xA4");
    plain.cAlternateFileName[0] = '\0';
    CHECK(Data(plain).GetShortFileName() == StdA2W("\xC3\xA4"));
    for (const char* const name : {"readme", "a.tar.gz", ".profile", "a."})
        CHECK(Data(Entry(name)).GetFileExtension() == File::GetFileExtension(StdA2W(name)));
    const std::pair<bool (FileData::*)() const, DWORD> attributes[] = {
        {&FileData::IsReadOnly, 0x1},   {&FileData::IsHidden, 0x2},    {&FileData::IsSystem, 0x4},
        {&FileData::IsDirectory, 0x10}, {&FileData::IsArchived, 0x20}, {&FileData::IsCompressed, 0x800}};
    for (const auto& [is, bit] : attributes)
        CHECK_MESSAGE(((Data(Entry("x", bit)).*is)() && !(Data(Entry("x", ~bit)).*is)()), bit);
    for (const std::string name : {".", "..", "...", ".a"})
        for (const DWORD attribute : {FILE_ATTRIBUTE_DIRECTORY, FILE_ATTRIBUTE_ARCHIVE}) {
            const bool isDots = attribute == FILE_ATTRIBUTE_DIRECTORY && (name == "." || name == "..");
            CHECK_MESSAGE(Data(Entry(name.c_str(), attribute)).IsDots() == isDots, name);
        }
}

TEST_CASE("entries are equal apart from case and access time, and unequal by anything else") {
    const std::pair<bool, void (*)(WIN32_FIND_DATAA&)> cases[] = {
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
        row.second(entry);
        CHECK(((Data(entry) == base) == row.first && (Data(entry) != base) != row.first));
    }
}

TEST_CASE("a finder walks the matching entries, with or without the dots") {
    const TempFolder folder;
    folder.Write("two.txt", "22");
    folder.Write(".hidden", "");
    folder.Folder("sub.txt");
    using Found = std::set<WideString>;
    CHECK(Names(folder.Path("*.*"), false) == Found{u"two.txt"_w, u"sub.txt"_w, u".hidden"_w});
    CHECK(Names(folder.Path("*"), true) == Found{u"two.txt"_w, u"sub.txt"_w, u".hidden"_w, u"."_w, u".."_w});

    FileFinder one(folder.Path("TWO.TXT"), false);
    CHECK(one.GetFileSize() == 2);
    CHECK(one.GetFilePath() == folder.Path("two.txt"));
    CHECK(one.GetShortPath() == File::GetShortPath(folder.Path("two.txt")));
    CHECK_FALSE(one.Next());
    CHECK(one.GetFileTitleA() == u"two"_w);
    SetLastError(4711);
    one.Reset();
    CHECK(GetLastError() == 4711);
    CHECK((one.GetFileName().empty() && !one.Next()));
}

TEST_CASE("a search without a result answers false and keeps the directory of the one before") {
    const TempFolder folder;
    folder.Folder("empty");
    folder.Write("file", "");
    FileFinder finder(folder.Path("file"), false);
    for (const std::string pattern : {"empty\\none", "empty\\*.*"}) {
        CAPTURE(pattern);
        finder.Reset();
        CHECK((!finder.Start(folder.Path(pattern), false) && !finder.Next()));
        CHECK(File::GetDirname(finder.GetFilePath()) == folder.Path());
    }
    finder.Reset();
    CHECK((finder.Start(folder.Path("empty\\*.*"), true) && finder.IsDots()));
    CHECK(File::GetDirname(finder.GetFilePath()) == folder.Path("empty"));
}

TEST_CASE("sizes are summed over files and folders") {
    const TempFolder folder;
    const String tree = folder.Folder("tree");
    CHECK(File::GetSizeRecursive(tree) == 0);
    folder.Write("tree\\ten", "0123456789");
    folder.Folder("tree\\.sub");
    File huge(folder.Path("tree\\.sub\\.huge"), GENERIC_WRITE, 0, false, CREATE_NEW);
    huge.SetFilePos(5368709119, FILE_BEGIN);
    huge.Write("x");
    huge.Close();
    const std::tuple<String, __int64, bool> rows[] = {{tree, 5368709130, true},
                                                      {tree + static_cast<unsigned short>(0), 5368709130, true},
                                                      {folder.Path("tree\\.sub\\.huge"), 5368709120, true},
                                                      {folder.Path("tree\\t?n"), 10, false},
                                                      {folder.Path("missing"), 0, false},
                                                      {u"\0C:\\"_w, -1, false}};
    for (const auto& [path, size, exists] : rows) {
        CAPTURE(path);
        CHECK(File::GetSizeRecursive(path) == size);
        CHECK(File::FileExists(path) == exists);
    }
}
