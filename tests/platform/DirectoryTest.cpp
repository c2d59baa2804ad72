#include "Workplace.h"

#include <vector>

namespace {

bool Exists(const std::string& name) {
    return GetFileAttributesA(name.c_str()) != INVALID_FILE_ATTRIBUTES;
}

struct Failure {
    std::string path;
    DWORD error;
    bool layerOnly = false;
};

// Paths that are none, or lead nowhere, for calls that need something to be there.
const std::vector<Failure> kNowhere = {
    {"missing", ERROR_FILE_NOT_FOUND},     {"missing\\x", ERROR_PATH_NOT_FOUND},
    {"file\\x", ERROR_PATH_NOT_FOUND},     {"a?b", ERROR_INVALID_NAME},
    {"Q:\\x", ERROR_PATH_NOT_FOUND, true}, {"\\\\server\\share\\x", ERROR_BAD_NETPATH, true},
    {"a\001b", ERROR_INVALID_NAME},        {"", ERROR_PATH_NOT_FOUND, true},
    {"file\\", ERROR_INVALID_NAME, true}};

template <class Call>
void CheckFailures(const std::vector<Failure>& rows, Call call) {
    for (const Failure& row : rows) {
        if (row.layerOnly && !kOnLayer)
            continue;
        CAPTURE(row.path);
        CHECK(ErrorOf(call(row.path.c_str())) == row.error);
    }
}

struct Opened {
    Opened(const char* name, DWORD share)
        : handle(CreateFileA(name, GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr)) {
        REQUIRE(handle != INVALID_HANDLE_VALUE);
    }
    ~Opened() { CloseHandle(handle); }
    const HANDLE handle;
};

} // namespace

TEST_CASE("attributes follow from what the host has") {
    Workplace work;
    Workplace::Write("file");
    Workplace::Write(".hidden");
    REQUIRE(CreateDirectoryA("dir", nullptr));
    REQUIRE(CreateDirectoryA(".dir", nullptr));
    CHECK(GetFileAttributesA("FILE") == FILE_ATTRIBUTE_ARCHIVE);
    CHECK(GetFileAttributesA(".hidden") == (FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_HIDDEN));
    CHECK(GetFileAttributesA("dir\\") == FILE_ATTRIBUTE_DIRECTORY);
    CHECK(GetFileAttributesA(".dir") == (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN));
    for (const char* path : {".", "..", "C:\\", "C:", "dir\\."})
        CHECK(GetFileAttributesA(path) == FILE_ATTRIBUTE_DIRECTORY);
    CheckFailures(kNowhere, [](LPCSTR path) { return GetFileAttributesA(path) != INVALID_FILE_ATTRIBUTES; });
    CheckFailures(kNowhere, [](LPCSTR path) {
        WIN32_FILE_ATTRIBUTE_DATA data;
        return GetFileAttributesExA(path, GetFileExInfoStandard, &data);
    });
}

TEST_CASE("a file is made read-only and writable again, and nothing else is pretended") {
    Workplace work;
    Workplace::Write("file", "kept");
    REQUIRE(SetFileAttributesA("file", FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_ARCHIVE));
    CHECK(GetFileAttributesA("file") == (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_ARCHIVE));
    CHECK(ErrorOf(DeleteFileA("file")) == ERROR_ACCESS_DENIED);
    REQUIRE(SetFileAttributesA("file", FILE_ATTRIBUTE_NORMAL));
    CHECK((GetFileAttributesA("file") & FILE_ATTRIBUTE_READONLY) == 0);
    CHECK(Workplace::Read("file") == "kept");
    CheckFailures(kNowhere, [](LPCSTR path) { return SetFileAttributesA(path, FILE_ATTRIBUTE_NORMAL); });
    if (!kOnLayer)
        return; // a file system with attributes of its own may keep these, and the host may let its superuser write
    CHECK(SetFileAttributesA("file", FILE_ATTRIBUTE_READONLY));
    CHECK(CreateFileA("file", GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr) == INVALID_HANDLE_VALUE);
    CHECK(SetFileAttributesA("file", FILE_ATTRIBUTE_ARCHIVE));
    CHECK(ErrorOf(SetFileAttributesA("file", FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN)) == ERROR_NOT_SUPPORTED);
    CHECK(ErrorOf(SetFileAttributesA("file", FILE_ATTRIBUTE_SYSTEM)) == ERROR_NOT_SUPPORTED);
    CHECK(ErrorOf(SetFileAttributesA("file", FILE_ATTRIBUTE_DIRECTORY)) == ERROR_INVALID_PARAMETER);
    CHECK(GetFileAttributesA("file") == FILE_ATTRIBUTE_ARCHIVE);
}

TEST_CASE("folders are made and removed") {
    Workplace work;
    Workplace::Write("file");
    REQUIRE(CreateDirectoryA("Dir\\", nullptr));
    CheckFailures({{"dir", ERROR_ALREADY_EXISTS},
                   {"file", ERROR_ALREADY_EXISTS},
                   {"C:\\", ERROR_ALREADY_EXISTS},
                   {"missing\\x", ERROR_PATH_NOT_FOUND},
                   {"file\\x", ERROR_PATH_NOT_FOUND},
                   {"a?b", ERROR_INVALID_NAME},
                   {"", ERROR_PATH_NOT_FOUND}},
                  [](LPCSTR path) { return CreateDirectoryA(path, nullptr); });
    REQUIRE(CreateDirectoryA("dir\\Sub. .", nullptr));
    CHECK(Exists("DIR\\sub"));
    CheckFailures({{"dir", ERROR_DIR_NOT_EMPTY}, {"file", ERROR_DIRECTORY}, {".", ERROR_SHARING_VIOLATION}},
                  [](LPCSTR path) { return RemoveDirectoryA(path); });
    CheckFailures(kNowhere, [](LPCSTR path) { return RemoveDirectoryA(path); });
    CHECK(RemoveDirectoryA("DIR\\SUB\\"));
    CHECK(RemoveDirectoryA("dir"));
    CHECK_FALSE(Exists("Dir"));
}

TEST_CASE("a file is deleted unless it is in use or protected") {
    Workplace work;
    Workplace::Write("file");
    REQUIRE(CreateDirectoryA("dir", nullptr));
    CHECK(ErrorOf(DeleteFileA("dir")) == ERROR_ACCESS_DENIED);
    CHECK(ErrorOf(DeleteFileA("NUL")) != 0);
    CheckFailures(kNowhere, [](LPCSTR path) { return DeleteFileA(path); });
    {
        const Opened open("file", FILE_SHARE_READ | FILE_SHARE_WRITE);
        CHECK(ErrorOf(DeleteFileA("file")) == ERROR_SHARING_VIOLATION);
    }
    {
        const Opened open("file", FILE_SHARE_DELETE);
        CHECK(DeleteFileA("FILE"));
    }
    CHECK_FALSE(Exists("file"));
}

TEST_CASE("moving renames, and replaces only when told to") {
    Workplace work;
    Workplace::Write("a", "A");
    Workplace::Write("b", "B");
    REQUIRE(CreateDirectoryA("dir", nullptr));
    REQUIRE(CreateDirectoryA("other", nullptr));
    const struct {
        std::string from;
        std::string to;
        DWORD flags;
        DWORD error;
        bool layerOnly = false;
    } rows[] = {{"missing", "x", 0, ERROR_FILE_NOT_FOUND},
                {"missing", "x\\y", 0, ERROR_FILE_NOT_FOUND},
                {"a", "x\\y", 0, ERROR_PATH_NOT_FOUND},
                {"a", "", 0, ERROR_PATH_NOT_FOUND},
                {"a", "b", MOVEFILE_COPY_ALLOWED, ERROR_ALREADY_EXISTS},
                {"dir", "b", 0, ERROR_ALREADY_EXISTS},
                {"dir", "other", 0, ERROR_ALREADY_EXISTS},
                {"a", "dir", MOVEFILE_REPLACE_EXISTING, ERROR_ACCESS_DENIED},
                {"dir", "other", MOVEFILE_REPLACE_EXISTING, ERROR_ACCESS_DENIED},
                {"dir", "b", MOVEFILE_REPLACE_EXISTING, ERROR_ACCESS_DENIED, true},
                {"dir", "dir\\sub", 0, ERROR_INVALID_PARAMETER},
                {"a", "x", 0x100, ERROR_NOT_SUPPORTED, true},
                {"a", "a", 0, 0}};
    for (const auto& row : rows) {
        if (row.layerOnly && !kOnLayer)
            continue;
        CAPTURE(row.from);
        CAPTURE(row.to);
        CHECK(ErrorOf(MoveFileExA(row.from.c_str(), row.to.c_str(), row.flags)) == row.error);
    }
    CHECK(Workplace::Read("a") + Workplace::Read("b") == "AB");
    {
        const Opened open("a", FILE_SHARE_READ);
        CHECK(ErrorOf(MoveFileA("a", "c")) == ERROR_SHARING_VIOLATION);
        CHECK(ErrorOf(MoveFileExA("b", "a", MOVEFILE_REPLACE_EXISTING)) == ERROR_ACCESS_DENIED);
    }
    CHECK(MoveFileExA("a", "b", MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH));
    CHECK_FALSE(Exists("a"));
    CHECK(Workplace::Read("b") == "A");
    CHECK(MoveFileA("B", "dir\\Moved"));
    CHECK(MoveFileA("dir", "DIR"));
    WIN32_FIND_DATAA entry;
    REQUIRE(FindClose(FindFirstFileA("dir", &entry)));
    CHECK((!kOnLayer || std::string(entry.cFileName) == "DIR")); // the referee keeps the old spelling
    CHECK(Workplace::Read("dir\\moved") == "A");
}

TEST_CASE("a copy keeps contents, times and attributes") {
    Workplace work;
    Workplace::Write("from", std::string(300000, 'x') + "end");
    {
        const HANDLE file = CreateFileA("from", GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
        const FILETIME written = {0x9ABCDE00, 0x01B00000};
        CHECK(SetFileTime(file, nullptr, nullptr, &written));
        CHECK(CloseHandle(file));
    }
    REQUIRE(SetFileAttributesA("from", FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_ARCHIVE));
    Workplace::Write("old", std::string(400000, 'y'));
    REQUIRE(CreateDirectoryA("dir", nullptr));
    CHECK(ErrorOf(CopyFileA("from", "old", TRUE)) == ERROR_FILE_EXISTS);
    for (const std::string to : {"old", "new"}) {
        CAPTURE(to);
        REQUIRE(CopyFileA("from", to.c_str(), FALSE));
        CHECK(Workplace::Read(to) == Workplace::Read("from"));
        WIN32_FILE_ATTRIBUTE_DATA facts;
        REQUIRE(GetFileAttributesExA(to.c_str(), GetFileExInfoStandard, &facts));
        CHECK((!kOnLayer || facts.dwFileAttributes == (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_ARCHIVE)));
        CHECK(facts.ftLastWriteTime.dwHighDateTime == 0x01B00000);
    }
    Workplace::Write("plain");
    const struct {
        std::string from;
        std::string to;
        DWORD error;
        bool layerOnly = false;
    } rows[] = {{"missing", "x", ERROR_FILE_NOT_FOUND},      {"plain", "x\\y", ERROR_PATH_NOT_FOUND},
                {"dir", "x", ERROR_ACCESS_DENIED},           {"plain", "dir", ERROR_ACCESS_DENIED},
                {"plain", "plain", ERROR_SHARING_VIOLATION}, {"plain", "new", ERROR_ACCESS_DENIED, true}};
    for (const auto& row : rows) {
        if (row.layerOnly && !kOnLayer)
            continue;
        CAPTURE(row.from);
        CHECK(ErrorOf(CopyFileA(row.from.c_str(), row.to.c_str(), FALSE)) == row.error);
    }
    const Opened open("plain", FILE_SHARE_READ);
    CHECK(CopyFileA("plain", "again", FALSE));
    CHECK(ErrorOf(CopyFileA("again", "plain", FALSE)) == ERROR_SHARING_VIOLATION);
}
