#pragma once

#include <kelcore/platform/testing.h>

namespace kel::platform {

/// Whether the armed fault is met by this call of @p name, a hooked platform call; it then has set the last error.
/// Costs one relaxed load while nothing is armed. Every hooked call asks exactly once, at its start.
bool CallFails(const char* name);

/// The count that a transfer of @p count bytes by @p name may move: less than asked when a short transfer is armed for
/// this very call. Asked after CallFails by ReadFile and WriteFile.
DWORD TransferLimit(const char* name, DWORD count);

} // namespace kel::platform
