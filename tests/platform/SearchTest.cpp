#include "Workplace.h"

#include <algorithm>
#include <set>
#include <vector>

namespace {

// All entries of a search, "." and ".." included, sorted; the error in brackets if there is none.
std::vector<std::string> Found(const std::string& pattern) {
    WIN32_FIND_DATAA entry;
    const HANDLE search = FindFirstFileA(pattern.c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE)
        return {"(" + std::to_string(GetLastError()) + ")"};
    std::vector<std::string> names;
    do {
        names.push_back(entry.cFileName);
        CHECK(entry.cAlternateFileName[0] == (kOnLayer ? '\0' : entry.cAlternateFileName[0]));
    } while (FindNextFileA(search, &entry));
    CHECK(GetLastError() == ERROR_NO_MORE_FILES);
    CHECK(FindClose(search));
    std::sort(names.begin(), names.end());
    return names;
}

std::string Joined(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : " ") + name;
    return text;
}

// Whether a row holds everywhere, or only where "?" and "*." are read as on Windows.
enum Where { Everywhere, LayerOnly };

struct Row {
    std::string pattern;
    std::string found;
    Where where = Everywhere;
};

void CheckRows(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        if (row.where == LayerOnly && !kOnLayer)
            continue;
        CAPTURE(row.pattern);
        CHECK(Joined(Found(row.pattern)) == row.found);
    }
}

ULONGLONG Join(DWORD high, DWORD low) {
    return ULONGLONG{high} << 32 | low;
}

ULONGLONG Ticks(const FILETIME& time) {
    return Join(time.dwHighDateTime, time.dwLowDateTime);
}

} // namespace

TEST_CASE("patterns find what the wildcard language says") {
    Workplace work;
    for (const char* name : {"File.txt", "noext", "a.b.c", ".dot", "x.tx", "Abc", "two words.t"})
        Workplace::Write(name);
    REQUIRE(CreateDirectoryA("dir", nullptr));
    const std::string all = ". .. .dot Abc File.txt a.b.c dir noext two words.t x.tx";
    CheckRows({{"*", all},
               {"*.*", all},
               {"*.*.*", all},
               {"C:*", all},
               {"*.", ". .. Abc dir noext", LayerOnly},
               {"*..", ". .. Abc dir noext", LayerOnly},
               {"*.txt", "File.txt"},
               {"*.TXT", "File.txt"},
               {"*.txt.", "File.txt"},
               {"*.tx", "x.tx"},
               {"*.c", "a.b.c"},
               {"*.b.*", "a.b.c"},
               {"a*c", "Abc a.b.c"},
               {"*b*", "Abc a.b.c"},
               {"a.?.c", "a.b.c"},
               {"a.?.?", "a.b.c"},
               {"???", "Abc dir"},
               {"????", "Abc dir", LayerOnly},
               {"??", "(2)", LayerOnly},
               {"noext?", "noext", LayerOnly},
               {"noext??", "noext", LayerOnly},
               {"noext.*", "noext"},
               {"noext.?", "noext", LayerOnly},
               {"????.txt", "File.txt"},
               {"?????.txt", "File.txt", LayerOnly},
               {"???.txt", "(2)"},
               {"?.tx?", "x.tx", LayerOnly},
               {"file.txt?", "File.txt", LayerOnly},
               {"file.tx?x", "(2)"},
               {"?dot", "(2)", LayerOnly},
               {".*", ". .. .dot"},
               {"* *", "two words.t"},
               {"*d", "(2)"},
               {"<.txt", "File.txt", LayerOnly},
               {"<", ". .. Abc dir noext", LayerOnly},
               {"noext\"", "noext", LayerOnly},
               {"file>>>>txt", "(2)", LayerOnly},
               {"*a*a*a*a*a*a*a*a*a*a*a*a*a*a*a*a*b", "(2)"}});
}

TEST_CASE("a pattern without wildcards names one entry, as it is spelled on the disk") {
    Workplace work;
    Workplace::Write("File.txt");
    REQUIRE(CreateDirectoryA("Dir", nullptr));
    Workplace::Write("Dir\\in");
    const std::string own = work.Path().substr(work.Path().rfind('\\') + 1);
    const std::string parent = work.Path().substr(0, work.Path().rfind('\\'));
    CheckRows({{"FILE.TXT", "File.txt"},
               {"file.txt. .", "File.txt"},
               {"C:file.txt", "File.txt"},
               {"dir", "Dir"},
               {"dir/../file.txt", "File.txt"},
               {"dir\\.", "Dir"},
               {"DIR\\*", ". .. in"},
               {"dir\\\\*", ". .. in"},
               {"dir/*", ". .. in"},
               {".", own},
               {"dir\\..", own},
               {"..", parent.substr(parent.rfind('\\') + 1)},
               {"", "(3)"},
               {"missing", "(2)"},
               {"missing\\x", "(3)"},
               {"missing\\*", "(3)", LayerOnly},
               {"dir\\none*", "(2)"},
               {"file.txt\\", "(2)"},
               {"dir\\", "(2)"},
               {"file.txt\\*", "(267)", LayerOnly},
               {"*\\x", "(123)"},
               {"a|b", "(123)", LayerOnly},
               {"a|*", "(123)", LayerOnly},
               {"C:\\", "(2)"},
               {"C:", "(2)"},
               {"\\", "(2)"},
               {"Q:\\*", "(3)"},
               {"\\\\server\\share\\*", "(53)", LayerOnly},
               {"NUL", "NUL"}});
}

TEST_CASE("a root has no dots, whatever stands before the pattern") {
    Workplace work;
    const auto root = Found("C:\\*");
    CHECK(root.size() > 1);
    CHECK(std::count(root.begin(), root.end(), ".") + std::count(root.begin(), root.end(), "..") == 0);
    for (const std::string pattern : {"C:\\\\*.*", "\\*", "C:/*.*", "..\\..\\..\\..\\..\\..\\..\\..\\*"}) {
        CAPTURE(pattern);
        CHECK(Found(pattern) == root);
    }
    REQUIRE(SetCurrentDirectoryA("C:\\"));
    CHECK(Found("*") == root);
    CHECK(Joined(Found("..")) == "(2)");
}

TEST_CASE("a search lists the dots first and every name once") {
    Workplace work;
    std::set<std::string> expected;
    for (int i = 0; i < 1500; ++i) {
        const std::string name = std::string(static_cast<std::size_t>(i % 60), 'n') + std::to_string(i);
        expected.insert(name);
        Workplace::Write(name);
    }
    const std::string longest(240, 'L');
    Workplace::Write(longest);
    expected.insert(longest);

    WIN32_FIND_DATAA entry;
    const HANDLE search = FindFirstFileA("*.*", &entry);
    REQUIRE(search != INVALID_HANDLE_VALUE);
    CHECK(std::string(entry.cFileName) == ".");
    CHECK((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0);
    CHECK(FindNextFileA(search, &entry));
    CHECK(std::string(entry.cFileName) == "..");
    std::size_t count = 0;
    for (; FindNextFileA(search, &entry); ++count)
        CHECK(expected.erase(entry.cFileName) == 1);
    CHECK(count == 1501);
    CHECK(expected.empty());
    const std::string last = entry.cFileName;
    CHECK(ErrorOf(FindNextFileA(search, &entry)) == ERROR_NO_MORE_FILES);
    CHECK(last == entry.cFileName);
    CHECK(ErrorOf(CloseHandle(search)) == ERROR_INVALID_HANDLE);
    CHECK(FindClose(search));
    CHECK(ErrorOf(FindClose(INVALID_HANDLE_VALUE)) == ERROR_INVALID_HANDLE);
    CHECK(ErrorOf(FindNextFileA(INVALID_HANDLE_VALUE, &entry)) == ERROR_INVALID_HANDLE);
}

TEST_CASE("an entry tells size, times and attributes of its file") {
    Workplace work;
    Workplace::Write("large");
    const HANDLE file = CreateFileA("large", GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    LONG high = 1;
    CHECK(SetFilePointer(file, 0x40000000, &high, FILE_BEGIN) == 0x40000000);
    REQUIRE(SetEndOfFile(file));
    const FILETIME accessed = {0x12345600, 0x01C00000};
    const FILETIME written = {0x9ABCDE00, 0x01B00000};
    CHECK(SetFileTime(file, nullptr, &accessed, &written));
    FILETIME created;
    CHECK(GetFileTime(file, &created, nullptr, nullptr));
    CHECK(CloseHandle(file));

    WIN32_FIND_DATAA entry;
    REQUIRE(FindClose(FindFirstFileA("large", &entry)));
    WIN32_FILE_ATTRIBUTE_DATA facts;
    REQUIRE(GetFileAttributesExA("large", GetFileExInfoStandard, &facts));
    CHECK(Join(entry.nFileSizeHigh, entry.nFileSizeLow) == 5368709120);
    CHECK(Join(facts.nFileSizeHigh, facts.nFileSizeLow) == 5368709120);
    CHECK(Ticks(entry.ftLastWriteTime) == Ticks(written));
    CHECK(Ticks(facts.ftLastWriteTime) == Ticks(written));
    CHECK(Ticks(entry.ftLastAccessTime) == Ticks(accessed));
    CHECK(Ticks(entry.ftCreationTime) == Ticks(facts.ftCreationTime));
    CHECK((!kOnLayer || Ticks(entry.ftCreationTime) == Ticks(created)));
    CHECK((entry.dwFileAttributes & ~FILE_ATTRIBUTE_SPARSE_FILE) == FILE_ATTRIBUTE_ARCHIVE);
    CHECK(ErrorOf(GetFileAttributesExA("large", GetFileExMaxInfoLevel, &facts)) == ERROR_INVALID_PARAMETER);
}
