#include "Opened.h"

#include "tests/support/Threads.h"

#include <atomic>
#include <functional>

namespace {

char g_byte;
DWORD g_count;
FILETIME g_time;

// Every call that takes a handle, made in a way that a good handle would allow.
const std::function<bool(HANDLE)> kCalls[] = {
    [](HANDLE handle) { return CloseHandle(handle) != FALSE; },
    [](HANDLE handle) { return ReadFile(handle, &g_byte, 1, &g_count, nullptr) != FALSE; },
    [](HANDLE handle) { return WriteFile(handle, &g_byte, 1, &g_count, nullptr) != FALSE; },
    [](HANDLE handle) { return FlushFileBuffers(handle) != FALSE; },
    [](HANDLE handle) { return SetFilePointer(handle, 0, nullptr, FILE_BEGIN) != INVALID_SET_FILE_POINTER; },
    [](HANDLE handle) { return SetFilePointerEx(handle, {}, nullptr, FILE_BEGIN) != FALSE; },
    [](HANDLE handle) { return SetEndOfFile(handle) != FALSE; },
    [](HANDLE handle) { return GetFileSize(handle, nullptr) != INVALID_FILE_SIZE; },
    [](HANDLE handle) { return GetFileTime(handle, nullptr, nullptr, &g_time) != FALSE; },
    [](HANDLE handle) { return SetFileTime(handle, nullptr, nullptr, &g_time) != FALSE; },
    [](HANDLE handle) { return GetFileType(handle) != FILE_TYPE_UNKNOWN; },
    [](HANDLE handle) { return LockFile(handle, 0, 0, 1, 0) != FALSE; },
    [](HANDLE handle) { return UnlockFile(handle, 0, 0, 1, 0) != FALSE; },
    [](HANDLE handle) { return MapViewOfFile(handle, FILE_MAP_READ, 0, 0, 0) != nullptr; },
    [](HANDLE handle) { return GetHandleInformation(handle, &g_count) != FALSE; },
    [](HANDLE handle) { return SetHandleInformation(handle, HANDLE_FLAG_INHERIT, 0) != FALSE; },
    [](HANDLE handle) { return Duplicate(handle) != nullptr; },
    [](HANDLE handle) { return WaitForSingleObject(handle, 0) != WAIT_FAILED; },
    [](HANDLE handle) { return ReleaseSemaphore(handle, 1, nullptr) != FALSE; },
    [](HANDLE handle) { return SetThreadPriority(handle, THREAD_PRIORITY_NORMAL) != FALSE; },
    [](HANDLE handle) { return GetThreadPriority(handle) != THREAD_PRIORITY_ERROR_RETURN; },
};

} // namespace

TEST_CASE("every call refuses null, foreign and closed handles") {
    const Workplace place;
    Opened file("a", kReadWrite, 0, CREATE_ALWAYS);
    const HANDLE closed = kOnLayer ? static_cast<HANDLE>(file) : nullptr;
    file.Close();
    const Opened next("a"); // is not given the value at once
    for (const HANDLE handle : {closed, static_cast<HANDLE>(nullptr), reinterpret_cast<HANDLE>(ULONG_PTR{0x7654320})})
        for (const auto& succeeds : kCalls) {
            INFO(handle, ", call ", &succeeds - kCalls);
            SetLastError(0);
            CHECK(ErrorOf(succeeds(handle)) == ERROR_INVALID_HANDLE);
        }
}

TEST_CASE("duplicates share position and share modes until the last is closed, with which a marked file goes") {
    const Workplace place;
    Workplace::Write("a", "0123456789");
    for (const DWORD flags : {DWORD{0}, DWORD{FILE_FLAG_DELETE_ON_CLOSE}}) {
        Opened first("a", kReadWrite, 0, OPEN_EXISTING, flags);
        const HANDLE second = Duplicate(first);
        char byte = 0;
        CHECK((Read(first, &byte, 1) == 1 && Read(second, &byte, 1) == 1 && byte == '1'));
        first.Close();
        CHECK(ErrorOfOpening("a", GENERIC_READ, kShareAll) == ERROR_SHARING_VIOLATION);
        CHECK(CloseHandle(second));
        CHECK(ErrorOfOpening("a", GENERIC_READ) == (flags == 0 ? 0 : ERROR_FILE_NOT_FOUND));
    }
}

TEST_CASE(
    "a duplicate can have fewer rights and closes its source if told to; one flag protects a handle from closing") {
    const Workplace place;
    SECURITY_ATTRIBUTES security = {sizeof security, nullptr, TRUE};
    const HANDLE file = CreateFileA("a", kReadWrite, FILE_SHARE_READ, &security, CREATE_ALWAYS, 0, nullptr);
    const HANDLE source = Duplicate(file);
    const HANDLE reader = Duplicate(source, GENERIC_READ, DUPLICATE_CLOSE_SOURCE);
    REQUIRE(reader);
    CHECK((source == reader || ErrorOf(CloseHandle(source)) == ERROR_INVALID_HANDLE));
    CHECK(ErrorOf(Write(reader, "x", 1) != -1) == ERROR_ACCESS_DENIED);
    CHECK((!kOnLayer || !Duplicate(reader, GENERIC_WRITE, 0)));
    CHECK(CloseHandle(reader));

    CHECK(SetHandleInformation(file, HANDLE_FLAG_PROTECT_FROM_CLOSE, HANDLE_FLAG_PROTECT_FROM_CLOSE));
    CHECK(ErrorOf(CloseHandle(file)) == ERROR_INVALID_HANDLE);
    DWORD flags = 0;
    CHECK(GetHandleInformation(file, &flags));
    CHECK(flags == (HANDLE_FLAG_INHERIT | HANDLE_FLAG_PROTECT_FROM_CLOSE));
    CHECK(SetHandleInformation(file, HANDLE_FLAG_PROTECT_FROM_CLOSE, 0));
    CHECK(CloseHandle(file));
}

TEST_CASE("standard handles differ, and the null device takes all and gives nothing") {
    CHECK(GetStdHandle(STD_OUTPUT_HANDLE) != GetStdHandle(STD_ERROR_HANDLE));
    char byte;
    const Opened null("nul", kReadWrite, 0, CREATE_ALWAYS);
    CHECK(GetLastError() == 0);
    CHECK(GetFileType(null) == FILE_TYPE_CHAR);
    CHECK(Write(null, "123", 3) == 3);
    CHECK(Read(null, &byte, 1) == 0);
}

TEST_CASE("handles are opened, used and closed by many threads at once") {
    const Workplace place;
    Workplace::Write("a", "0123456789");
    std::atomic<HANDLE> handles[4] = {};
    std::atomic<int> wrong{0};
    kel::test::OnThreads(4, [&](int seed) {
        for (int round = 0; round < 500; ++round) {
            const HANDLE opened = CreateFileA("a", GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr);
            if (const HANDLE old = handles[(seed + round) % 4].exchange(opened))
                CloseHandle(old);
            char byte;
            OVERLAPPED third = At(3);
            const int count = Read(handles[seed], &byte, 1, &third);
            wrong += count == 1 ? byte != '3' : GetLastError() != ERROR_INVALID_HANDLE;
        }
    });
    CHECK(wrong == 0);
    for (const HANDLE handle : handles)
        CHECK(CloseHandle(handle));
}

TEST_CASE("each thread has its own last error") {
    std::atomic<int> step{0};
    std::thread other([&] {
        while (step != 1)
            continue;
        SetLastError(4321);
        step = 2;
    });
    SetLastError(1234);
    step = 1;
    while (step != 2)
        continue;
    CHECK(GetLastError() == 1234);
    other.join();
}

TEST_CASE("the version is asked for with a record of either size") {
    for (const DWORD size : {148, 156, 155}) {
        OSVERSIONINFOEXA version = {};
        version.dwOSVersionInfoSize = size;
        CHECK(ErrorOf(GetVersionExA(reinterpret_cast<OSVERSIONINFOA*>(&version))) ==
              (size == 155 ? ERROR_INSUFFICIENT_BUFFER : 0));
        CHECK(version.dwPlatformId == (size == 155 ? 0 : VER_PLATFORM_WIN32_NT));
    }
}

TEST_CASE("the stack limits hold a thread's frames, and its lowest byte can be used") {
    const auto lowest = [] {
        ULONG_PTR low = 0, high = 0;
        // A sanitizer may keep variables elsewhere, but not the frame.
        const auto here = reinterpret_cast<ULONG_PTR>(__builtin_frame_address(0));
        GetCurrentThreadStackLimits(&low, &high);
        CHECK((low < here && here < high && high - low >= 64 * 1024));
        return reinterpret_cast<volatile char*>(low);
    };
    lowest();
    std::thread([&] {
        if (volatile char* const low = lowest(); kOnLayer) // Windows guards pages that are not reached in order
            *low = 1;
    }).join();
}
