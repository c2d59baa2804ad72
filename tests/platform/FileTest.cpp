#include "Opened.h"

#include "tests/support/Faults.h"
#include "tests/support/SecondProcess.h"

#include <algorithm>
#include <vector>

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

bool Exists(const char* name) {
    return GetFileAttributesA(name) != INVALID_FILE_ATTRIBUTES;
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

constexpr DWORD kAccesses[] = {0, GENERIC_READ, GENERIC_WRITE, DELETE, kReadWrite | DELETE};

// The number of ways of opening "a" a second time that end otherwise than they should.
int WrongSecondOpenings(DWORD access, DWORD share) {
    int wrong = 0;
    for (const DWORD other : kAccesses)
        for (DWORD otherShare = 0; otherShare <= kShareAll; ++otherShare) {
            const DWORD right = Compatible(access, share, other, otherShare) ? 0 : ERROR_SHARING_VIOLATION;
            wrong += ErrorOfOpening("a", other, otherShare) != right;
        }
    return wrong;
}

} // namespace

TEST_CASE("a disposition decides what becomes of a file and of the last error") {
    struct Row {
        DWORD disposition;
        bool exists;
        DWORD error; // the last error, after a success too
        int size;    // afterwards, -1 for none
    };
    const Row rows[] = {
        {CREATE_NEW, false, 0, 0},
        {CREATE_NEW, true, ERROR_FILE_EXISTS, 3},
        {CREATE_ALWAYS, false, 0, 0},
        {CREATE_ALWAYS, true, ERROR_ALREADY_EXISTS, 0},
        {OPEN_EXISTING, false, ERROR_FILE_NOT_FOUND, -1},
        {OPEN_EXISTING, true, 0, 3},
        {OPEN_ALWAYS, false, 0, 0},
        {OPEN_ALWAYS, true, ERROR_ALREADY_EXISTS, 3},
        {TRUNCATE_EXISTING, false, ERROR_FILE_NOT_FOUND, -1},
        {TRUNCATE_EXISTING, true, 0, 0},
    };
    for (const Row& row : rows) {
        CAPTURE(row.disposition);
        CAPTURE(row.exists);
        const Workplace place;
        if (row.exists)
            Workplace::Write("a", "123");
        SetLastError(777);
        Opened file("a", GENERIC_WRITE, 0, row.disposition);
        CHECK(GetLastError() == row.error);
        CHECK(file.Good() == (row.error == 0 || row.error == ERROR_ALREADY_EXISTS));
        file.Close();
        CHECK((Exists("a") ? static_cast<int>(Workplace::Read("a").size()) : -1) == row.size);
    }
}

TEST_CASE("refused openings give the codes of Windows") {
    const Workplace place;
    Workplace::Write("file");
    REQUIRE(CreateDirectoryA("folder", nullptr));
    struct Row {
        const char* path;
        DWORD access;
        DWORD disposition;
        DWORD flags;
        DWORD error;
        bool alike = true; // on Wine
    };
    const Row rows[] = {
        {"", GENERIC_READ, OPEN_EXISTING, 0, ERROR_PATH_NOT_FOUND},
        {"none", GENERIC_READ, OPEN_EXISTING, 0, ERROR_FILE_NOT_FOUND},
        {"none\\file", GENERIC_WRITE, CREATE_ALWAYS, 0, ERROR_PATH_NOT_FOUND},
        {"file\\file", GENERIC_READ, OPEN_EXISTING, 0, ERROR_PATH_NOT_FOUND},
        {"file\\", GENERIC_READ, OPEN_EXISTING, 0, ERROR_INVALID_NAME},
        {"none\\", GENERIC_WRITE, CREATE_NEW, 0, ERROR_INVALID_NAME},
        {"file", GENERIC_READ, 0, 0, ERROR_INVALID_PARAMETER},
        {"file", GENERIC_READ, 6, 0, ERROR_INVALID_PARAMETER},
        {"file", GENERIC_READ, TRUNCATE_EXISTING, 0, ERROR_INVALID_PARAMETER, false},
        {"folder", GENERIC_READ, OPEN_EXISTING, 0, ERROR_ACCESS_DENIED},
        {"folder\\", GENERIC_READ, OPEN_EXISTING, 0, ERROR_ACCESS_DENIED},
        {"folder", 0, OPEN_EXISTING, 0, ERROR_ACCESS_DENIED},
        {"folder", GENERIC_WRITE, OPEN_ALWAYS, 0, ERROR_ACCESS_DENIED},
        {"folder", GENERIC_WRITE, CREATE_ALWAYS, 0, ERROR_ACCESS_DENIED},
        {"folder", GENERIC_WRITE, CREATE_NEW, 0, ERROR_FILE_EXISTS},
        {"folder", GENERIC_WRITE, CREATE_ALWAYS, FILE_FLAG_BACKUP_SEMANTICS, ERROR_FILE_EXISTS},
        {"folder", kReadWrite, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, 0},
        {"file", GENERIC_READ | ACCESS_SYSTEM_SECURITY, OPEN_EXISTING, 0, ERROR_PRIVILEGE_NOT_HELD, false},
        {"file", GENERIC_READ, OPEN_EXISTING, FILE_FLAG_NO_BUFFERING | FILE_FLAG_RANDOM_ACCESS, 0},
    };
    for (const Row& row : rows) {
        CAPTURE(row.path);
        CAPTURE(row.disposition);
        if (row.alike || kOnLayer)
            CHECK(ErrorOfOpening(row.path, row.access, 0, row.disposition, row.flags) == row.error);
    }
    if (kOnLayer)
        CHECK(ErrorOfOpening("file", GENERIC_READ, /*share*/ 8) == ERROR_INVALID_PARAMETER);
}

TEST_CASE("openings of one file share it right by right") {
    const Workplace place;
    Workplace::Write("a");
    for (const DWORD access : kAccesses)
        for (DWORD share = 0; share <= kShareAll; ++share) {
            CAPTURE(access);
            CAPTURE(share);
            const Opened first("a", access, share);
            REQUIRE(first.Good());
            CHECK(WrongSecondOpenings(access, share) == 0);
        }
    CHECK(ErrorOfOpening("a", kReadWrite | DELETE) == 0);
}

TEST_CASE("share modes hold towards other processes") {
    const Workplace place;
    Workplace::Write("a");
    kel::test::SecondProcess other([](std::uint64_t share) {
        return static_cast<int>(ErrorOfOpening("a", GENERIC_READ, static_cast<DWORD>(share)));
    });
    if (!other.Runs()) {
        MESSAGE("a test program cannot start a second process here");
        return;
    }
    Opened file("a", GENERIC_READ, FILE_SHARE_READ);
    CHECK(other.Ask(FILE_SHARE_READ) == 0);
    CHECK(other.Ask(FILE_SHARE_WRITE) == ERROR_SHARING_VIOLATION);
    file.Close();
    CHECK(other.Ask(FILE_SHARE_WRITE) == 0);
}

TEST_CASE("a file that is open without sharing is neither deleted nor moved") {
    const Workplace place;
    Workplace::Write("a");
    Opened file("a", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
    CHECK(ErrorOf(DeleteFileA("a")) == ERROR_SHARING_VIOLATION);
    CHECK(ErrorOf(MoveFileExA("a", "b", 0)) == ERROR_SHARING_VIOLATION);
    file.Close();
    const Opened shared("a", GENERIC_READ, kShareAll);
    CHECK(DeleteFileA("a"));
}

TEST_CASE("a read-only file is written by nobody but the handle that makes it") {
    const Workplace place;
    Opened file("a", GENERIC_WRITE, 0, CREATE_NEW, FILE_ATTRIBUTE_READONLY);
    CHECK(Write(file, "123", 3) == 3);
    file.Close();
    CHECK((GetFileAttributesA("a") & FILE_ATTRIBUTE_READONLY) != 0);
    CHECK(ErrorOfOpening("a", GENERIC_READ | FILE_WRITE_ATTRIBUTES) == 0);
    CHECK(ErrorOfOpening("a", DELETE, 0, OPEN_EXISTING, FILE_FLAG_DELETE_ON_CLOSE) == ERROR_ACCESS_DENIED);
    if (!kOnLayer) // Wine lets the superuser write
        return;
    for (const DWORD access : {DWORD{GENERIC_WRITE}, DWORD{FILE_APPEND_DATA}, DWORD{GENERIC_ALL}})
        CHECK(ErrorOfOpening("a", access) == ERROR_ACCESS_DENIED);
    CHECK(ErrorOfOpening("a", GENERIC_READ, 0, CREATE_ALWAYS) == ERROR_ACCESS_DENIED);
    CHECK(Workplace::Read("a") == "123");
}

TEST_CASE("a file marked for deletion goes with the last handle") {
    const Workplace place;
    Opened file("a", GENERIC_WRITE, kShareAll, CREATE_NEW, FILE_FLAG_DELETE_ON_CLOSE);
    HANDLE copy = nullptr;
    CHECK(DuplicateHandle(GetCurrentProcess(), file, GetCurrentProcess(), &copy, 0, FALSE, DUPLICATE_SAME_ACCESS));
    CHECK(CloseHandle(copy));
    CHECK(Exists("a"));
    file.Close();
    CHECK_FALSE(Exists("a"));
}

TEST_CASE("calls need the right to do what they do") {
    const Workplace place;
    Workplace::Write("a", "123");
    const FILETIME time = {0, 30000000};
    char byte;
    {
        const Opened reader("a", GENERIC_READ);
        CHECK(ErrorOf(Write(reader, "x", 1) != -1) == ERROR_ACCESS_DENIED);
        CHECK(ErrorOf(Write(reader, "x", 0) != -1) == ERROR_ACCESS_DENIED);
        CHECK(ErrorOf(FlushFileBuffers(reader)) == ERROR_ACCESS_DENIED);
        CHECK_FALSE(SetEndOfFile(reader));
        if (kOnLayer)
            CHECK(ErrorOf(SetFileTime(reader, nullptr, nullptr, &time)) == ERROR_ACCESS_DENIED);
    }
    const Opened writer("a", GENERIC_WRITE);
    CHECK(ErrorOf(Read(writer, &byte, 1) != -1) == ERROR_ACCESS_DENIED);
    CHECK(SetFileTime(writer, nullptr, nullptr, &time));
    const Opened attributes("a", 0);
    CHECK(ErrorOf(Read(attributes, &byte, 1) != -1) == ERROR_ACCESS_DENIED);
    CHECK(SizeOf(attributes) == 3);
}

TEST_CASE("reading stops at the end of the file with success") {
    const Workplace place;
    Workplace::Write("a", "0123");
    const Opened file("a");
    char buffer[8] = {};
    CHECK(Read(file, buffer, 8) == 4);
    CHECK(std::string(buffer) == "0123");
    CHECK(Read(file, buffer, 8) == 0);
    CHECK(Read(file, buffer, 0) == 0);
    CHECK(MoveTo(file, 0));
    CHECK(ErrorOf(Read(file, nullptr, 1) != -1) == ERROR_NOACCESS);
    CHECK(MoveTo(file, 6));
    CHECK(Write(file, "6", 1) == 1);
    CHECK(SizeOf(file) == 7);
    CHECK(MoveTo(file, 3));
    CHECK(Read(file, buffer, 8) == 4);
    CHECK(std::string(buffer, 4) == std::string("3\0\0"
                                                "6",
                                                4));
}

TEST_CASE("a transfer at an offset moves the position past it") {
    const Workplace place;
    Workplace::Write("a", "0123456789");
    const Opened file("a");
    char buffer[8] = {};
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
    const Opened appending("b", FILE_APPEND_DATA, 0, CREATE_NEW);
    at = At(0);
    CHECK(Write(appending, "01", 2) == 2);
    CHECK(Write(appending, "23", 2, &at) == 2);
    CHECK(SizeOf(appending) == 4);
    const Opened asynchronous("NUL", GENERIC_READ, 0, OPEN_EXISTING, FILE_FLAG_OVERLAPPED);
    CHECK(ErrorOf(Read(asynchronous, buffer, 1) != -1) == ERROR_INVALID_PARAMETER);
}

TEST_CASE("positions move from the start, the position and the end") {
    const Workplace place;
    Workplace::Write("a", "0123456789");
    const Opened file("a");
    CHECK(SetFilePointer(file, 4, nullptr, FILE_BEGIN) == 4);
    CHECK(SetFilePointer(file, -3, nullptr, FILE_CURRENT) == 1);
    CHECK(SetFilePointer(file, -10, nullptr, FILE_END) == 0);
    CHECK(SetFilePointer(file, 5, nullptr, FILE_END) == 15);
    CHECK(ErrorOf(SetFilePointer(file, -16, nullptr, FILE_CURRENT) != INVALID_SET_FILE_POINTER) == ERROR_NEGATIVE_SEEK);
    CHECK(ErrorOf(SetFilePointer(file, 0, nullptr, 3) != INVALID_SET_FILE_POINTER) == ERROR_INVALID_PARAMETER);
    CHECK(SetFilePointer(file, 0, nullptr, FILE_CURRENT) == 15);
    LONG high = 0;
    SetLastError(777);
    CHECK(SetFilePointer(file, -1, &high, FILE_BEGIN) == INVALID_SET_FILE_POINTER);
    CHECK(GetLastError() == 0);
    CHECK(high == 0);
    if (kOnLayer) {
        CHECK(SetFilePointer(file, 1, nullptr, FILE_CURRENT) == INVALID_SET_FILE_POINTER);
        CHECK(GetLastError() == ERROR_INVALID_PARAMETER);
    }
}

TEST_CASE("bytes at and past 4 GiB are written, read and cut") {
    const Workplace place;
    const Opened file("a", kReadWrite, 0, CREATE_NEW);
    char buffer[4] = {};
    for (const std::int64_t position : {4 * kGiB - 2, 4 * kGiB, 5 * kGiB}) {
        CAPTURE(position);
        LONG high = static_cast<LONG>(position >> 32);
        CHECK(SetFilePointer(file, static_cast<LONG>(position), &high, FILE_BEGIN) == static_cast<DWORD>(position));
        CHECK(high == static_cast<LONG>(position >> 32));
        CHECK(Write(file, "abcd", 4) == 4);
        CHECK(SizeOf(file) == position + 4);
        CHECK(MoveTo(file, position + 1));
        CHECK(Read(file, buffer, 4) == 3);
        CHECK(std::string(buffer, 3) == "bcd");
    }
    DWORD high = 0;
    CHECK(GetFileSize(file, &high) == (kGiB & 0xFFFFFFFF) + 4);
    CHECK(high == 1);
    CHECK(MoveTo(file, 4 * kGiB - 1));
    CHECK(SetEndOfFile(file));
    SetLastError(777);
    CHECK(GetFileSize(file, nullptr) == INVALID_FILE_SIZE);
    CHECK(GetLastError() == 0);
}

TEST_CASE("times are kept to 100 ns, and what means no time leaves them") {
    const Workplace place;
    const Opened file("a", kReadWrite, 0, CREATE_NEW);
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    FILETIME created;
    FILETIME written;
    CHECK(GetFileTime(file, &created, nullptr, &written));
    CHECK(CompareFileTime(&created, &now) <= 0);
    // 1910, 1970 less 100 ns, 2016; file systems of the host begin with 1901
    for (const std::int64_t ticks :
         {std::int64_t{97510000000000001}, std::int64_t{116444735999999999}, std::int64_t{131000000000000007}}) {
        CAPTURE(ticks);
        const FILETIME wanted = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
        FILETIME accessed;
        CHECK(SetFileTime(file, nullptr, &wanted, &wanted));
        for (const FILETIME none : {FILETIME{0, 0}, FILETIME{0xFFFFFFFF, 0xFFFFFFFF}})
            CHECK(SetFileTime(file, &none, &none, &none));
        CHECK(GetFileTime(file, nullptr, &accessed, &written));
        CHECK(CompareFileTime(&accessed, &wanted) == 0);
        CHECK(CompareFileTime(&written, &wanted) == 0);
        BY_HANDLE_FILE_INFORMATION information;
        CHECK(GetFileInformationByHandle(file, &information));
        CHECK(CompareFileTime(&information.ftLastWriteTime, &wanted) == 0);
    }
    const FILETIME tooLate = {0, 0x80000000};
    CHECK(ErrorOf(SetFileTime(file, nullptr, nullptr, &tooLate)) == ERROR_INVALID_PARAMETER);
}

TEST_CASE("all names of a file lead to one index") {
    const Workplace place;
    Workplace::Write(".hidden", "123");
    BY_HANDLE_FILE_INFORMATION facts[3] = {};
    const char* const names[] = {".hidden", ".\\.HIDDEN", "."};
    for (int i = 0; i < 3; ++i)
        CHECK(GetFileInformationByHandle(Opened(names[i], 0, 0, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS), &facts[i]));
    CHECK(facts[0].nFileIndexLow == facts[1].nFileIndexLow);
    CHECK(facts[0].nFileIndexLow != facts[2].nFileIndexLow);
    CHECK(facts[0].nFileSizeLow == 3);
    CHECK((facts[0].dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0);
    CHECK((facts[2].dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0);
    if (kOnLayer)
        CHECK((facts[0].dwFileAttributes & FILE_ATTRIBUTE_HIDDEN) != 0);
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

TEST_CASE("each call can be made to fail, and transfers to stop halfway") {
    const Workplace place;
    const auto copies = [] {
        const Opened file("a", kReadWrite, 0, CREATE_ALWAYS);
        char buffer[4];
        return file.Good() && Write(file, "abcd", 4) == 4 && FlushFileBuffers(file) && MoveTo(file, 0) &&
               Read(file, buffer, 4) == 4;
    };
    std::vector<std::string> failed;
    kel::test::WithEachCallFailing(ERROR_WRITE_FAULT, [&] {
        const bool good = copies();
        const DWORD error = GetLastError();
        if (*kel::test::FaultedCall() != '\0')
            failed.push_back(kel::test::FaultedCall());
        CHECK((good || error == ERROR_WRITE_FAULT));
    });
    const std::vector<std::string> calls = {"CreateFileA",      "WriteFile", "FlushFileBuffers",
                                            "SetFilePointerEx", "ReadFile",  "CloseHandle"};
    if (!kel::test::FaultsAvailable())
        return;
    CHECK(failed == calls);
    const Opened file("a", kReadWrite, 0, CREATE_ALWAYS);
    kel::test::ArmFault(1, 0, kel::test::Fault::ShortTransfer);
    CHECK(Write(file, "abcde", 5) == 2);
    CHECK(kel::test::DisarmFault());
    CHECK(SizeOf(file) == 2);
}
