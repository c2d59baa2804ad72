#include "tests/support/TempFolder.h"
#include "tests/support/Text.h"

#include <kelcore/file.h>

#include <climits>

TEST_CASE("paths are taken apart") {
    struct {
        String path, directory, name, extension, title;
    } const cases[] = {
        {u"C:\\dir\\"_w, u"C:\\dir"_w, u""_w, u""_w, u""_w},
        {u"C:\\dir"_w, u"C:\\"_w, u"dir"_w, u""_w, u"dir"_w},
        {u"C:\\"_w, u"C:\\"_w, u"\\"_w, u""_w, u"\\"_w},
        {u"c:\\\0x.y"_w, u"c:\\\0x.y"_w, u"\\"_w, u""_w, u"\\"_w},
        {u"1:\\x"_w, u"1:"_w, u"x"_w, u""_w, u"x"_w},
        {u"\\"_w, u""_w, u""_w, u""_w, u""_w},
        {u"C:readme"_w, u"."_w, u"readme"_w, u""_w, u"readme"_w},
        {u""_w, u"."_w, u""_w, u""_w, u""_w},
        {u"\0a\\b.c"_w, u"\0a"_w, u""_w, u""_w, u""_w},
        {u"d\\a\0b.c"_w, u"d"_w, u"a"_w, u""_w, u"a"_w},
        {u"a\0b.c"_w, u"."_w, u"a\0b.c"_w, u".c"_w, u"a\0b"_w},
        {u"C:\\dir.d\\file"_w, u"C:\\dir.d"_w, u"file"_w, u""_w, u"file"_w},
        {u".profile"_w, u"."_w, u".profile"_w, u".profile"_w, u""_w},
        {u"x/y.file."_w, u"."_w, u"x/y.file."_w, u"."_w, u"x/y.file"_w},
    };
    for (const auto& row : cases) {
        CAPTURE(row.path);
        CHECK(File::GetDirname(row.path) == row.directory);
        CHECK(File::GetBasename(row.path, u""_w) == row.name);
        CHECK(File::GetFileExtension(row.path) == row.extension);
        CHECK(File::GetFileTitleA(row.path) == row.title);
    }
}

TEST_CASE("base names and whole paths lose the extension they end with, or have it switched") {
    using Function = WideString (*)(const WideString& path, const WideString& extension);
    constexpr Function Basename = File::GetBasename, Cut = File::CutExtension, Switch = File::SwitchExtension;
    const struct {
        Function function;
        String path, extension, result;
    } cases[] = {
        {Basename, u"C:\\dir\\file.txt"_w, u".txt"_w, u"file"_w},
        {Basename, u"C:\\dir\\file.txt"_w, u".TXT"_w, u"file.txt"_w},
        {Basename, u"a"_w, u".txt"_w, u"a"_w},
        {Basename, u"ab"_w, u"\0b"_w, u"ab"_w},
        {Basename, u"a.b"_w, u".b\0"_w, u"a.b"_w},
        {Basename, u"C:\\"_w, u"\\"_w, u"\\"_w},
        {Cut, u"C:\\d\\a.b.c"_w, u""_w, u"C:\\d\\a.b"_w},
        {Cut, u"C:\\d.x\\file"_w, u""_w, u"C:\\d.x\\file"_w},
        {Cut, u"report.txt.bak"_w, u".txt"_w, u"report"_w},
        {Cut, u"a.txt\0\0"_w, u".txt\0"_w, u"a"_w},
        {Cut, u"a.b.b"_w, u".b"_w, u"a.b"_w},
        {Cut, u".txt"_w, u".txt"_w, u""_w},
        {Cut, u"txt"_w, u".txt"_w, u"txt"_w},
        {Cut, u""_w, u""_w, u""_w},
        {Switch, u"a.txt"_w, u".doc"_w, u"a.doc"_w},
        {Switch, u"a.b\\c"_w, u"doc"_w, u"a.b\\cdoc"_w},
        {Switch, u"\0a"_w, u".doc"_w, u""_w},
    };
    for (const auto& row : cases)
        CHECK_MESSAGE(row.function(row.path, row.extension) == row.result, (&row - cases));
}

TEST_CASE("directories and names are joined with one backslash") {
    const std::pair<String, String> cases[] = {{u"\0d"_w, u"f"_w},          {u"d"_w, u"d\\f"_w},
                                               {u"C:\\\0\0"_w, u"C:\\f"_w}, {u"C:\\dir\\\\"_w, u"C:\\dir\\f"_w},
                                               {u"C:"_w, u"C:\\f"_w},       {u"\\\\\\"_w, u"\\f"_w}};
    for (const auto& [directory, path] : cases)
        CHECK(File::MakePath(directory, u"f"_w) == path);
    CHECK((File::MakePath(u"d"_w, u""_w) == u"d\\"_w && File::MakePath(u"C:\\dir"_w, u"\\f"_w) == u"C:\\dir\\\\f"_w));
}

TEST_CASE("drive roots and absolute paths are told apart from the rest") {
    for (const String& path : {u"C:\\"_w, u"z:\\\0x"_w})
        CHECK_MESSAGE((File::IsDriveRoot(path) && File::IsPathAbsolute(path)), path);
    for (const String& path : {u"C:\\\\"_w, u"C:\\x"_w, u"\\\\"_w})
        CHECK_MESSAGE((!File::IsDriveRoot(path) && File::IsPathAbsolute(path)), path);
    for (const String& path : {u"C:"_w, u"C:/"_w, u"1:\\"_w, u"[:\\"_w, u"\x2022:\\"_w, u"\\x"_w, u"\\"_w, u""_w})
        CHECK_MESSAGE((!File::IsDriveRoot(path) && !File::IsPathAbsolute(path)), path);
}

TEST_CASE("the system completes paths of any length, and shortens existing ones") {
    const WideString full = File::GetFullPath(u"data.bin"_w);
    CHECK((File::IsPathAbsolute(full) && File::GetBasename(full, {}) == u"data.bin"_w));
    CHECK(File::GetFullPath(u""_w) == u""_w);
    for (const int length : {250, 258, 259, 260, 261, 1000}) {
        CAPTURE(length);
        String path = u"C:\\"_w;
        path.append(static_cast<std::size_t>(length) - path.size(), 'x');
        // Some systems refuse long texts here; the path then comes back as it was.
        const String written = u"C:\\.\\"_w + path.Right(length - 3);
        const bool refused = GetFullPathNameA(StdW2A(written).c_str(), 0, nullptr, nullptr) == 0;
        CHECK(File::GetFullPath(written) == (refused ? written : path));
    }

    const TempFolder folder;
    const String path = folder.Write("some long file name.text", "1");
    CHECK(File::GetSizeRecursive(File::GetShortPath(path)) == 1);
    CHECK(File::GetShortPath(folder.Path("missing")).empty());
}

TEST_CASE("a compacted path fits the count of characters or is whole") {
    const String path = u"C:\\first\\second\\third\\name.txt"_w;
    CHECK(File::CompactPath(path, 100) == path);
    CHECK(File::CompactPath(path, UINT_MAX) == path);
    CHECK(File::CompactPath(path, 16) == u"C:\\f...\\name.txt"_w);
    for (unsigned int count = 0; count != path.size() + 2; ++count)
        CHECK_MESSAGE(File::CompactPath(path, count).size() <= count, count);
    // Some systems take no path of more than MAX_PATH characters here.
    const String deep = u"C:\\"_w + WideString(300, 'd') + u"\\name.txt"_w;
    char whole[400] = "";
    const bool taken = PathCompactPathExA(whole, StdW2A(deep).c_str(), sizeof whole, 0) && StdA2W(whole) == deep;
    CHECK((!taken || File::CompactPath(deep, sizeof whole - 1) == deep));
}
