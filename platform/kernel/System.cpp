#include "platform/kernel/HostTimes.h"
#include "platform/kernel/LastError.h"

#include <kelcore/platform/system.h>
#include <kelcore/platform/testing.h>

#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <cstring>

namespace kel::platform {
namespace {

constexpr DWORD kMajor = 6;
constexpr DWORD kMinor = 2;
constexpr DWORD kBuild = 9200;

std::atomic<DWORD> g_platformId{VER_PLATFORM_WIN32_NT};
std::atomic<DWORD> g_major{kMajor};
std::atomic<DWORD> g_minor{kMinor};

struct StackLimits {
    ULONG_PTR low = 0;
    ULONG_PTR high = 0;
};

// A thread's stack begins with the pages that guard its end. The main thread has none: its bounds are where it begins
// and where the limit on the stack's size lets it grow to.
StackLimits AskForStackLimits() {
    pthread_attr_t attributes;
    void* base = nullptr;
    std::size_t size = 0;
    std::size_t guard = 0;
    if (pthread_getattr_np(pthread_self(), &attributes) == 0) {
        pthread_attr_getstack(&attributes, &base, &size);
        pthread_attr_getguardsize(&attributes, &guard);
        pthread_attr_destroy(&attributes);
    }
    const auto low = reinterpret_cast<ULONG_PTR>(base);
    return {getpid() == gettid() ? low : low + guard, low + size};
}

std::int64_t Nanoseconds(clockid_t clock) {
    timespec time;
    clock_gettime(clock, &time);
    return time.tv_sec * 1'000'000'000LL + time.tv_nsec;
}

} // namespace

void ReportVersion(DWORD platformId, DWORD major, DWORD minor) {
    const bool own = platformId == 0 && major == 0 && minor == 0;
    g_platformId = own ? VER_PLATFORM_WIN32_NT : platformId;
    g_major = own ? kMajor : major;
    g_minor = own ? kMinor : minor;
}

} // namespace kel::platform

using namespace kel::platform;

BOOL WINAPI GetVersionExA(LPOSVERSIONINFOA information) {
    const DWORD size = information->dwOSVersionInfoSize;
    if (size != sizeof(OSVERSIONINFOA) && size != sizeof(OSVERSIONINFOEXA))
        return Fail(ERROR_INSUFFICIENT_BUFFER);
    std::memset(static_cast<void*>(information), 0, size);
    information->dwOSVersionInfoSize = size;
    information->dwMajorVersion = g_major;
    information->dwMinorVersion = g_minor;
    information->dwBuildNumber = kBuild;
    information->dwPlatformId = g_platformId;
    if (size == sizeof(OSVERSIONINFOEXA))
        reinterpret_cast<OSVERSIONINFOEXA*>(information)->wProductType = VER_NT_WORKSTATION;
    return TRUE;
}

void WINAPI GetCurrentThreadStackLimits(ULONG_PTR* low, ULONG_PTR* high) {
    thread_local StackLimits limits;
    if (limits.high == 0)
        limits = AskForStackLimits();
    *low = limits.low;
    *high = limits.high;
}

DWORD WINAPI GetCurrentProcessId(void) {
    return static_cast<DWORD>(getpid());
}

DWORD WINAPI GetCurrentThreadId(void) {
    thread_local const pid_t id = gettid();
    return static_cast<DWORD>(id);
}

ULONGLONG WINAPI GetTickCount64(void) {
    return static_cast<ULONGLONG>(Nanoseconds(CLOCK_BOOTTIME) / 1'000'000);
}

void WINAPI GetSystemTimeAsFileTime(LPFILETIME time) {
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    *time = ToFileTime(now);
}
