// What a host has that Windows has not: names of any bytes, names that differ in case only, links that are nothing
// special. Only the layer can be asked about these.
#include "Workplace.h"
#include "tests/support/AllocationMeter.h"

#include <kelcore/platform/testing.h>

#include <functional>
#include <new>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

void MakeOnHost(const std::string& name) {
    REQUIRE(mknod(name.c_str(), S_IFREG | 0600, 0) == 0);
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

int LowestFreeDescriptor() {
    const int descriptor = dup(STDERR_FILENO);
    close(descriptor);
    return descriptor;
}

} // namespace

TEST_CASE("a search that finds no memory keeps no folder open") {
    const Workplace place;
    const int lowest = LowestFreeDescriptor();
    int refused = -1;
    do {
        WIN32_FIND_DATAA entry;
        RefuseAllocation(++refused);
        try {
            FindClose(FindFirstFileA("*", &entry));
        } catch (const std::bad_alloc&) {
        }
    } while (RefusalIsMet());
    CHECK(refused > 0); // at least the search itself
    CHECK(LowestFreeDescriptor() == lowest);
}

TEST_CASE("every host name is shown, found again and deleted, under every code page") {
    // é, or a letter whose second byte in the page is a backslash
    const std::string wide = GetACP() == 932 ? "\u8868" : "\u00E9";
    std::vector<std::string> names = {"plain", wide, wide + ".txt", " x", "x.", "y ", ".z", "a b"};
    if (GetACP() == CP_UTF8)
        names.insert(names.end(),
                     {"a:b", "a\\b", "*", "\"<>|", "\x01\x1F\x7F", "\xFF", "caf\xC3", "\xED\xA0\x80", "a\uF03A",
                      "\uF05C", "\uF000", std::string(255, '\xFE'), std::string(254, '\xFE') + "\xFD"});
    Workplace work;
    for (const std::string& name : names)
        MakeOnHost(name);
    const std::vector<std::string> listed = List();
    CHECK(listed.size() == names.size());
    for (const std::string& name : listed) {
        CAPTURE(name);
        CHECK(std::string(Entry(name).cFileName) == name);
        CHECK(DeleteFileA(name.c_str()));
    }
    CHECK(List().empty());
}

TEST_CASE("private characters stand for bytes that a name cannot hold, and for nothing else") {
    Workplace work;
    Workplace::Write("a\uF03Ab");
    CHECK((GetACP() != CP_UTF8 || access("a:b", F_OK) == 0));
    // U+F02E and U+F02F are no dots and no slash: nothing climbs out of the folder by them.
    CHECK_FALSE(Exists("\uF02E\uF02E\\x"));
    CHECK_FALSE(Exists("\uF02Fetc"));
}

TEST_CASE("an exact name comes before one that differs in case") {
    Workplace work;
    for (const char* name : {"Name", "NAME", "dir", "dir."})
        MakeOnHost(name);
    CHECK(std::string(Entry("Name").cFileName) == "Name");
    CHECK(std::string(Entry("name").cFileName) == "NAME");
    CHECK(DeleteFileA("dir."));
    CHECK(access("dir", F_OK) == 0);
    REQUIRE(CreateDirectoryA("\u00C4", nullptr));
    CHECK((GetACP() != CP_UTF8 || Exists("\u00E4")));
}

TEST_CASE("links are shown without their folders, and removed without their targets") {
    Workplace work;
    Workplace::Write("file", "12345");
    REQUIRE(CreateDirectoryA("dir", nullptr));
    Workplace::Write("dir\\in");
    REQUIRE(symlink("file", "toFile") + symlink("dir", "toDir") + symlink("none", "toNone") + symlink("loop", "loop") ==
            0);
    REQUIRE(mkfifo("pipe", 0600) == 0);
    const auto shows = [](const char* name, DWORD attributes, DWORD size = 0) {
        CAPTURE(name);
        CHECK(Entry(name).dwFileAttributes == attributes);
        CHECK(Entry(name).nFileSizeLow == size);
    };
    shows("toFile", FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_REPARSE_POINT, 5);
    shows("toDir", FILE_ATTRIBUTE_REPARSE_POINT);
    shows("toNone", FILE_ATTRIBUTE_REPARSE_POINT);
    shows("loop", FILE_ATTRIBUTE_REPARSE_POINT);
    shows("pipe", FILE_ATTRIBUTE_DEVICE);
    CHECK(GetFileAttributesA("toDir") == FILE_ATTRIBUTE_DIRECTORY);
    CHECK(ErrorOf(Exists("toNone")) == ERROR_FILE_NOT_FOUND);
    CHECK(ErrorOf(Exists("loop")) == ERROR_CANT_RESOLVE_FILENAME);
    CHECK((MoveFileA("toFile", "moved") && DeleteFileA("moved")));
    CHECK((RemoveDirectoryA("toDir") && DeleteFileA("toNone") && DeleteFileA("loop")));
    CHECK(Workplace::Read("file") == "12345");
    CHECK(Exists("dir\\in"));
    // Two names of one file become one when the first replaces the second.
    REQUIRE(link("file", "other") == 0);
    CHECK(MoveFileExA("file", "other", MOVEFILE_REPLACE_EXISTING));
    CHECK_FALSE(Exists("file"));
}

// The calls that the library does not make itself, and so no test of it fails.
TEST_CASE("each call can be made to fail, does nothing then, and leaves no handle") {
    Workplace work;
    Workplace::Write("file");
    WIN32_FIND_DATAA entry;
    WIN32_FILE_ATTRIBUTE_DATA facts;
    const HANDLE search = FindFirstFileA("*", &entry);
    const std::size_t handles = kel::platform::OpenHandles();
    const std::function<bool()> calls[] = {
        [&] { return FindNextFileA(search, &entry) != 0; },
        [&] { return SetFilePointerEx(search, {}, nullptr, FILE_BEGIN) != 0; },
        [&] { return GetFileAttributesExA("file", GetFileExInfoStandard, &facts) != 0; },
        [&] { return DeleteFileA("file") != 0; },
        [&] { return MoveFileA("file", "x") != 0; },
        [&] { return CreateDirectoryA("new", nullptr) != 0; },
        [&] { return FindClose(search) != 0; },
    };
    for (const std::function<bool()>& call : calls) {
        kel::platform::ArmFault(1, 1234);
        CHECK(ErrorOf(call()) == 1234);
        CHECK(kel::platform::DisarmFault());
    }
    CHECK(kel::platform::OpenHandles() == handles - 1); // a search ends all the same
    CHECK(List() == std::vector<std::string>{"file"});
}
