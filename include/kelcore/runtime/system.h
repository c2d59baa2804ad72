#pragma once

/// @file
/// The query for the system's family.

#include <kelcore/export.h>
#include <kelcore/platform.h>

/// Facts about the running system.
namespace SysInfo {

/// Families of the system; the 95 family is exactly the values with a bit of 7 set.
enum System {
    Win95 = 1,
    Win98 = 2,
    WinME = 4,
    WinNT4 = 8,
    Win2000 = 16,
    WinXP = 32,
};

/// The family that GetVersionExA reports, asked once per process and kept. Every newer NT system counts as WinXP.
KELCORE_API System GetSystem();

} // namespace SysInfo
