#include "Opened.h"

#include <cstring>

namespace {

constexpr DWORD k64KiB = 0x10000;

HANDLE Map(HANDLE file, DWORD protection, std::uint64_t size = 0, const char* name = nullptr) {
    return CreateFileMappingA(file, nullptr, protection, static_cast<DWORD>(size >> 32), static_cast<DWORD>(size),
                              name);
}

char* View(HANDLE mapping, DWORD access, DWORD offset = 0, SIZE_T count = 0) {
    return static_cast<char*>(MapViewOfFile(mapping, access, 0, offset, count));
}

// The error of making one, 0 for none.
DWORD ErrorOfMapping(HANDLE file, DWORD protection, std::uint64_t size = 0, const char* name = nullptr) {
    const HANDLE mapping = Map(file, protection, size, name);
    return ErrorOf(mapping && CloseHandle(mapping));
}

DWORD ErrorOfView(HANDLE mapping, DWORD access, DWORD offset = 0, SIZE_T count = 0) {
    const void* view = View(mapping, access, offset, count);
    return ErrorOf(view && UnmapViewOfFile(view));
}

} // namespace

TEST_CASE("a mapping needs a file with bytes and the rights to them") {
    const Workplace place;
    Workplace::Write("a", "0123456789");
    const auto maps = [](DWORD access, DWORD protection, std::uint64_t size, DWORD error) {
        CHECK_MESSAGE(ErrorOfMapping(Opened("a", access), protection, size) == error, access, " ", protection, " ",
                      size);
    };
    maps(GENERIC_READ, PAGE_READONLY, 10, 0);
    maps(GENERIC_READ, PAGE_READONLY, 11, ERROR_NOT_ENOUGH_MEMORY);
    maps(GENERIC_READ, PAGE_READWRITE, 0, ERROR_ACCESS_DENIED);
    for (const DWORD protection : {PAGE_READONLY, PAGE_READWRITE})
        maps(GENERIC_WRITE, protection, 0, ERROR_ACCESS_DENIED);
    for (const DWORD protection : {0, PAGE_READONLY | PAGE_READWRITE})
        maps(kReadWrite, protection, 0, ERROR_INVALID_PARAMETER);
    CHECK(ErrorOfMapping(INVALID_HANDLE_VALUE, PAGE_READWRITE) == ERROR_INVALID_PARAMETER);
    if (kOnLayer)
        CHECK(ErrorOfMapping(INVALID_HANDLE_VALUE, PAGE_READWRITE, 10, "name") == ERROR_NOT_SUPPORTED);
    Workplace::Write("a");
    maps(kReadWrite, PAGE_READWRITE, 0, ERROR_FILE_INVALID);
}

TEST_CASE("a view lies inside its mapping, begins at a multiple of 64 KiB and writes only where the mapping does") {
    const Workplace place;
    const Opened file("a", kReadWrite, 0, CREATE_NEW);
    const HANDLE mapping = Map(file, PAGE_READWRITE, 2 * k64KiB + 10), readOnly = Map(file, PAGE_READONLY);
    CHECK(GetFileSize(file, nullptr) == 2 * k64KiB + 10);
    const auto views = [](HANDLE of, DWORD access, DWORD offset, SIZE_T count, DWORD error) {
        CHECK_MESSAGE(ErrorOfView(of, access, offset, count) == error, access, " ", offset, " ", count);
    };
    views(mapping, FILE_MAP_READ, 2 * k64KiB, 10, 0);
    views(mapping, FILE_MAP_READ, 2 * k64KiB, k64KiB, ERROR_ACCESS_DENIED);
    views(mapping, FILE_MAP_READ, 0, 3 * k64KiB, ERROR_ACCESS_DENIED);
    views(mapping, FILE_MAP_READ, 4096, 0, ERROR_MAPPED_ALIGNMENT);
    views(mapping, FILE_MAP_ALL_ACCESS, 0, 0, 0);
    views(readOnly, FILE_MAP_COPY, 0, 0, 0);
    views(readOnly, FILE_MAP_WRITE, 0, 0, ERROR_ACCESS_DENIED);
    views(file, FILE_MAP_READ, 0, 0, ERROR_INVALID_HANDLE);
    CHECK((CloseHandle(mapping) && CloseHandle(readOnly)));
}

TEST_CASE("bytes written through a view become the file's or other views', and a copy's stay its own") {
    const Workplace place;
    Workplace::Write("a", "0123456789");
    Opened file("a");
    const HANDLE mapping = Map(file, PAGE_READWRITE);
    char* view = View(mapping, FILE_MAP_WRITE);
    char* copy = View(mapping, FILE_MAP_COPY);
    REQUIRE((view && copy));
    // The view alone keeps everything.
    CHECK(CloseHandle(mapping));
    file.Close();
    view[9] = 'x';
    copy[0] = 'y';
    CHECK(view[0] == '0');
    CHECK(FlushViewOfFile(view, 0));
    CHECK((UnmapViewOfFile(copy) && UnmapViewOfFile(view)));
    for (const void* none : {static_cast<const void*>(view), static_cast<const void*>(nullptr)})
        CHECK(ErrorOf(UnmapViewOfFile(none)) == ERROR_INVALID_ADDRESS);
    CHECK(Workplace::Read("a") == "012345678x");

    const HANDLE anonymous = Map(INVALID_HANDLE_VALUE, PAGE_READWRITE, 3 * k64KiB);
    char *all = View(anonymous, FILE_MAP_WRITE), *part = View(anonymous, FILE_MAP_READ, k64KiB, 1);
    REQUIRE((all && part && *part == 0));
    all[k64KiB] = 'x';
    CHECK(*part == 'x');
    CHECK((UnmapViewOfFile(part) && UnmapViewOfFile(all) && CloseHandle(anonymous)));
}

TEST_CASE("a mapped file is not cut short, and shares again once its handle is closed") {
    const Workplace place;
    Workplace::Write("a", "0123456789");
    Opened file("a");
    const HANDLE mapping = Map(file, PAGE_READONLY);
    CHECK(ErrorOf(SetEndOfFile(file)) == ERROR_USER_MAPPED_FILE);
    CHECK(ErrorOfOpening("a", GENERIC_READ) == ERROR_SHARING_VIOLATION);
    file.Close();
    if (kOnLayer) { // Wine keeps the share modes with the mapping
        CHECK(ErrorOfOpening("a", GENERIC_READ) == 0);
        CHECK(ErrorOfOpening("a", GENERIC_WRITE, 0, CREATE_ALWAYS) == ERROR_USER_MAPPED_FILE);
    }
    CHECK(CloseHandle(mapping));
    CHECK(ErrorOfOpening("a", GENERIC_WRITE, 0, CREATE_ALWAYS) == 0);
}
