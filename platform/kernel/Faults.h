#pragma once

#include <kelcore/platform/testing.h>

namespace kel::platform {

/// Whether the armed fault is met by this call of @p name, a hooked platform call; it then has set the last error.
/// Costs one relaxed load while nothing is armed. Every hooked call asks exactly once, at its start.
///
/// A call that lets something go (CloseHandle, FindClose, UnmapViewOfFile, ReleaseSemaphore, timeKillEvent) does its
/// work all the same and then fails, so that a caller that cannot try again leaks nothing and lets nobody wait for
/// ever.
/// @param name a literal: FaultedCall gives it out.
bool CallFails(const char* name);

/// The count that a transfer of @p count bytes may move: less than asked when a short transfer is armed for this very
/// call. Asked after CallFails by ReadFile and WriteFile.
DWORD TransferLimit(DWORD count);

} // namespace kel::platform
