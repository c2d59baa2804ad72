#include "tests/support/TempFolder.h"
#include "tests/support/Text.h"

#include <kelcore/file.h>

#include <climits>

TEST_CASE("paths are taken apart") {
    struct {
        String path, directory, name, extension, title;
    } const cases[] = {
        {u"C:\\dir\\file.txt"_w, u"C:\\dir"_w, u"file.txt"_w, u".txt"_w, u"file"_w},
        {u"C:\\dir\\"_w, u"C:\\dir"_w, u""_w, u""_w, u""_w},
        {u"C:\\dir"_w, u"C:\\"_w, u"dir"_w, u""_w, u"dir"_w},
        {u"C:\\"_w, u"C:\\"_w, u"\\"_w, u""_w, u"\\"_w},
        {u"c:\\\0x.y"_w, u"c:\\\0x.y"_w, u"\\"_w, u""_w, u"\\"_w},
        {u"1:\\x"_w, u"1:"_w, u"x"_w, u""_w, u"x"_w},
        {u"\\dir"_w, u""_w, u"dir"_w, u""_w, u"dir"_w},
        {u"\\"_w, u""_w, u""_w, u""_w, u""_w},
        {u"\\\\server\\share\\f"_w, u"\\\\server\\share"_w, u"f"_w, u""_w, u"f"_w},
        {u"file"_w, u"."_w, u"file"_w, u""_w, u"file"_w},
        {u"C:readme"_w, u"."_w, u"readme"_w, u""_w, u"readme"_w},
        {u"C:"_w, u"."_w, u""_w, u""_w, u""_w},
        {u""_w, u"."_w, u""_w, u""_w, u""_w},
        {u"\0a\\b.c"_w, u"\0a"_w, u""_w, u""_w, u""_w},
        {u"d\\a\0b.c"_w, u"d"_w, u"a"_w, u""_w, u"a"_w},
        {u"a\0b.c"_w, u"."_w, u"a\0b.c"_w, u".c"_w, u"a\0b"_w},
        {u"x/y.tar.gz"_w, u"."_w, u"x/y.tar.gz"_w, u".gz"_w, u"x/y.tar"_w},
        {u"C:\\dir.d\\file"_w, u"C:\\dir.d"_w, u"file"_w, u""_w, u"file"_w},
        {u".profile"_w, u"."_w, u".profile"_w, u".profile"_w, u""_w},
        {u"file."_w, u"."_w, u"file."_w, u"."_w, u"file"_w},
        {u"C:\\C:\\x"_w, u"C:\\C:"_w, u"x"_w, u""_w, u"x"_w},
    };
    for (const auto& row : cases) {
        CAPTURE(row.path);
        CHECK(File::GetDirname(row.path) == row.directory);
        CHECK(File::GetBasename(row.path, u""_w) == row.name);
        CHECK(File::GetFileExtension(row.path) == row.extension);
        CHECK(File::GetFileTitleA(row.path) == row.title);
    }
}

TEST_CASE("a base name loses the extension it ends with") {
    struct {
        String path, extension, name;
    } const cases[] = {
        {u"C:\\dir\\file.txt"_w, u".txt"_w, u"file"_w},
        {u"C:\\dir\\file.txt"_w, u".doc"_w, u"file.txt"_w},
        {u"C:\\dir\\file.txt"_w, u".TXT"_w, u"file.txt"_w},
        {u"dir\\.txt"_w, u".txt"_w, u""_w},
        {u"a"_w, u".txt"_w, u"a"_w},
        {u"ab"_w, u"\0b"_w, u"ab"_w},
        {u"a.b"_w, u".b\0"_w, u"a.b"_w},
        {u"C:\\"_w, u"\\"_w, u"\\"_w},
    };
    for (const auto& row : cases) {
        CAPTURE(row.path);
        CAPTURE(row.extension);
        CHECK(File::GetBasename(row.path, row.extension) == row.name);
    }
}

TEST_CASE("extensions are cut off and switched") {
    struct {
        String path, extension, cut;
    } const cases[] = {
        {u"C:\\d\\a.b.c"_w, u""_w, u"C:\\d\\a.b"_w},
        {u"C:\\d.x\\file"_w, u""_w, u"C:\\d.x\\file"_w},
        {u"report.txt.bak"_w, u".txt"_w, u"report"_w},
        {u"a.TXT"_w, u".txt"_w, u"a.TXT"_w},
        {u"a.b\\c"_w, u""_w, u"a.b\\c"_w},
        {u"a.txt\0\0"_w, u".txt\0"_w, u"a"_w},
        {u"a.b.b"_w, u".b"_w, u"a.b"_w},
        {u"a\\b\\c"_w, u"\\b"_w, u"a\\b\\c"_w},
        {u".txt"_w, u".txt"_w, u""_w},
        {u"txt"_w, u".txt"_w, u"txt"_w},
        {u"name."_w, u""_w, u"name"_w},
        {u""_w, u""_w, u""_w},
    };
    for (const auto& row : cases) {
        CAPTURE(row.path);
        CAPTURE(row.extension);
        CHECK(File::CutExtension(row.path, row.extension) == row.cut);
    }
    CHECK(File::SwitchExtension(u"a.txt"_w, u".doc"_w) == u"a.doc"_w);
    CHECK(File::SwitchExtension(u"a"_w, u".doc"_w) == u"a.doc"_w);
    CHECK(File::SwitchExtension(u"a.b\\c"_w, u"doc"_w) == u"a.b\\cdoc"_w);
    CHECK(File::SwitchExtension(u""_w, u".doc"_w) == u""_w);
    CHECK(File::SwitchExtension(u"\0a"_w, u".doc"_w) == u""_w);
}

TEST_CASE("directories and names are joined with one backslash") {
    struct {
        String directory, name, path;
    } const cases[] = {
        {u""_w, u"f"_w, u"f"_w},
        {u"\0d"_w, u"f"_w, u"f"_w},
        {u"d"_w, u""_w, u"d\\"_w},
        {u"C:\\"_w, u"f.txt"_w, u"C:\\f.txt"_w},
        {u"C:\\\0\0"_w, u"f"_w, u"C:\\f"_w},
        {u"C:\\dir\\\\"_w, u"f"_w, u"C:\\dir\\f"_w},
        {u"C:"_w, u"f"_w, u"C:\\f"_w},
        {u"C:\\\\"_w, u"f"_w, u"C:\\f"_w},
        {u"\\\\\\"_w, u"f"_w, u"\\f"_w},
        {u"C:\\dir"_w, u"\\f"_w, u"C:\\dir\\\\f"_w},
    };
    for (const auto& row : cases) {
        CAPTURE(row.directory);
        CHECK(File::MakePath(row.directory, row.name) == row.path);
    }
}

TEST_CASE("drive roots and absolute paths are told apart from the rest") {
    struct {
        String path;
        bool isRoot, isAbsolute;
    } const cases[] = {
        {u"C:\\"_w, true, true},    {u"c:\\\0x"_w, true, true}, {u"C:\\\\"_w, false, true},
        {u"C:\\x"_w, false, true},  {u"C:"_w, false, false},    {u"C:/"_w, false, false},
        {u"1:\\"_w, false, false},  {u"[:\\"_w, false, false},  {u"\x2022:\\"_w, false, false},
        {u"C:dir"_w, false, false}, {u"\\x"_w, false, false},   {u"\\\\srv"_w, false, true},
        {u"\\\\"_w, false, true},   {u"\\"_w, false, false},    {u""_w, false, false},
    };
    for (const auto& row : cases) {
        CAPTURE(row.path);
        CHECK(File::IsDriveRoot(row.path) == row.isRoot);
        CHECK(File::IsPathAbsolute(row.path) == row.isAbsolute);
    }
}

TEST_CASE("the system completes paths of any length, and shortens existing ones") {
    const WideString full = File::GetFullPath(u"data.bin"_w);
    CHECK(File::IsPathAbsolute(full));
    CHECK(File::GetBasename(full, {}) == u"data.bin"_w);
    CHECK(File::GetFullPath(u"C:\\a\\.\\b\\..\\c"_w) == u"C:\\a\\c"_w);
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
    const WideString shortened = File::GetShortPath(path);
    CHECK(File::FileExists(shortened));
    CHECK(File::GetSizeRecursive(shortened) == 1);
    CHECK(File::GetShortPath(folder.Path("missing")).empty());
}

TEST_CASE("a compacted path fits the count of characters or is whole") {
    const String path = u"C:\\first\\second\\third\\name.txt"_w;
    CHECK(File::CompactPath(path, 100) == path);
    CHECK(File::CompactPath(path, UINT_MAX) == path);
    CHECK(File::CompactPath(path, 16) == u"C:\\f...\\name.txt"_w);
    for (unsigned int count = 0; count != path.size() + 2; ++count) {
        CAPTURE(count);
        CHECK(File::CompactPath(path, count).size() <= count);
    }
}
