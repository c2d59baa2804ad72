// What a host has that Windows has not: names of any bytes, names that differ in case only, links that are nothing
// special. Only the layer can be asked about these.
#include "Workplace.h"

#include <kelcore/platform/testing.h>

#include <fcntl.h>
#include <functional>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

void MakeOnHost(const std::string& name) {
    const int file = open(name.c_str(), O_CREAT | O_EXCL | O_WRONLY, 0600);
    REQUIRE(file != -1);
    close(file);
}

std::vector<std::string> List() {
    WIN32_FIND_DATAA entry;
    std::vector<std::string> names;
    const HANDLE search = FindFirstFileA("*", &entry);
    REQUIRE(search != INVALID_HANDLE_VALUE);
    while (FindNextFileA(search, &entry))
        names.push_back(entry.cFileName);
    CHECK(FindClose(search));
    names.erase(names.begin()); // ".."
    return names;
}

WIN32_FIND_DATAA Entry(const std::string& name) {
    WIN32_FIND_DATAA entry;
    REQUIRE(FindClose(FindFirstFileA(name.c_str(), &entry)));
    return entry;
}

} // namespace

TEST_CASE("every host name is shown, found again and deleted, under every code page") {
    std::string wide = "\xC3\xA9"; // é, and other letters of the page
    if (GetACP() == 932)
        wide = "\xE8\xA1\xA8"; // its second byte in the page is a backslash
    const std::string names[] = {"plain", wide, wide + ".txt", " x", "x.", "y ", ".z", "a b"};
    const std::string odd[] = {"a:b",
                               "a\\b",
                               "*",
                               "?",
                               "\"<>|",
                               "\x01\x1F\x7F",
                               "\xFF",
                               "caf\xC3",
                               "\xED\xA0\x80",
                               "a\xEF\x80\xBA",
                               "\xEF\x81\x9C",
                               "\xEF\x80\x80",
                               std::string(255, '\xFE'),
                               std::string(254, '\xFE') + "\xFD"};
    Workplace work;
    std::size_t count = 0;
    for (const std::string& name : names)
        MakeOnHost(name), ++count;
    if (GetACP() == CP_UTF8)
        for (const std::string& name : odd)
            MakeOnHost(name), ++count;
    const std::vector<std::string> listed = List();
    CHECK(listed.size() == count);
    for (const std::string& name : listed) {
        CAPTURE(name);
        CHECK(std::string(Entry(name).cFileName) == name);
        CHECK(GetFileAttributesA(name.c_str()) != INVALID_FILE_ATTRIBUTES);
        CHECK(DeleteFileA(name.c_str()));
        CHECK(GetFileAttributesA(name.c_str()) == INVALID_FILE_ATTRIBUTES);
    }
    CHECK(List().empty());
}

TEST_CASE("private characters stand for bytes that a name cannot hold, and for nothing else") {
    Workplace work;
    Workplace::Write("a\xEF\x80\xBA"
                     "b");
    CHECK((GetACP() != CP_UTF8 || access("a:b", F_OK) == 0));
    // U+F02E and U+F02F are no dots and no slash: nothing climbs out of the folder by them.
    CHECK(GetFileAttributesA("\xEF\x80\xAE\xEF\x80\xAE\\x") == INVALID_FILE_ATTRIBUTES);
    CHECK(GetFileAttributesA("\xEF\x80\xAF"
                             "etc") == INVALID_FILE_ATTRIBUTES);
}

TEST_CASE("an exact name comes before one that differs in case") {
    Workplace work;
    for (const char* name : {"Name", "NAME", "dir"})
        MakeOnHost(name);
    CHECK(std::string(Entry("Name").cFileName) == "Name");
    CHECK(std::string(Entry("NAME").cFileName) == "NAME");
    CHECK(std::string(Entry("name").cFileName) == "NAME");
    MakeOnHost("dir.");
    CHECK(DeleteFileA("dir."));
    CHECK(access("dir", F_OK) == 0);
    REQUIRE(CreateDirectoryA("\xC3\x84", nullptr)); // Ä
    CHECK((GetACP() != CP_UTF8 || GetFileAttributesA("\xC3\xA4") == FILE_ATTRIBUTE_DIRECTORY));
}

TEST_CASE("links are shown without their folders, and removed without their targets") {
    Workplace work;
    Workplace::Write("file", "12345");
    REQUIRE(CreateDirectoryA("dir", nullptr));
    Workplace::Write("dir\\in");
    REQUIRE(symlink("file", "toFile") + symlink("dir", "toDir") + symlink("none", "toNone") + symlink("loop", "loop") ==
            0);
    CHECK(Entry("toFile").dwFileAttributes == (FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_REPARSE_POINT));
    CHECK(Entry("toFile").nFileSizeLow == 5);
    CHECK(Entry("toFile").dwReserved0 == IO_REPARSE_TAG_SYMLINK);
    for (const char* name : {"toDir", "toNone", "loop"}) {
        CHECK(Entry(name).dwFileAttributes == FILE_ATTRIBUTE_REPARSE_POINT);
        CHECK(Entry(name).nFileSizeLow == 0);
    }
    REQUIRE(mkfifo("pipe", 0600) == 0);
    CHECK(Entry("pipe").dwFileAttributes == FILE_ATTRIBUTE_DEVICE);
    CHECK(GetFileAttributesA("toFile") == FILE_ATTRIBUTE_ARCHIVE);
    CHECK(GetFileAttributesA("toDir") == FILE_ATTRIBUTE_DIRECTORY);
    CHECK(ErrorOf(GetFileAttributesA("toNone") != INVALID_FILE_ATTRIBUTES) == ERROR_FILE_NOT_FOUND);
    CHECK(ErrorOf(GetFileAttributesA("loop") != INVALID_FILE_ATTRIBUTES) == ERROR_CANT_RESOLVE_FILENAME);
    CHECK(GetFileAttributesA("toDir\\in") == FILE_ATTRIBUTE_ARCHIVE);
    CHECK(MoveFileA("toFile", "moved"));
    CHECK(DeleteFileA("moved"));
    CHECK(RemoveDirectoryA("toDir"));
    CHECK(DeleteFileA("toNone"));
    CHECK(DeleteFileA("loop"));
    CHECK(Workplace::Read("file") == "12345");
    CHECK(GetFileAttributesA("dir\\in") == FILE_ATTRIBUTE_ARCHIVE);
}

TEST_CASE("two names of one file become one when the first replaces the second") {
    Workplace work;
    Workplace::Write("a", "x");
    REQUIRE(link("a", "b") == 0);
    CHECK(MoveFileExA("a", "b", MOVEFILE_REPLACE_EXISTING));
    CHECK(List() == std::vector<std::string>{"b"});
}

TEST_CASE("each call can be made to fail, does nothing then, and leaves no handle") {
    Workplace work;
    Workplace::Write("file");
    char text[MAX_PATH];
    WIN32_FIND_DATAA entry;
    WIN32_FILE_ATTRIBUTE_DATA facts;
    const HANDLE search = FindFirstFileA("*", &entry);
    const std::size_t handles = kel::platform::OpenHandles();
    const std::function<bool()> calls[] = {
        [&] { return GetFullPathNameA("x", sizeof text, text, nullptr) != 0; },
        [&] { return GetShortPathNameA("file", text, sizeof text) != 0; },
        [&] { return PathCompactPathExA(text, "file", 9, 0) != 0; },
        [&] { return FindFirstFileA("*", &entry) != INVALID_HANDLE_VALUE; },
        [&] { return FindNextFileA(search, &entry) != 0; },
        [&] { return GetFileAttributesA("file") != INVALID_FILE_ATTRIBUTES; },
        [&] { return GetFileAttributesExA("file", GetFileExInfoStandard, &facts) != 0; },
        [&] { return DeleteFileA("file") != 0; },
        [&] { return MoveFileA("file", "x") != 0; },
        [&] { return CreateDirectoryA("new", nullptr) != 0; },
    };
    for (const auto& call : calls) {
        kel::platform::ArmFault(1, 1234);
        CHECK(ErrorOf(call()) == 1234);
        CHECK(kel::platform::DisarmFault());
    }
    CHECK(kel::platform::OpenHandles() == handles);
    kel::platform::ArmFault(1, 1234);
    CHECK(ErrorOf(FindClose(search)) == 1234);
    CHECK(kel::platform::DisarmFault());
    CHECK(kel::platform::OpenHandles() == handles - 1);
    CHECK(List() == std::vector<std::string>{"file"});
}
