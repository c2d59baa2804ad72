#include "Opened.h"

#include "tests/support/Faults.h"
#include "tests/support/SecondProcess.h"

#include <algorithm>
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

constexpr DWORD kAccesses[] = {0, GENERIC_READ, GENERIC_WRITE, DELETE, kReadWrite | DELETE};

} // namespace

TEST_CASE("a disposition decides what becomes of a file and of the last error") {
    // The last error counts after a success too; the size afterwards is -1 for no file.
    const auto opens = [](DWORD disposition, bool exists, DWORD error, int size) {
        INFO(disposition, " ", exists);
        const Workplace place;
        if (exists)
            Workplace::Write("a", "123");
        SetLastError(777);
        Opened file("a", GENERIC_WRITE, 0, disposition);
        CHECK(GetLastError() == error);
        CHECK(file.Good() == (error == 0 || error == ERROR_ALREADY_EXISTS));
        file.Close();
        CHECK((Exists("a") ? static_cast<int>(Workplace::Read("a").size()) : -1) == size);
    };
    opens(CREATE_NEW, false, 0, 0);
    opens(CREATE_NEW, true, ERROR_FILE_EXISTS, 3);
    opens(CREATE_ALWAYS, false, 0, 0);
    opens(CREATE_ALWAYS, true, ERROR_ALREADY_EXISTS, 0);
    opens(OPEN_EXISTING, false, ERROR_FILE_NOT_FOUND, -1);
    opens(OPEN_EXISTING, true, 0, 3);
    opens(OPEN_ALWAYS, false, 0, 0);
    opens(OPEN_ALWAYS, true, ERROR_ALREADY_EXISTS, 3);
    opens(TRUNCATE_EXISTING, false, ERROR_FILE_NOT_FOUND, -1);
    opens(TRUNCATE_EXISTING, true, 0, 0);
}

TEST_CASE("refused openings give the codes of Windows") {
    const Workplace place;
    Workplace::Write("file");
    REQUIRE(CreateDirectoryA("folder", nullptr));
    const auto gives = [](const char* path, DWORD access, DWORD disposition, DWORD error, DWORD flags = 0) {
        INFO(path, " ", access, " ", disposition);
        CHECK(ErrorOfOpening(path, access, 0, disposition, flags) == error);
    };
    gives("", GENERIC_READ, OPEN_EXISTING, ERROR_PATH_NOT_FOUND);
    gives("none\\file", GENERIC_WRITE, CREATE_ALWAYS, ERROR_PATH_NOT_FOUND);
    gives("file\\file", GENERIC_READ, OPEN_EXISTING, ERROR_PATH_NOT_FOUND);
    gives("file\\", GENERIC_READ, OPEN_EXISTING, ERROR_INVALID_NAME);
    gives("none\\", GENERIC_WRITE, CREATE_NEW, ERROR_INVALID_NAME);
    gives("file", GENERIC_READ, 0, ERROR_INVALID_PARAMETER);
    gives("file", GENERIC_READ, 6, ERROR_INVALID_PARAMETER);
    gives("folder\\", 0, OPEN_EXISTING, ERROR_ACCESS_DENIED);
    gives("folder", GENERIC_WRITE, CREATE_ALWAYS, ERROR_ACCESS_DENIED);
    gives("folder", GENERIC_WRITE, CREATE_NEW, ERROR_FILE_EXISTS);
    gives("folder", GENERIC_WRITE, CREATE_ALWAYS, ERROR_FILE_EXISTS, FILE_FLAG_BACKUP_SEMANTICS);
    gives("folder", kReadWrite, OPEN_EXISTING, 0, FILE_FLAG_BACKUP_SEMANTICS);
    gives("file", GENERIC_READ, OPEN_EXISTING, 0, FILE_FLAG_NO_BUFFERING | FILE_FLAG_RANDOM_ACCESS);
    if (!kOnLayer)
        return;
    gives("file", GENERIC_READ, TRUNCATE_EXISTING, ERROR_INVALID_PARAMETER);
    gives("file", GENERIC_READ | ACCESS_SYSTEM_SECURITY, OPEN_EXISTING, ERROR_PRIVILEGE_NOT_HELD);
    CHECK(ErrorOfOpening("file", GENERIC_READ, /*share*/ 8) == ERROR_INVALID_PARAMETER);
}

TEST_CASE("openings of one file share it right by right") {
    const Workplace place;
    Workplace::Write("a");
    const auto each = [](const auto& opens) {
        for (const DWORD access : kAccesses)
            for (DWORD share = 0; share <= kShareAll; ++share)
                opens(access, share);
    };
    each([&](DWORD access, DWORD share) {
        INFO(access, " ", share);
        const Opened first("a", access, share);
        REQUIRE(first.Good());
        int wrong = 0;
        each([&](DWORD other, DWORD otherShare) {
            const DWORD error = Compatible(access, share, other, otherShare) ? 0 : ERROR_SHARING_VIOLATION;
            wrong += ErrorOfOpening("a", other, otherShare) != error;
        });
        CHECK(wrong == 0);
    });
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

TEST_CASE("a read-only file is written by nobody but the handle that makes it") {
    const Workplace place;
    CHECK(Write(Opened("a", GENERIC_WRITE, 0, CREATE_NEW, FILE_ATTRIBUTE_READONLY), "123", 3) == 3);
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
    CHECK(CloseHandle(Duplicate(file)));
    CHECK(Exists("a"));
    file.Close();
    CHECK_FALSE(Exists("a"));
}

TEST_CASE("calls need the right to do what they do") {
    const Workplace place;
    Workplace::Write("a", "123");
    const FILETIME time = {0, 30000000};
    char byte = 'x';
    const auto refused = [&](DWORD access) {
        const Opened file("a", access);
        std::string calls;
        const auto tries = [&](const char* call, BOOL good) {
            CHECK((good || GetLastError() == ERROR_ACCESS_DENIED));
            calls += good ? "" : call;
        };
        tries("read ", Read(file, &byte, 1) != -1);
        tries("write ", Write(file, &byte, 1) != -1);
        tries("write nothing ", Write(file, &byte, 0) != -1);
        tries("flush ", FlushFileBuffers(file));
        tries("time ", SetFileTime(file, nullptr, nullptr, &time) || !kOnLayer); // Wine lets all set it
        CHECK(SizeOf(file) == 3);
        return calls;
    };
    CHECK(refused(GENERIC_READ) == std::string("write write nothing flush ") + (kOnLayer ? "time " : ""));
    CHECK(refused(GENERIC_WRITE) == "read ");
    CHECK(ErrorOf(SetEndOfFile(Opened("a", GENERIC_READ))) ==
          (kOnLayer ? ERROR_ACCESS_DENIED : ERROR_INVALID_PARAMETER));
    CHECK(ErrorOf(Read(Opened("a", 0), &byte, 1) != -1) == ERROR_ACCESS_DENIED);
}

TEST_CASE("reading stops at the end of the file with success") {
    const Workplace place;
    Workplace::Write("a", "0123");
    const Opened file("a");
    char buffer[8] = {};
    CHECK(Read(file, buffer, 8) == 4);
    CHECK(Read(file, buffer, 8) == 0);
    CHECK(MoveTo(file, 0));
    CHECK(ErrorOf(Read(file, nullptr, 1) != -1) == ERROR_NOACCESS);
    CHECK(MoveTo(file, 6));
    CHECK(Write(file, "6", 1) == 1);
    CHECK(MoveTo(file, 0));
    CHECK(Read(file, buffer, 8) == 7);
    CHECK(std::memcmp(buffer, "0123\0\0006", 7) == 0);
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
    const auto moves = [&](LONG distance, DWORD from, DWORD position, DWORD error) {
        INFO(distance, " ", from);
        SetLastError(0);
        CHECK(SetFilePointer(file, distance, nullptr, from) == position);
        CHECK(GetLastError() == error);
    };
    moves(4, FILE_BEGIN, 4, 0);
    moves(-3, FILE_CURRENT, 1, 0);
    moves(5, FILE_END, 15, 0);
    moves(-16, FILE_CURRENT, INVALID_SET_FILE_POINTER, ERROR_NEGATIVE_SEEK);
    moves(0, 3, INVALID_SET_FILE_POINTER, ERROR_INVALID_PARAMETER);
    moves(0, FILE_CURRENT, 15, 0);
    LONG high = 0;
    SetLastError(777);
    CHECK(SetFilePointer(file, -1, &high, FILE_BEGIN) == INVALID_SET_FILE_POINTER);
    CHECK(GetLastError() == 0);
    if (kOnLayer)
        moves(1, FILE_CURRENT, INVALID_SET_FILE_POINTER, ERROR_INVALID_PARAMETER);
}

TEST_CASE("bytes at and past 4 GiB are written, read and cut") {
    const Workplace place;
    const Opened file("a", kReadWrite, 0, CREATE_NEW);
    char buffer[4] = {};
    for (const std::int64_t position : {4 * kGiB - 2, 5 * kGiB}) {
        CAPTURE(position);
        LONG high = static_cast<LONG>(position >> 32);
        CHECK(SetFilePointer(file, static_cast<LONG>(position), &high, FILE_BEGIN) == static_cast<DWORD>(position));
        CHECK(high == static_cast<LONG>(position >> 32));
        CHECK(Write(file, "abcd", 4) == 4);
        CHECK(MoveTo(file, position + 1));
        CHECK(Read(file, buffer, 4) == 3);
        CHECK(std::string(buffer, 3) == "bcd");
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
    for (const std::int64_t ticks : {97510000000000001, 116444735999999999, 131000000000000007}) {
        CAPTURE(ticks);
        const FILETIME wanted = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
        CHECK(SetFileTime(file, nullptr, &wanted, &wanted));
        for (const FILETIME none : {FILETIME{0, 0}, FILETIME{0xFFFFFFFF, 0xFFFFFFFF}})
            CHECK(SetFileTime(file, &none, &none, &none));
        FILETIME accessed, written;
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
    const auto facts = [](const char* name) {
        BY_HANDLE_FILE_INFORMATION found = {};
        CHECK(GetFileInformationByHandle(Opened(name, 0, 0, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS), &found));
        return found;
    };
    const auto file = facts(".hidden"), folder = facts(".");
    CHECK(file.nFileIndexLow == facts(".\\.HIDDEN").nFileIndexLow);
    CHECK(file.nFileIndexLow != folder.nFileIndexLow);
    CHECK(file.nFileSizeLow == 3);
    CHECK((!kOnLayer || file.dwFileAttributes == (FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_HIDDEN)));
    CHECK((folder.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0);
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
    std::string failed;
    kel::test::WithEachCallFailing(ERROR_WRITE_FAULT, [&] {
        bool good;
        {
            const Opened file("a", kReadWrite, 0, CREATE_ALWAYS);
            char buffer[4];
            good = file.Good() && Write(file, "abcd", 4) == 4 && FlushFileBuffers(file) && MoveTo(file, 0) &&
                   Read(file, buffer, 4) == 4;
        }
        CHECK((good || GetLastError() == ERROR_WRITE_FAULT));
        failed += std::string(" ") + kel::test::FaultedCall();
    });
    if (!kel::test::FaultsAvailable())
        return;
    CHECK(failed == " CreateFileA WriteFile FlushFileBuffers SetFilePointerEx ReadFile CloseHandle ");
    const Opened file("a", kReadWrite, 0, CREATE_ALWAYS);
    kel::test::ArmFault(1, 0, kel::test::Fault::ShortTransfer);
    CHECK(Write(file, "abcde", 5) == 2);
    CHECK(kel::test::DisarmFault());
    CHECK(SizeOf(file) == 2);
}
