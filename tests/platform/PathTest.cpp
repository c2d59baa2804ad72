#include "Workplace.h"

#include <cstring>
#include <functional>
#include <vector>

namespace {

struct Full {
    std::string path;
    std::string full;
    std::string part; // "" if there is none
};

std::string FullPathOf(const std::string& path, std::string* part = nullptr) {
    char buffer[1024] = "";
    char* begin = nullptr;
    const DWORD length = GetFullPathNameA(path.c_str(), sizeof buffer, buffer, &begin);
    CHECK(length == std::strlen(buffer));
    if (part)
        *part = begin ? begin : "";
    return buffer;
}

void CheckFull(const Full& row, const std::string& before) {
    CAPTURE(row.path);
    std::string part;
    CHECK(FullPathOf(row.path, &part) == before + row.full);
    CHECK(part == row.part);
}

std::string Compacted(const std::string& path, UINT size) {
    char buffer[256];
    std::memset(buffer, '#', sizeof buffer);
    CHECK(PathCompactPathExA(buffer, path.c_str(), size, 0));
    CHECK(buffer[size] == '#');
    return buffer;
}

using Giver = std::function<DWORD(char* buffer, DWORD size)>;

// The convention that all calls share which give a path out.
void CheckSizes(const Giver& give) {
    std::vector<char> buffer(600, '#');
    const DWORD length = give(buffer.data(), 600);
    REQUIRE(length > 1);
    const std::string whole = buffer.data();
    CHECK(whole.size() == length);
    for (const DWORD size : {DWORD{0}, DWORD{1}, length - 1, length}) {
        CAPTURE(size);
        CHECK(give(buffer.data(), size) == length + 1);
    }
    CHECK(give(nullptr, 0) == length + 1);
    CHECK(give(buffer.data(), length + 1) == length);
    CHECK(whole == buffer.data());
}

} // namespace

TEST_CASE("a full path comes from the text alone") {
    Workplace work; // on drive C:
    const Full rows[] = {{"C:\\", "C:\\", ""},
                         {"c:\\x", "c:\\x", "x"},
                         {"\\", "C:\\", ""},
                         {"\\x/y", "C:\\x\\y", "y"},
                         {"\\:x", "C:\\:x", ":x"},
                         {"C:/a/../b/", "C:\\b\\", ""},
                         {"C:\\a\\.\\b", "C:\\a\\b", "b"},
                         {"C:\\a\\.", "C:\\a", "a"},
                         {"C:\\a\\..\\..\\..", "C:\\", ""},
                         {"C:\\\\\\a\\\\b", "C:\\a\\b", "b"},
                         {"C:\\a.\\b.\\", "C:\\a\\b\\", ""},
                         {"C:\\a. . ", "C:\\a", "a"},
                         {"C:\\a \\b", "C:\\a \\b", "b"},
                         {"C:\\a\\...", "C:\\a\\", ""},
                         {"C:\\a. \\b\\..", "C:\\a", "a"},
                         {"C:\\a\\ \\.", "C:\\a\\", ""},
                         {"C:\\ a", "C:\\ a", " a"},
                         {"C:\\a*?|b", "C:\\a*?|b", "a*?|b"},
                         {"D:x", "D:\\x", "x"},
                         {"Q:\\y", "Q:\\y", "y"},
                         {"//s/h/f", "\\\\s\\h\\f", "f"},
                         {"\\\\s\\h\\x\\..\\..\\..\\y", "\\\\s\\h\\y", "y"},
                         {"\\\\s\\h\\..", "\\\\s\\h\\", ""},
                         {"\\\\s", "\\\\s", ""},
                         {"\\\\?\\C:\\a\\..\\b", "\\\\?\\C:\\b", "b"},
                         {"NUL", "\\\\.\\NUL", ""},
                         {"nul:", "\\\\.\\nul", ""}};
    for (const Full& row : rows)
        CheckFull(row, "");
    CHECK(GetFullPathNameA("", 0, nullptr, nullptr) == 0);
    CHECK(GetFullPathNameA(" ", 0, nullptr, nullptr) == 0);
    if (kOnLayer) // the referee ends at MAX_PATH
        CHECK(FullPathOf("C:\\" + std::string(500, 'x')).size() == 503);
}

TEST_CASE("a relative path starts at the current directory") {
    Workplace work;
    REQUIRE(CreateDirectoryA("Inner", nullptr));
    const Full rows[] = {{"a", "\\a", "a"},      {"a\\", "\\a\\", ""},     {".\\a", "\\a", "a"},
                         {"C:x", "\\x", "x"},    {"a\\..\\b", "\\b", "b"}, {"a.", "\\a", "a"},
                         {"...", "\\", ""},      {"C:...", "\\", ""},      {"Inner\\.", "\\Inner", "Inner"},
                         {"a\\. ", "\\a\\", ""}, {"  a", "\\  a", "  a"}};
    for (const Full& row : rows)
        CheckFull(row, work.Path());
    CHECK(FullPathOf(".") == work.Path());

    CHECK(ErrorOf(SetCurrentDirectoryA("missing")) == ERROR_FILE_NOT_FOUND);
    CHECK(ErrorOf(SetCurrentDirectoryA("missing\\x")) == ERROR_PATH_NOT_FOUND);
    CHECK(ErrorOf(SetCurrentDirectoryA("")) == ERROR_INVALID_NAME);
    Workplace::Write("file");
    CHECK(ErrorOf(SetCurrentDirectoryA("file")) == ERROR_DIRECTORY);
    REQUIRE(SetCurrentDirectoryA("Inner\\"));
    CHECK(FullPathOf("..") == work.Path());
    CHECK(FullPathOf("x") == work.Path() + "\\Inner\\x");
    REQUIRE(SetCurrentDirectoryA("C:\\"));
    CHECK(FullPathOf("x") == "C:\\x");
    CHECK(FullPathOf("..\\x") == "C:\\x");
}

TEST_CASE("paths are given out whole, or their size is told") {
    Workplace work;
    Workplace::Write("file");
    CheckSizes([](char* buffer, DWORD size) { return GetFullPathNameA("some\\path", size, buffer, nullptr); });
    CheckSizes([](char* buffer, DWORD size) { return GetCurrentDirectoryA(size, buffer); });
    CheckSizes([](char* buffer, DWORD size) { return GetTempPathA(size, buffer); });
    CheckSizes([](char* buffer, DWORD size) { return GetShortPathNameA("file", buffer, size); });
    CheckSizes([](char* buffer, DWORD size) { return GetLongPathNameA("file", buffer, size); });
    char* part = const_cast<char*>("before");
    char small[4] = "#";
    CHECK(GetFullPathNameA("C:\\file", sizeof small, small, &part) == 8);
    CHECK(std::string(small) == "#");
    CHECK(std::string(part) == "before");
}

TEST_CASE("short and long paths are spelled as on the disk") {
    Workplace work;
    REQUIRE(CreateDirectoryA("Sub", nullptr));
    Workplace::Write("Sub\\Name");
    for (auto* call : {&GetShortPathNameA, &GetLongPathNameA}) {
        char buffer[MAX_PATH] = "";
        CHECK(call("sub\\..\\SUB/.\\name", buffer, sizeof buffer) != 0);
        CHECK(std::string(buffer) == "Sub\\..\\Sub/.\\Name");
        CHECK(call((work.Path() + "\\SUB\\").c_str(), buffer, sizeof buffer) != 0);
        CHECK(buffer == work.Path() + "\\Sub\\");
        CHECK(ErrorOf(call("missing", buffer, sizeof buffer) != 0) == ERROR_FILE_NOT_FOUND);
        CHECK(ErrorOf(call("Sub\\*", buffer, sizeof buffer) != 0) == ERROR_INVALID_NAME);
        CHECK(ErrorOf(call("", buffer, sizeof buffer) != 0) != 0);
    }
}

TEST_CASE("a compacted path keeps its last name as long as it can") {
    const char* const bySize[] = {
        "",         ".",         "..",         "...",         "...\\",        "...\\.",       "...\\..",
        "...\\...", "...\\be.c", "d...\\be.c", "di...\\be.c", "dir...\\be.c", "dir\\ab\\be.c"};
    for (UINT size = 1; size <= 13; ++size) {
        CAPTURE(size);
        CHECK(Compacted("dir\\ab\\be.c", size) == bySize[size - 1]);
    }

    const struct {
        std::string path;
        UINT size;
        std::string compacted;
    } cases[] = {{"C:\\dir\\sub\\file.txt", 20, "C:\\dir\\...\\file.txt"},
                 {"C:\\dir\\sub\\file.txt", 21, "C:\\dir\\sub\\file.txt"},
                 {"C:\\dir\\sub\\file.txt", 13, "...\\file.txt"},
                 {"C:\\dir\\sub\\file.txt", 12, "...\\file..."},
                 {"C:/dir/sub/file.txt", 20, "C:/dir/.../file.txt"},
                 {"C:\\dir\\sub\\", 11, "C:...\\sub\\"},
                 {"dir\\", 5, "d..."},
                 {"C:file.txt", 10, "...:fi..."},
                 {"C:\\\\dir\\\\\\file.txt", 19, "C:\\\\di...\\file.txt"},
                 {"\\\\server\\share", 15, "\\\\ser...\\share"},
                 {"file.txt", 5, "f..."},
                 {"file.txt", 9, "file...."},
                 {"a", 2, "."},
                 {"a", 3, "a"},
                 {"", 1, ""}};
    for (const auto& row : cases) {
        CAPTURE(row.path);
        CAPTURE(row.size);
        CHECK(Compacted(row.path, row.size) == row.compacted);
    }
}

TEST_CASE("temporary names have a prefix, a number and their file") {
    Workplace work;
    char name[MAX_PATH] = "";
    CHECK(GetTempFileNameA(".", "abcdef", 0x1002A, name) == 0x2A);
    CHECK(std::string(name) == ".\\abc2a.tmp");
    CHECK(GetFileAttributesA(name) == INVALID_FILE_ATTRIBUTES);
    CHECK(GetTempFileNameA((work.Path() + "\\").c_str(), "", 0xBEEF, name) == 0xBEEF);
    CHECK(name == work.Path() + "\\beef.tmp");
    const UINT first = GetTempFileNameA(".", "n", 0, name);
    CHECK(GetFileAttributesA(name) == FILE_ATTRIBUTE_ARCHIVE);
    CHECK(first != 0);
    CHECK(GetTempFileNameA(".", "n", 0, name) != first);
    Workplace::Write("file");
    for (const std::string folder : {"missing", "", "file"}) {
        CAPTURE(folder);
        CHECK(ErrorOf(GetTempFileNameA(folder.c_str(), "n", 1, name) != 0) == ERROR_DIRECTORY);
    }
}
