#include "Opened.h"

#include "tests/support/FileTimes.h"

#include <set>

namespace {

// All entries of a search, "." and ".." included, sorted; the error in brackets if there is none.
std::string Found(const std::string& pattern) {
    WIN32_FIND_DATAA entry;
    const HANDLE search = FindFirstFileA(pattern.c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE)
        return "(" + std::to_string(GetLastError()) + ")";
    std::multiset<std::string> names;
    do {
        names.insert(entry.cFileName);
    } while (FindNextFileA(search, &entry));
    CHECK(GetLastError() == ERROR_NO_MORE_FILES);
    CHECK(FindClose(search));
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : " ") + name;
    return text;
}

void Finds(const std::string& pattern, const std::string& names) {
    CHECK_MESSAGE(Found(pattern) == names, pattern);
}

} // namespace

TEST_CASE("patterns find what the wildcard language says") {
    Workplace work;
    for (const char* name : {"File.txt", "noext", "a.b.c", ".dot", "x.tx", "Abc", "two words.t"})
        Workplace::Write(name);
    REQUIRE(CreateDirectoryA("dir", nullptr));
    for (const char* pattern : {"*", "*.*", "*.*.*", "C:*"})
        Finds(pattern, ". .. .dot Abc File.txt a.b.c dir noext two words.t x.tx");
    Finds("*.TXT", "File.txt");
    Finds("*.tx", "x.tx");
    Finds("a*c", "Abc a.b.c");
    Finds("a.?.?", "a.b.c");
    Finds("???", "Abc dir");
    Finds("????.txt", "File.txt");
    Finds("???.txt", "(2)");
    Finds(".*", ". .. .dot");
    Finds("*a*a*a*a*a*a*a*a*a*a*a*a*a*a*a*a*b", "(2)");
    if (!kOnLayer) // Wine reads "?" and "*." otherwise than Windows
        return;
    for (const char* pattern : {"*.", "*..", "<"})
        Finds(pattern, ". .. Abc dir noext");
    Finds("????", "Abc dir");
    Finds("??", "(2)");
    for (const char* pattern : {"noext??", "noext.?", "noext\""})
        Finds(pattern, "noext");
    Finds("file.txt?", "File.txt");
    Finds("?dot", "(2)");
    Finds("<.txt", "File.txt");
}

TEST_CASE("a pattern without wildcards names one entry, as it is spelled on the disk") {
    Workplace work;
    Workplace::Write("File.txt");
    REQUIRE(CreateDirectoryA("Dir", nullptr));
    Workplace::Write("Dir\\in");
    const std::string own = work.Path().substr(work.Path().rfind('\\') + 1);
    for (const char* pattern : {"FILE.TXT", "file.txt. .", "C:file.txt", "dir/../file.txt"})
        Finds(pattern, "File.txt");
    Finds("dir\\.", "Dir");
    for (const char* pattern : {"DIR\\*", "dir\\\\*", "dir/*"})
        Finds(pattern, ". .. in");
    Finds(".", own);
    for (const char* pattern : {"", "missing\\x", "Q:\\*"})
        Finds(pattern, "(3)");
    for (const char* pattern : {"missing", "dir\\none*", "file.txt\\", "dir\\", "C:\\", "C:", "\\"})
        Finds(pattern, "(2)");
    Finds("*\\x", "(123)");
    if (!kOnLayer)
        return;
    Finds("missing\\*", "(3)");
    Finds("file.txt\\*", "(267)");
    Finds("a|b", "(123)");
    Finds("\\\\server\\share\\*", "(53)");
}

TEST_CASE("a root has no dots, whatever stands before the pattern") {
    Workplace work;
    const std::string root = Found("C:\\*");
    CHECK(root.find(' ') != std::string::npos);
    CHECK((" " + root).find(" .. ") == std::string::npos);
    for (const char* pattern : {"C:\\\\*.*", "\\*", "C:/*.*", "..\\..\\..\\..\\..\\..\\..\\..\\*"})
        Finds(pattern, root);
    REQUIRE(SetCurrentDirectoryA("C:\\"));
    Finds("*", root);
    Finds("..", "(2)");
}

TEST_CASE("a search lists the dots first and every name once") {
    Workplace work;
    std::set<std::string> expected = {std::string(240, 'L')};
    for (int i = 0; i < 1500; ++i)
        expected.insert(std::string(static_cast<std::size_t>(i % 60), 'n') + std::to_string(i));
    for (const std::string& name : expected)
        Workplace::Write(name);

    WIN32_FIND_DATAA entry;
    const HANDLE search = FindFirstFileA("*.*", &entry);
    REQUIRE(search != INVALID_HANDLE_VALUE);
    CHECK(std::string(entry.cFileName) == ".");
    CHECK(FindNextFileA(search, &entry));
    CHECK(std::string(entry.cFileName) == "..");
    while (FindNextFileA(search, &entry))
        CHECK(expected.erase(entry.cFileName) == 1);
    CHECK(expected.empty());
    const std::string last = entry.cFileName;
    CHECK(ErrorOf(FindNextFileA(search, &entry)) == ERROR_NO_MORE_FILES);
    CHECK(last == entry.cFileName);
    CHECK(ErrorOf(CloseHandle(search)) == ERROR_INVALID_HANDLE);
    CHECK(FindClose(search));
}

TEST_CASE("an entry tells size, times and attributes of its file") {
    Workplace work;
    Workplace::Write("large");
    Opened file("large");
    LONG high = 1;
    CHECK(SetFilePointer(file, 0x40000000, &high, FILE_BEGIN) == 0x40000000);
    REQUIRE(SetEndOfFile(file));
    const FILETIME accessed = {0x12345600, 0x01C00000}, written = {0x9ABCDE00, 0x01B00000};
    CHECK(SetFileTime(file, nullptr, &accessed, &written));
    FILETIME created;
    CHECK(GetFileTime(file, &created, nullptr, nullptr));
    file.Close();

    WIN32_FIND_DATAA entry;
    REQUIRE(FindClose(FindFirstFileA("large", &entry)));
    WIN32_FILE_ATTRIBUTE_DATA facts;
    REQUIRE(GetFileAttributesExA("large", GetFileExInfoStandard, &facts));
    const auto tells = [&](const auto& told) {
        CHECK((told.nFileSizeHigh == 1 && told.nFileSizeLow == 0x40000000));
        CHECK(Count(told.ftLastWriteTime) == Count(written));
        CHECK(Count(told.ftLastAccessTime) == Count(accessed));
        CHECK((!kOnLayer || Count(told.ftCreationTime) == Count(created)));
        CHECK((told.dwFileAttributes & ~FILE_ATTRIBUTE_SPARSE_FILE) == FILE_ATTRIBUTE_ARCHIVE);
    };
    tells(entry);
    tells(facts);
}
