#include "Opened.h"

#include "tests/support/SecondProcess.h"

#include <atomic>
#include <thread>

namespace {

constexpr std::uint64_t k4GiB = std::uint64_t{1} << 32;
constexpr DWORD kAtOnce = LOCKFILE_FAIL_IMMEDIATELY;
constexpr DWORD kExclusive = LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY;

struct Range {
    std::uint64_t offset;
    std::uint64_t length;
};

bool Lock(HANDLE file, Range range, DWORD flags = kExclusive) {
    OVERLAPPED at = At(range.offset);
    return LockFileEx(file, flags, 0, static_cast<DWORD>(range.length), static_cast<DWORD>(range.length >> 32), &at) !=
           FALSE;
}

bool Unlock(HANDLE file, Range range) {
    OVERLAPPED at = At(range.offset);
    return UnlockFileEx(file, 0, static_cast<DWORD>(range.length), static_cast<DWORD>(range.length >> 32), &at) !=
           FALSE;
}

// Two openings of one file of ten bytes.
struct TwoOpenings {
    Workplace place;
    Opened first{(Workplace::Write("a", "0123456789"), "a"), kReadWrite, kShareAll};
    Opened second{"a", kReadWrite, kShareAll};
};

// Whether a byte of "a" is locked for whoever opens it now.
int IsLocked(std::uint64_t offset) {
    const Opened file("a", kReadWrite, kShareAll);
    return Lock(file, {offset, 1}) ? 0 : 1;
}

} // namespace

TEST_CASE("a lock refuses what overlaps it, through its own handle and others") {
    const TwoOpenings files;
    const auto tries = [&](Range held, Range wanted, bool free) {
        INFO(held.offset, " ", held.length, " ", wanted.offset, " ", wanted.length);
        for (const HANDLE other : {static_cast<HANDLE>(files.first), static_cast<HANDLE>(files.second)}) {
            REQUIRE(Lock(files.first, held));
            CHECK(ErrorOf(Lock(other, wanted)) == (free ? 0 : ERROR_LOCK_VIOLATION));
            CHECK((!free || Unlock(other, wanted)));
            CHECK(Unlock(files.first, held));
        }
    };
    // Ranges of no to three bytes near the beginning (at 0 Wine has its own view of no bytes), across 4 GiB and up to
    // the last byte of all.
    for (const std::uint64_t base : {std::uint64_t{!kOnLayer}, k4GiB - 3, ~std::uint64_t{0} - 6})
        for (std::uint64_t i = 0; i < 20 * 20; ++i) {
            const Range held{i % 5, i / 5 % 4}, wanted{i / 20 % 5, i / 100};
            tries({base + held.offset, held.length}, {base + wanted.offset, wanted.length},
                  held.offset >= wanted.offset + wanted.length || wanted.offset >= held.offset + held.length);
        }
    tries({1, 1}, {k4GiB + 1, 1}, true);
    tries({0, ~std::uint64_t{0}}, {k4GiB, 1}, false);
    CHECK(ErrorOf(LockFile(files.first, 0xFFFFFFFF, 0xFFFFFFFF, 2, 0)) == ERROR_INVALID_PARAMETER);
}

TEST_CASE("shared locks stand beside each other and over the own exclusive one") {
    const TwoOpenings files;
    CHECK(Lock(files.first, {0, 5}, kAtOnce));
    CHECK(Lock(files.second, {2, 2}, kAtOnce));
    for (const HANDLE file : {HANDLE(files.first), HANDLE(files.second)})
        CHECK_FALSE(Lock(file, {4, 1}));
    CHECK(Unlock(files.second, {2, 2}));
    CHECK(Unlock(files.first, {0, 5}));

    CHECK(Lock(files.first, {0, 5}));
    CHECK_FALSE(Lock(files.second, {2, 2}, kAtOnce));
    CHECK(Lock(files.first, {0, 5}, kAtOnce));
    CHECK(Unlock(files.first, {0, 5})); // the exclusive one
    CHECK(Lock(files.second, {2, 2}, kAtOnce));
}

TEST_CASE("only what was locked as a whole is unlocked") {
    const TwoOpenings files;
    for (const Range range : {Range{2, 4}, Range{6, 2}})
        CHECK(Lock(files.first, range));
    const auto refuses = [](HANDLE file, Range range) {
        INFO(range.offset, " ", range.length);
        // Wine answers ERROR_LOCK_VIOLATION
        CHECK(ErrorOf(Unlock(file, range)) == (kOnLayer ? ERROR_NOT_LOCKED : ERROR_LOCK_VIOLATION));
    };
    for (const Range range : {Range{2, 3}, Range{3, 3}, Range{2, 6}, Range{4, 0}})
        refuses(files.first, range);
    refuses(files.second, {2, 4});
    CHECK(Unlock(files.first, {2, 4}));
    refuses(files.first, {2, 4});
    CHECK_FALSE(Lock(files.second, {6, 1}));
}

TEST_CASE("locks hold towards other processes") {
    const Workplace place;
    Workplace::Write("a");
    kel::test::SecondProcess other(IsLocked);
    if (!other.Runs())
        return;
    const auto areLocked = [&](std::initializer_list<std::uint64_t> offsets) {
        std::string answers;
        for (const std::uint64_t offset : offsets)
            answers += std::to_string(other.Ask(offset));
        return answers;
    };
    const Opened file("a", kReadWrite, kShareAll);
    const Opened reader("a", GENERIC_READ, kShareAll);
    CHECK(Lock(file, {2, 4}));
    CHECK(Lock(file, {k4GiB, 1}, kAtOnce));
    CHECK(Lock(reader, {20, 1})); // exclusively all the same
    CHECK_FALSE(Lock(file, {20, 1}));
    CHECK(areLocked({0, 1, 2, 5, 6, 20, k4GiB, k4GiB + 1}) == "00110110");
    CHECK(Unlock(file, {2, 4}));
    CHECK(areLocked({2, 5, k4GiB}) == "001");
    // One of two that overlap goes.
    CHECK(Lock(file, {8, 4}, kAtOnce));
    CHECK(Lock(file, {10, 4}, kAtOnce));
    CHECK(Unlock(file, {8, 4}));
    CHECK(areLocked({8, 9, 10, 13, 14}) == "00110");
}

TEST_CASE("transfers that touch another handle's lock are refused") {
    const TwoOpenings files;
    if (!kOnLayer) {
        MESSAGE("locks do not stop transfers on Wine");
        return;
    }
    char buffer[10] = {};
    constexpr DWORD kRefused = ERROR_LOCK_VIOLATION;
    const HANDLE own = files.first, other = files.second;
    const auto tries = [&](HANDLE file, std::uint64_t offset, DWORD count, DWORD reading, DWORD writing) {
        INFO(offset, " ", count);
        OVERLAPPED from = At(offset), to = At(offset);
        CHECK(ErrorOf(Read(file, buffer, count, &from) != -1) == reading);
        CHECK(ErrorOf(Write(file, buffer, count, &to) != -1) == writing);
    };
    CHECK(Lock(own, {4, 2}));
    tries(own, 0, 10, 0, 0);
    tries(other, 0, 4, 0, 0);
    tries(other, 0, 5, kRefused, kRefused);
    tries(other, 5, 0, 0, 0);
    CHECK(SetFilePointer(other, 4, nullptr, FILE_BEGIN) == 4);
    CHECK(ErrorOf(Read(other, buffer, 1) != -1) == kRefused);
    CHECK(Unlock(own, {4, 2}));

    CHECK(Lock(own, {4, 2}, kAtOnce)); // shared: read by all, written by nobody
    tries(other, 0, 10, 0, kRefused);
    tries(own, 4, 1, 0, kRefused);
}

TEST_CASE("a lock that may wait comes when the bytes are free; locks end with the handle, not with a duplicate") {
    TwoOpenings files;
    REQUIRE(Lock(files.first, {0, 5}));
    std::atomic<bool> freed{false};
    std::atomic<bool> asked{false};
    bool waited = false;
    std::thread waiting([&] {
        asked = true;
        waited = Lock(files.second, {4, 1}, LOCKFILE_EXCLUSIVE_LOCK) && freed;
    });
    while (!asked)
        std::this_thread::yield();
    freed = true;
    CHECK(Unlock(files.first, {0, 5}));
    waiting.join();
    CHECK(waited);
    CHECK(CloseHandle(Duplicate(files.second)));
    CHECK_FALSE(Lock(files.first, {0, 5}));
    files.second.Close();
    CHECK(Lock(files.first, {0, 5}));
}
