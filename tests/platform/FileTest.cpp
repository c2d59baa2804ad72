#include "Opened.h"

#include "tests/support/FileTimes.h"
#include "tests/support/SecondProcess.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

constexpr std::int64_t kGiB = std::int64_t{1} << 30;

std::int64_t SizeOf(HANDLE file) {
    LARGE_INTEGER size = {};
    CHECK(GetFileSizeEx(file, &size));
    return size.QuadPart;
}

bool MoveTo(HANDLE file, std::int64_t position) {
    LARGE_INTEGER distance;
    distance.QuadPart = position;
    return SetFilePointerEx(file, distance, nullptr, FILE_BEGIN) != FALSE;
}

// What an opening uses and what it lets others use, right by right.
bool Compatible(DWORD access, DWORD share, DWORD otherAccess, DWORD otherShare) {
    constexpr DWORD kRights[][2] = {
        {GENERIC_READ, FILE_SHARE_READ}, {GENERIC_WRITE, FILE_SHARE_WRITE}, {DELETE, FILE_SHARE_DELETE}};
    return (access & (kReadWrite | DELETE)) == 0 || (otherAccess & (kReadWrite | DELETE)) == 0 ||
           std::all_of(std::begin(kRights), std::end(kRights), [=](const DWORD(&right)[2]) {
               return (!(access & right[0]) || otherShare & right[1]) &&
                      (!(otherAccess & right[0]) || share & right[1]);
           });
}

} // namespace

TEST_CASE("a disposition decides what becomes of a file and of the last error") {
    // The last error counts after a success too; the size afterwards is -1 for no file.
    // First what becomes of no file, then of one with three bytes.
    const auto opens = [](DWORD disposition, std::array<DWORD, 2> errors, std::array<int, 2> sizes) {
        for (const bool exists : {false, true}) {
            INFO(disposition, " ", exists);
            const Workplace place;
            if (exists)
                Workplace::Write("a", "123");
            SetLastError(777);
            Opened file("a", GENERIC_WRITE, 0, disposition);
            CHECK(GetLastError() == errors[exists]);
            CHECK(file.Good() == (errors[exists] == 0 || errors[exists] == ERROR_ALREADY_EXISTS));
            file.Close();
            CHECK((Exists("a") ? static_cast<int>(Workplace::Read("a").size()) : -1) == sizes[exists]);
        }
    };
    opens(CREATE_NEW, {0, ERROR_FILE_EXISTS}, {0, 3});
    opens(CREATE_ALWAYS, {0, ERROR_ALREADY_EXISTS}, {0, 0});
    opens(OPEN_EXISTING, {ERROR_FILE_NOT_FOUND, 0}, {-1, 3});
    opens(OPEN_ALWAYS, {0, ERROR_ALREADY_EXISTS}, {0, 3});
    opens(TRUNCATE_EXISTING, {ERROR_FILE_NOT_FOUND, 0}, {-1, 0});
}

TEST_CASE("refused openings give the codes of Windows") {
    const Workplace place;
    Workplace::Write("file");
    REQUIRE(CreateDirectoryA("folder", nullptr));
    const auto gives = [](const char* path, DWORD access, DWORD disposition, DWORD error, DWORD flags = 0) {
        CHECK_MESSAGE(ErrorOfOpening(path, access, 0, disposition, flags) == error, path, " ", access, " ",
                      disposition);
    };
    gives("", GENERIC_READ, OPEN_EXISTING, ERROR_PATH_NOT_FOUND);
    gives("none\\file", GENERIC_WRITE, CREATE_ALWAYS, ERROR_PATH_NOT_FOUND);
    gives("file\\", GENERIC_READ, OPEN_EXISTING, ERROR_INVALID_NAME);
    for (const DWORD disposition : {0, 6})
        gives("file", GENERIC_READ, disposition, ERROR_INVALID_PARAMETER);
    gives("folder\\", 0, OPEN_EXISTING, ERROR_ACCESS_DENIED);
    gives("folder", GENERIC_WRITE, CREATE_ALWAYS, ERROR_ACCESS_DENIED);
    gives("folder", GENERIC_WRITE, CREATE_NEW, ERROR_FILE_EXISTS);
    gives("folder", kReadWrite, OPEN_EXISTING, 0, FILE_FLAG_BACKUP_SEMANTICS);
    if (!kOnLayer)
        return;
    gives("file", GENERIC_READ, TRUNCATE_EXISTING, ERROR_INVALID_PARAMETER);
    CHECK(ErrorOfOpening("file", GENERIC_READ, /*share*/ 8) == ERROR_INVALID_PARAMETER);
}

TEST_CASE("openings of one file share it right by right") {
    const Workplace place;
    Workplace::Write("a");
    constexpr DWORD kAccesses[] = {0, GENERIC_READ, GENERIC_WRITE, DELETE, kReadWrite | DELETE};
    for (DWORD i = 0; i < 5 * 8 * 5 * 8; ++i) {
        const DWORD access = kAccesses[i / 320], share = i / 40 % 8, other = kAccesses[i / 8 % 5], otherShare = i % 8;
        const Opened first("a", access, share);
        const DWORD error = Compatible(access, share, other, otherShare) ? 0 : ERROR_SHARING_VIOLATION;
        CHECK_MESSAGE((first.Good() && ErrorOfOpening("a", other, otherShare) == error), access, " ", share, " ", other,
                      " ", otherShare);
    }
}

TEST_CASE("share modes hold towards other processes") {
    const Workplace place;
    Workplace::Write("a");
    kel::test::SecondProcess other([](std::uint64_t share) {
        return static_cast<int>(ErrorOfOpening("a", GENERIC_READ, static_cast<DWORD>(share)));
    });
    if (!other.Runs())
        return;
    Opened file("a", GENERIC_READ, FILE_SHARE_READ);
    CHECK(other.Ask(FILE_SHARE_READ) == 0);
    CHECK(other.Ask(FILE_SHARE_WRITE) == ERROR_SHARING_VIOLATION);
    file.Close();
    CHECK(other.Ask(FILE_SHARE_WRITE) == 0);
}

TEST_CASE("a read-only file is written by nobody but the handle that makes it") {
    const Workplace place;
    CHECK(Write(Opened("a", GENERIC_WRITE, 0, CREATE_NEW, FILE_ATTRIBUTE_READONLY), "123", 3) == 3);
    CHECK((GetFileAttributesA("a") & FILE_ATTRIBUTE_READONLY) != 0);
    CHECK(ErrorOfOpening("a", DELETE, 0, OPEN_EXISTING, FILE_FLAG_DELETE_ON_CLOSE) == ERROR_ACCESS_DENIED);
    if (!kOnLayer) // Wine lets the superuser write
        return;
    for (const DWORD access : {DWORD{GENERIC_WRITE}, DWORD{FILE_APPEND_DATA}, DWORD{GENERIC_ALL}})
        CHECK(ErrorOfOpening("a", access) == ERROR_ACCESS_DENIED);
    CHECK(ErrorOfOpening("a", GENERIC_READ, 0, CREATE_ALWAYS) == ERROR_ACCESS_DENIED);
    CHECK(Workplace::Read("a") == "123");
}

TEST_CASE("calls need the right to do what they do") {
    const Workplace place;
    Workplace::Write("a", "123");
    char byte = 'x';
    const auto allows = [&](DWORD access, bool reading, bool writing) {
        const Opened file("a", access);
        const auto gives = [&](const char* call, bool good, bool allowed) {
            CHECK_MESSAGE(ErrorOf(good) == (allowed ? 0 : ERROR_ACCESS_DENIED), access, " ", call);
        };
        gives("read", Read(file, &byte, 1) != -1, reading);
        gives("write", Write(file, &byte, 1) != -1, writing);
        gives("write nothing", Write(file, &byte, 0) != -1, writing);
        gives("flush", FlushFileBuffers(file), writing);
        if (!kOnLayer) // Wine lets all set times, and refuses an end otherwise
            return;
        gives("end", SetEndOfFile(file), writing);
        gives("time", SetFileTime(file, nullptr, nullptr, nullptr), writing);
    };
    allows(GENERIC_READ, true, false);
    allows(GENERIC_WRITE, false, true);
    allows(0, false, false);
}

TEST_CASE("reading stops at the end of the file with success, at an offset without, and moves the position") {
    const Workplace place;
    const Opened file("a", kReadWrite, 0, CREATE_NEW);
    char buffer[16] = {};
    CHECK((Write(file, "01234567", 8) == 8 && MoveTo(file, 9) && Write(file, "9", 1) == 1 && MoveTo(file, 0)));
    CHECK(ErrorOf(Read(file, nullptr, 1) != -1) == ERROR_NOACCESS);
    CHECK(Read(file, buffer, 16) == 10);
    CHECK(std::memcmp(buffer, "01234567\0009", 10) == 0);
    CHECK(Read(file, buffer, 16) == 0);
    OVERLAPPED at = At(8);
    CHECK(Read(file, buffer, 8, &at) == 2);
    CHECK(at.InternalHigh == 2);
    CHECK(SetFilePointer(file, 0, nullptr, FILE_CURRENT) == 10);
    at = At(10);
    CHECK(ErrorOf(Read(file, buffer, 8, &at) != -1) == ERROR_HANDLE_EOF);
    at = At(std::uint64_t{1} << 63);
    CHECK(ErrorOf(Read(file, buffer, 8, &at) != -1) == ERROR_INVALID_PARAMETER);
    at = At(~std::uint64_t{0});
    CHECK(Write(file, "end", 3, &at) == 3);
    CHECK(SizeOf(file) == 13);
}

TEST_CASE("bytes at and past 4 GiB are written, read and cut") {
    const Workplace place;
    const Opened file("a", kReadWrite, 0, CREATE_NEW);
    char buffer[4] = {};
    for (const std::int64_t position : {4 * kGiB - 2, 5 * kGiB}) {
        CAPTURE(position);
        const LONG wanted = static_cast<LONG>(position >> 32);
        LONG high = wanted;
        CHECK(SetFilePointer(file, static_cast<LONG>(position), &high, FILE_BEGIN) == static_cast<DWORD>(position));
        CHECK((high == wanted && Write(file, "abcd", 4) == 4 && MoveTo(file, position + 1)));
        CHECK((Read(file, buffer, 4) == 3 && std::string(buffer, 3) == "bcd"));
    }
    CHECK(SizeOf(file) == 5 * kGiB + 4);
    CHECK(MoveTo(file, 4 * kGiB - 1));
    CHECK(SetEndOfFile(file));
    SetLastError(777);
    DWORD high = 777;
    CHECK(GetFileSize(file, &high) == INVALID_FILE_SIZE);
    CHECK((GetLastError() == 0 && high == 0));
}

TEST_CASE("times are kept to 100 ns, and what means no time leaves them") {
    const Workplace place;
    const Opened file("a", kReadWrite, 0, CREATE_NEW);
    // 1910, 1970 less 100 ns, 2016; file systems of the host begin with 1901
    for (const std::uint64_t ticks : {97510000000000001, 116444735999999999, 131000000000000007}) {
        CAPTURE(ticks);
        const FILETIME wanted = Ticks(ticks);
        CHECK(SetFileTime(file, nullptr, &wanted, &wanted));
        for (const FILETIME none : {FILETIME{0, 0}, FILETIME{0xFFFFFFFF, 0xFFFFFFFF}})
            CHECK(SetFileTime(file, &none, &none, &none));
        FILETIME accessed, written;
        BY_HANDLE_FILE_INFORMATION information;
        CHECK((GetFileTime(file, nullptr, &accessed, &written) && GetFileInformationByHandle(file, &information)));
        CHECK((Count(accessed) == ticks && Count(written) == ticks && Count(information.ftLastWriteTime) == ticks));
    }
    const FILETIME tooLate = {0, 0x80000000};
    CHECK(ErrorOf(SetFileTime(file, nullptr, nullptr, &tooLate)) == ERROR_INVALID_PARAMETER);
}

TEST_CASE("all names of a file lead to one index") {
    const Workplace place;
    Workplace::Write("file", "123");
    BY_HANDLE_FILE_INFORMATION first = {}, second = {};
    CHECK(GetFileInformationByHandle(Opened("file"), &first));
    CHECK(GetFileInformationByHandle(Opened(".\\FILE", 0), &second));
    CHECK((first.nFileIndexLow == second.nFileIndexLow && second.nFileSizeLow == 3));
}

TEST_CASE("a full disk is reported with the bytes that were written") {
    const Opened full("C:\\dev\\full", GENERIC_WRITE);
    if (!full.Good()) {
        MESSAGE("there is no device here that is always full");
        return;
    }
    DWORD written = 1;
    CHECK(ErrorOf(WriteFile(full, "123", 3, &written, nullptr)) == ERROR_DISK_FULL);
    CHECK(written == 0);
}
