#include <kelcore/runtime/system.h>

#include <atomic>

namespace {

SysInfo::System Classify(const OSVERSIONINFOA& version) {
    if (version.dwPlatformId == VER_PLATFORM_WIN32_WINDOWS) {
        if (version.dwMinorVersion == 0)
            return SysInfo::Win95;
        return version.dwMinorVersion == 90 ? SysInfo::WinME : SysInfo::Win98;
    }
    if (version.dwMajorVersion == 4)
        return SysInfo::WinNT4;
    return version.dwMinorVersion == 0 ? SysInfo::Win2000 : SysInfo::WinXP;
}

// Concurrent first calls store the same value, so relaxed order is enough.
std::atomic<int> g_system{0};

} // namespace

SysInfo::System SysInfo::GetSystem() {
    int system = g_system.load(std::memory_order_relaxed);
    if (system == 0) {
        OSVERSIONINFOA version = {};
        version.dwOSVersionInfoSize = sizeof version;
        GetVersionExA(&version);
        system = Classify(version);
        g_system.store(system, std::memory_order_relaxed);
    }
    return static_cast<System>(system);
}
