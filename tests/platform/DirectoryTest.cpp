#include "Opened.h"

namespace {

// An operation on one path, with the code it gives.
template <class Call>
void Gives(Call call, const char* path, DWORD error) {
    CHECK_MESSAGE(ErrorOf(call(path)) == error, path);
}

// Paths that are none, or lead nowhere, for calls that need something to be there.
template <class Call>
void RefusesWhatIsNowhere(Call call) {
    Gives(call, "missing", ERROR_FILE_NOT_FOUND);
    Gives(call, "missing\\x", ERROR_PATH_NOT_FOUND);
    Gives(call, "file\\x", ERROR_PATH_NOT_FOUND);
    Gives(call, "a?b", ERROR_INVALID_NAME);
    Gives(call, "a\001b", ERROR_INVALID_NAME);
    if (!kOnLayer)
        return;
    Gives(call, "Q:\\x", ERROR_PATH_NOT_FOUND);
    Gives(call, "\\\\server\\share\\x", ERROR_BAD_NETPATH);
    Gives(call, "", ERROR_PATH_NOT_FOUND);
    Gives(call, "file\\", ERROR_INVALID_NAME);
}

} // namespace

TEST_CASE("attributes follow from what the host has") {
    Workplace work;
    Workplace::Write("file");
    REQUIRE(CreateDirectoryA(".dir", nullptr));
    CHECK(GetFileAttributesA("FILE") == FILE_ATTRIBUTE_ARCHIVE);
    CHECK(GetFileAttributesA(".dir\\") == (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN));
    for (const char* path : {".", "..", "C:\\", "C:", ".dir\\.."})
        CHECK(GetFileAttributesA(path) == FILE_ATTRIBUTE_DIRECTORY);
    RefusesWhatIsNowhere(Exists);
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
    RefusesWhatIsNowhere([](LPCSTR path) { return SetFileAttributesA(path, FILE_ATTRIBUTE_NORMAL); });
    if (!kOnLayer)
        return; // a file system with attributes of its own may keep these
    CHECK(ErrorOf(SetFileAttributesA("file", FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN)) == ERROR_NOT_SUPPORTED);
    CHECK(GetFileAttributesA("file") == FILE_ATTRIBUTE_ARCHIVE);
}

TEST_CASE("folders are made and removed") {
    Workplace work;
    Workplace::Write("file");
    const auto make = [](LPCSTR path) { return CreateDirectoryA(path, nullptr); };
    Gives(make, "Dir\\", 0);
    for (const char* there : {"dir", "file", "C:\\"})
        Gives(make, there, ERROR_ALREADY_EXISTS);
    for (const char* nowhere : {"missing\\x", "file\\x", ""})
        Gives(make, nowhere, ERROR_PATH_NOT_FOUND);
    Gives(make, "dir\\Sub. .", 0);
    RefusesWhatIsNowhere(RemoveDirectoryA);
    Gives(RemoveDirectoryA, "dir", ERROR_DIR_NOT_EMPTY);
    Gives(RemoveDirectoryA, "file", ERROR_DIRECTORY);
    Gives(RemoveDirectoryA, ".", ERROR_SHARING_VIOLATION);
    Gives(RemoveDirectoryA, "DIR\\SUB\\", 0);
    Gives(RemoveDirectoryA, "dir", 0);
    CHECK_FALSE(Exists("Dir"));
}

TEST_CASE("a file is deleted unless it is in use or protected") {
    Workplace work;
    Workplace::Write("file");
    REQUIRE(CreateDirectoryA("dir", nullptr));
    RefusesWhatIsNowhere(DeleteFileA);
    Gives(DeleteFileA, "dir", ERROR_ACCESS_DENIED);
    Opened open("file", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
    Gives(DeleteFileA, "file", ERROR_SHARING_VIOLATION);
    open.Close();
    const Opened shared("file", GENERIC_READ, FILE_SHARE_DELETE);
    Gives(DeleteFileA, "FILE", 0);
}

TEST_CASE("moving renames, and replaces only when told to") {
    Workplace work;
    Workplace::Write("a", "A");
    Workplace::Write("b", "B");
    REQUIRE(CreateDirectoryA("dir", nullptr));
    REQUIRE(CreateDirectoryA("other", nullptr));
    const auto moves = [](const char* from, const char* to, DWORD flags, DWORD error) {
        CHECK_MESSAGE(ErrorOf(MoveFileExA(from, to, flags)) == error, from, " ", to, " ", flags);
    };
    moves("a", "x\\y", 0, ERROR_PATH_NOT_FOUND);
    moves("a", "b", MOVEFILE_COPY_ALLOWED, ERROR_ALREADY_EXISTS);
    moves("dir", "other", 0, ERROR_ALREADY_EXISTS);
    for (const char* from : {"a", "dir"})
        moves(from, "other", MOVEFILE_REPLACE_EXISTING, ERROR_ACCESS_DENIED);
    moves("dir", "dir\\sub", 0, ERROR_INVALID_PARAMETER);
    if (kOnLayer)
        moves("dir", "b", MOVEFILE_REPLACE_EXISTING, ERROR_ACCESS_DENIED);
    moves("a", "a", 0, 0);
    Opened open("a", GENERIC_READ, FILE_SHARE_READ);
    moves("a", "c", 0, ERROR_SHARING_VIOLATION);
    moves("b", "a", MOVEFILE_REPLACE_EXISTING, ERROR_ACCESS_DENIED);
    open.Close();
    CHECK(Workplace::Read("a") + Workplace::Read("b") == "AB");
    moves("a", "b", MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH, 0);
    CHECK_FALSE(Exists("a"));
    CHECK(MoveFileA("B", "dir\\Moved"));
    CHECK(MoveFileA("dir", "DIR"));
    WIN32_FIND_DATAA entry;
    REQUIRE(FindClose(FindFirstFileA("dir", &entry)));
    CHECK((!kOnLayer || std::string(entry.cFileName) == "DIR")); // the referee keeps the old spelling
    CHECK(Workplace::Read("dir\\moved") == "A");
}

TEST_CASE("a copy keeps contents, times and attributes") {
    Workplace work;
    const FILETIME written = {0x9ABCDE00, 0x01B00000};
    Workplace::Write("from", std::string(300000, 'x') + "end");
    CHECK(SetFileTime(Opened("from"), nullptr, nullptr, &written));
    REQUIRE(SetFileAttributesA("from", FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_ARCHIVE));
    Workplace::Write("to", std::string(400000, 'y'));
    const auto copies = [](const char* from, const char* to, DWORD error, BOOL keep = FALSE) {
        CHECK_MESSAGE(ErrorOf(CopyFileA(from, to, keep)) == error, from, " ", to);
    };
    copies("from", "to", ERROR_FILE_EXISTS, TRUE);
    copies("from", "to", 0);
    CHECK(Workplace::Read("to") == Workplace::Read("from"));
    WIN32_FILE_ATTRIBUTE_DATA facts;
    REQUIRE(GetFileAttributesExA("to", GetFileExInfoStandard, &facts));
    CHECK((!kOnLayer || facts.dwFileAttributes == (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_ARCHIVE)));
    CHECK(CompareFileTime(&facts.ftLastWriteTime, &written) == 0);
    copies("missing", "x", ERROR_FILE_NOT_FOUND);
    copies(".", "x", ERROR_ACCESS_DENIED);
    copies("from", "from", ERROR_SHARING_VIOLATION);
    if (kOnLayer)
        copies("from", "to", ERROR_ACCESS_DENIED);
}
