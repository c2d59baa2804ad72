#pragma once

#include <kelcore/platform/base.h>

#include <ctime>

namespace kel::platform {

/// The host's time as 100 ns units since 1601. Nanoseconds are cut towards the past, so that order is kept.
inline FILETIME ToFileTime(const timespec& time) {
    const std::uint64_t ticks =
        static_cast<std::uint64_t>((time.tv_sec + 11644473600LL) * 10000000LL + time.tv_nsec / 100);
    return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

/// The inverse of ToFileTime. Times before 1970 have negative seconds; nanoseconds are never negative.
inline timespec ToTimespec(const FILETIME& time) {
    const std::uint64_t ticks = std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
    return {static_cast<time_t>(ticks / 10000000) - 11644473600LL, static_cast<long>(ticks % 10000000) * 100};
}

} // namespace kel::platform
