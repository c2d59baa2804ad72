#include "tests/support/Faults.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <initializer_list>

namespace {

/// More than lies free behind any block, so that a block which may not move cannot grow to it.
constexpr SIZE_T kBeyondItsPlace = 0x10000000;

/// The result of a failing call's last error, 0 if it succeeded.
template <class Result>
DWORD ErrorUnless(Result result) {
    return result ? 0 : GetLastError();
}

} // namespace

TEST_CASE("a movable block has an address while it is locked") {
    const HGLOBAL block = GlobalAlloc(GHND, 100);
    char* const bytes = static_cast<char*>(GlobalLock(block));
    REQUIRE(bytes != nullptr);
    CHECK((bytes[0] == 0 && bytes[99] == 0));
    CHECK(GlobalSize(block) == 100);
    CHECK(GlobalLock(block) == bytes);
    CHECK(GlobalFlags(block) == 2);
    CHECK(GlobalHandle(bytes) == block);
    CHECK(GlobalUnlock(block));
    CHECK(ErrorUnless(GlobalUnlock(block)) == NO_ERROR);
    CHECK(ErrorUnless(GlobalUnlock(block)) == ERROR_NOT_LOCKED);
    CHECK(GlobalFree(block) == nullptr);
}

TEST_CASE("a movable block keeps its handle and bytes through changes of size") {
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, 10);
    std::memcpy(GlobalLock(block), "0123456789", 10);
    CHECK(ErrorUnless(GlobalReAlloc(block, kBeyondItsPlace, GMEM_FIXED)) == ERROR_NOT_ENOUGH_MEMORY); // locked
    CHECK(GlobalReAlloc(block, 100000, GMEM_MOVEABLE | GMEM_ZEROINIT) == block);
    CHECK(GlobalFlags(block) == 1);
    CHECK(std::memcmp(GlobalLock(block), "0123456789\0", 12) == 0);
    GlobalUnlock(block);
    GlobalUnlock(block);
    CHECK(ErrorUnless(GlobalReAlloc(block, static_cast<SIZE_T>(-1), GMEM_MOVEABLE)) == ERROR_NOT_ENOUGH_MEMORY);
    CHECK(GlobalSize(block) == 100000);
    CHECK((GlobalReAlloc(block, 0, GMEM_MOVEABLE) == block && GlobalFlags(block) == GMEM_DISCARDED));
    CHECK(ErrorUnless(GlobalLock(block)) == ERROR_DISCARDED);
    CHECK((GlobalReAlloc(block, 8, GMEM_MOVEABLE) == block && GlobalLock(block) != nullptr));
    CHECK(GlobalFree(block) == nullptr);
}

TEST_CASE("a fixed block's handle is its address") {
    const HGLOBAL block = GlobalAlloc(GPTR, 100);
    CHECK((GlobalLock(block) == block && GlobalUnlock(block) && GlobalHandle(block) == block));
    CHECK(ErrorUnless(GlobalReAlloc(block, kBeyondItsPlace, GMEM_FIXED)) == ERROR_NOT_ENOUGH_MEMORY);
    const HGLOBAL movable = GlobalReAlloc(block, 0, GMEM_MODIFY | GMEM_MOVEABLE);
    CHECK(GlobalSize(movable) == 100);
    CHECK(GlobalFree(movable) == nullptr);
}

TEST_CASE("large blocks are zero when asked for, whatever lay in those that were freed") {
    for (const SIZE_T size : {20'000'000, 19'000'000, 24'000'000, 8'500'000}) {
        for (const UINT flags : {GMEM_MOVEABLE, GMEM_MOVEABLE | GMEM_ZEROINIT}) {
            const HGLOBAL block = GlobalAlloc(flags, size);
            char* bytes = static_cast<char*>(GlobalLock(block));
            REQUIRE(bytes != nullptr);
            CHECK((flags == GMEM_MOVEABLE || std::count(bytes, bytes + size, 0) == static_cast<std::ptrdiff_t>(size)));
            std::memset(bytes, 7, size);
            GlobalUnlock(block);
            REQUIRE(GlobalReAlloc(block, 2 * size, GMEM_MOVEABLE | GMEM_ZEROINIT) == block);
            bytes = static_cast<char*>(GlobalLock(block));
            CHECK(std::count(bytes, bytes + size, 7) == static_cast<std::ptrdiff_t>(size));
            CHECK((bytes[size] == 0 && bytes[2 * size - 1] == 0));
            std::memset(bytes, 7, 2 * size);
            GlobalUnlock(block);
            CHECK(GlobalSize(block) == 2 * size);
            CHECK(GlobalFree(block) == nullptr);
        }
    }
}

TEST_CASE("what is no block is refused") {
    const HGLOBAL gone = GlobalAlloc(GMEM_MOVEABLE, 10);
    GlobalFree(gone);
    CHECK(GlobalFree(gone) == gone);
    for (const DWORD error : {ErrorUnless(GlobalLock(gone)), ErrorUnless(GlobalUnlock(gone)),
                              ErrorUnless(GlobalSize(gone)), ErrorUnless(GlobalReAlloc(gone, 4, GMEM_MOVEABLE))})
        CHECK(error == ERROR_INVALID_HANDLE);
    CHECK(GlobalFlags(gone) == GMEM_INVALID_HANDLE);
    CHECK(GlobalFree(nullptr) == nullptr);
    for (const UINT flags : {GMEM_MOVEABLE, GMEM_FIXED})
        CHECK(ErrorUnless(GlobalAlloc(flags, static_cast<SIZE_T>(-1))) == ERROR_NOT_ENOUGH_MEMORY);
}

TEST_CASE("each call on blocks can be made to fail") {
    kel::test::WithEachCallFailing(ERROR_NOT_ENOUGH_MEMORY, [] {
        const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, 10);
        CHECK((block || GetLastError() == ERROR_NOT_ENOUGH_MEMORY));
        if (!block)
            return;
        if (GlobalLock(block))
            GlobalUnlock(block);
        GlobalFree(block);
    });
}
