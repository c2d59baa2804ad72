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
    WIN32_FIND_DATAW wide = {};
    FileData data;
    CHECK(std::memcmp(&data, &wide, sizeof wide) == 0);
    const WIN32_FIND_DATAA entry = Entry("name", 0x21);
    data = entry;
    std::memcpy(&wide, &data, sizeof wide);
    CHECK(wide.dwFileAttributes == 0x21);
    CHECK(CompareFileTime(&wide.ftCreationTime, &entry.ftCreationTime) == 0);
    CHECK(CompareFileTime(&wide.ftLastAccessTime, &entry.ftLastAccessTime) == 0);
    CHECK(CompareFileTime(&wide.ftLastWriteTime, &entry.ftLastWriteTime) == 0);
    CHECK(wide.nFileSizeHigh == 1);
    CHECK(wide.nFileSizeLow == 0x40000000);
    CHECK(wide.dwReserved0 == 0);
    CHECK(WideString(reinterpret_cast<const unsigned short*>(wide.cFileName)) == u"name"_w);
    CHECK(WideString(reinterpret_cast<const unsigned short*>(wide.cAlternateFileName)) == u"SHORT~1.EXT"_w);
}

TEST_CASE("an entry answers for its names, size, times and attributes") {
    const FileData data = Data(Entry("a.tar.gz"));
    CHECK(data.GetFileName() == u"a.tar.gz"_w);
    CHECK(data.GetShortFileName() == u"SHORT~1.EXT"_w);
    CHECK(data.GetFileSize() == 5368709120);
    CHECK(data.GetCreationTime().dwHighDateTime == 2);
    CHECK(data.GetLastAccessTime().dwHighDateTime == 4);
    CHECK(data.GetLastWriteTime().dwHighDateTime == 6);
    WIN32_FIND_DATAA plain = Entry("plain");
    plain.cAlternateFileName[0] = '\0';
    CHECK(Data(plain).GetShortFileName() == u"plain"_w);

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

    const std::pair<const char*, bool> dots[] = {
        {".", true}, {"..", true}, {"...", false}, {".a", false}, {"a", false}};
    for (const auto& [name, isDots] : dots) {
        CAPTURE(name);
        CHECK(Data(Entry(name, FILE_ATTRIBUTE_DIRECTORY)).IsDots() == isDots);
        CHECK_FALSE(Data(Entry(name)).IsDots());
    }
    CHECK(Data(Entry("\xC3\xA4")).GetFileName() == StdA2W("\xC3\xA4"));
}

TEST_CASE("entries are equal apart from case and access time, and unequal by anything else") {
    const WIN32_FIND_DATAA base = Entry("Name.txt");
    const auto changed = [&base](auto change) {
        WIN32_FIND_DATAA entry = base;
        change(entry);
        return Data(entry);
    };
    const FileData equal[] = {
        changed([](auto& entry) { entry.ftLastAccessTime.dwHighDateTime = 99; }),
        changed([](auto& entry) { std::strcpy(entry.cFileName, "nAME.TXT"); }),
        changed([](auto& entry) { std::strcpy(entry.cAlternateFileName, "short~1.ext"); }),
        changed([](auto& entry) { entry.dwReserved0 = 7; }),
    };
    for (const FileData& data : equal) {
        CHECK(data == Data(base));
        CHECK_FALSE(data != Data(base));
    }
    const FileData different[] = {
        changed([](auto& entry) { entry.dwFileAttributes = 0; }),
        changed([](auto& entry) { entry.ftCreationTime.dwLowDateTime = 99; }),
        changed([](auto& entry) { entry.ftLastWriteTime.dwHighDateTime = 99; }),
        changed([](auto& entry) { entry.nFileSizeHigh = 0; }),
        changed([](auto& entry) { entry.nFileSizeLow = 0; }),
        changed([](auto& entry) { std::strcpy(entry.cFileName, "Name.txt2"); }),
        changed([](auto& entry) { std::strcpy(entry.cAlternateFileName, ""); }),
    };
    for (const FileData& data : different) {
        CHECK(data != Data(base));
        CHECK_FALSE(data == Data(base));
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
    CHECK(one.GetShortFileName().empty());
    CHECK_FALSE(one.Next());
}

TEST_CASE("a search without a result answers false and keeps the directory of the one before") {
    const TempFolder folder;
    folder.Folder("empty");
    folder.Write("file", "");
    FileFinder finder(folder.Path("file"), false);
    finder.Reset();
    CHECK_FALSE(finder.Start(folder.Path("empty\\none"), false));
    CHECK_FALSE(finder.Next());
    CHECK(finder.GetFilePath() == folder.Path() + u"\\"_w);
    CHECK_FALSE(finder.Start(folder.Path("empty\\*.*"), false));
    CHECK_FALSE(finder.Next());
    CHECK(File::GetDirname(finder.GetFilePath()) == folder.Path());
    finder.Reset();
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

    const __int64 huge = 5368709120;
    {
        const HANDLE file = CreateFileA(StdW2A(folder.Path("tree\\huge")).c_str(), GENERIC_WRITE, 0, nullptr,
                                        CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
        LONG high = 1;
        SetFilePointer(file, 0x40000000, &high, FILE_BEGIN);
        CHECK(SetEndOfFile(file));
        CloseHandle(file);
    }
    CHECK(File::GetSizeRecursive(folder.Path("tree\\huge")) == huge);
    CHECK(File::GetSizeRecursive(tree) == huge + 15);
}
