// A program of its own: the library asks for the system's family once per process.
#include "tests/support/TempFolder.h"

#include <kelcore/file.h>
#include <kelcore/platform/testing.h>
#include <kelcore/runtime/system.h>

#include <limits>

namespace {

constexpr unsigned int kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE;

// Whether one byte is free for another handle than the one that locks.
bool IsFree(HANDLE handle, DWORD low, DWORD high) {
    return LockFile(handle, low, high, 1, 0) && UnlockFile(handle, low, high, 1, 0);
}

} // namespace

TEST_CASE("on the 95 family a region's offset has 32 bits and a sign") {
    kel::platform::ReportVersion(VER_PLATFORM_WIN32_WINDOWS, 4, 10);
    REQUIRE(SysInfo::GetSystem() == SysInfo::Win98);
    const TempFolder folder;
    const String path = folder.Write("file", "");
    const HANDLE observer =
        CreateFileA(StdW2A(path).c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr);
    const struct {
        __int64 offset;
        DWORD low, high;     // where the lock is
        DWORD elsewhereHigh; // where the full offset would have put it
    } cases[] = {
        {0x300000008, 8, 0, 3},
        {8, 8, 0, 1},
        {std::numeric_limits<__int64>::min() + 16, 16, 0xFFFFFFFF, 0x80000000},
    };
    File file;
    file.OpenForReadWrite(path, kShareAll);
    for (const auto& row : cases) {
        CAPTURE(row.offset);
        file.LockRegion(row.offset, 4);
        CHECK_FALSE(IsFree(observer, row.low + 3, row.high));
        CHECK(IsFree(observer, row.low + 3, row.elsewhereHigh));
        file.UnlockRegion(row.offset, 4);
        CHECK(IsFree(observer, row.low + 3, row.high));
    }
    CloseHandle(observer);
}
