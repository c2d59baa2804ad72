#pragma once

#include <kelcore/platform.h>

#include <cstdint>

/// A file time from and to its count of 100 ns.
inline FILETIME Ticks(std::uint64_t ticks) {
    return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

inline std::uint64_t Count(const FILETIME& time) {
    return std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}
