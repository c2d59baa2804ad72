#include "Workplace.h"

#include <cstring>
#include <functional>

namespace {

// The full path, then a bar and its last part, if there is one.
std::string Full(const std::string& path) {
    char buffer[1024] = "";
    char* part = nullptr;
    const DWORD length = GetFullPathNameA(path.c_str(), sizeof buffer, buffer, &part);
    CHECK(length == std::strlen(buffer));
    return buffer + (part ? "|" + std::string(part) : "");
}

void Completes(const std::string& path, const std::string& full, const std::string& lastPart) {
    CHECK_MESSAGE(Full(path) == full + (lastPart.empty() ? "" : "|" + lastPart), path);
}

// The convention that all calls share which give a path out.
void CheckSizes(const std::function<DWORD(char* buffer, DWORD size)>& give) {
    char buffer[600] = "#";
    const DWORD length = give(buffer, 600);
    REQUIRE(length > 1);
    const std::string whole = buffer;
    CHECK(whole.size() == length);
    for (const DWORD size : {DWORD{0}, DWORD{1}, length})
        CHECK_MESSAGE(give(size == 0 ? nullptr : buffer, size) == length + 1, size);
    CHECK(give(buffer, length + 1) == length);
    CHECK(whole == buffer);
}

} // namespace

TEST_CASE("a full path comes from the text alone") {
    Workplace work; // on drive C:
    Completes("\\", "C:\\", "");
    Completes("\\x/y", "C:\\x\\y", "y");
    Completes("\\:x", "C:\\:x", ":x");
    Completes("C:/a/../b/", "C:\\b\\", "");
    Completes("C:\\a\\..\\..\\..", "C:\\", "");
    Completes("C:\\\\\\a\\.\\\\b", "C:\\a\\b", "b");
    Completes("C:\\a.\\b.\\", "C:\\a\\b\\", "");
    Completes("C:\\a. . ", "C:\\a", "a");
    Completes("C:\\a\\...", "C:\\a\\", "");
    Completes("C:\\a. \\b\\..", "C:\\a", "a");
    Completes("C:\\a\\ \\.", "C:\\a\\", "");
    Completes("D:x", "D:\\x", "x");
    Completes("//s/h/f", "\\\\s\\h\\f", "f");
    Completes("\\\\s\\h\\x\\..\\..\\..\\y", "\\\\s\\h\\y", "y");
    Completes("\\\\?\\C:\\a\\..\\b", "\\\\?\\C:\\b", "b");
    Completes("nul:", "\\\\.\\nul", "");
    for (const char* none : {"", " "})
        CHECK(GetFullPathNameA(none, 0, nullptr, nullptr) == 0);
    if (kOnLayer) // the referee ends at MAX_PATH
        CHECK(Full("C:\\" + std::string(500, 'x')).size() == 503 + 501);
}

TEST_CASE("a relative path starts at the current directory") {
    Workplace work;
    REQUIRE(CreateDirectoryA("Inner", nullptr));
    const std::string here = work.Path();
    Completes("a\\", here + "\\a\\", "");
    Completes("C:x", here + "\\x", "x");
    Completes("C:...", here + "\\", "");
    Completes("  a", here + "\\  a", "  a");

    Workplace::Write("file");
    const auto moves = [](const char* folder, DWORD error, const std::string& now) {
        CHECK_MESSAGE(ErrorOf(SetCurrentDirectoryA(folder)) == error, folder);
        Completes("..\\x", now.substr(0, now.rfind('\\')) + "\\x", "x");
    };
    moves("missing", ERROR_FILE_NOT_FOUND, here);
    moves("", ERROR_INVALID_NAME, here);
    moves("file", ERROR_DIRECTORY, here);
    moves("Inner\\", 0, here + "\\Inner");
    moves("C:\\", 0, "C:\\");
}

TEST_CASE("paths are given out whole, or their size is told") {
    Workplace work;
    Workplace::Write("file");
    CheckSizes([](char* buffer, DWORD size) { return GetFullPathNameA("some\\path", size, buffer, nullptr); });
    CheckSizes([](char* buffer, DWORD size) { return GetCurrentDirectoryA(size, buffer); });
    CheckSizes([](char* buffer, DWORD size) { return GetTempPathA(size, buffer); });
    CheckSizes([](char* buffer, DWORD size) { return GetShortPathNameA("file", buffer, size); });
    CheckSizes([](char* buffer, DWORD size) { return GetLongPathNameA("file", buffer, size); });
}

TEST_CASE("short and long paths are spelled as on the disk") {
    Workplace work;
    REQUIRE(CreateDirectoryA("Sub", nullptr));
    Workplace::Write("Sub\\Name");
    for (auto* call : {&GetShortPathNameA, &GetLongPathNameA}) {
        char buffer[MAX_PATH] = "";
        CHECK(call("sub\\..\\SUB/.\\name", buffer, sizeof buffer) != 0);
        CHECK(std::string(buffer) == "Sub\\..\\Sub/.\\Name");
        CHECK(ErrorOf(call("missing", buffer, sizeof buffer) != 0) == ERROR_FILE_NOT_FOUND);
        CHECK(ErrorOf(call("Sub\\*", buffer, sizeof buffer) != 0) == ERROR_INVALID_NAME);
    }
}

TEST_CASE("a compacted path keeps its last name as long as it can") {
    const auto compacts = [](const char* path, UINT size, const char* compacted) {
        std::string buffer(size + 1, '#');
        CHECK(PathCompactPathExA(buffer.data(), path, size, 0));
        CHECK_MESSAGE((buffer.back() == '#' && buffer.c_str() == std::string(compacted)), path, " ", size, " ", buffer);
    };
    const char* const bySize[] = {
        "",         ".",         "..",         "...",         "...\\",        "...\\.",       "...\\..",
        "...\\...", "...\\be.c", "d...\\be.c", "di...\\be.c", "dir...\\be.c", "dir\\ab\\be.c"};
    for (UINT size = 1; size <= 13; ++size)
        compacts("dir\\ab\\be.c", size, bySize[size - 1]);
    compacts("C:\\dir\\sub\\file.txt", 20, "C:\\dir\\...\\file.txt");
    compacts("C:\\dir\\sub\\file.txt", 12, "...\\file...");
    compacts("C:file.txt", 10, "...:fi...");
    compacts("C:\\\\dir\\\\\\file.txt", 19, "C:\\\\di...\\file.txt");
    compacts("\\\\server\\share", 15, "\\\\ser...\\share");
    compacts("file.txt", 9, "file....");
    compacts("", 1, "");
}

TEST_CASE("temporary names have a prefix, a number and their file") {
    Workplace work;
    char name[MAX_PATH] = "";
    CHECK(GetTempFileNameA(".", "abcdef", 0x1002A, name) == 0x2A);
    CHECK((std::string(name) == ".\\abc2a.tmp" && !Exists(name)));
    const UINT first = GetTempFileNameA(".", "n", 0, name);
    CHECK((first != 0 && Exists(name)));
    CHECK(GetTempFileNameA(".", "n", 0, name) != first);
    for (const char* const folder : {"missing", "", static_cast<const char*>(name)})
        CHECK(ErrorOf(GetTempFileNameA(folder, "n", 1, name) != 0) == ERROR_DIRECTORY);
}
