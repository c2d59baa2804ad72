#pragma once

#include "platform/kernel/FileObject.h"

namespace kel::platform {

/// Locks @p length bytes of @p file from @p begin. @return 0 or the Win32 error code. @throws std::bad_alloc
DWORD LockRange(FileObject& file, std::uint64_t begin, std::uint64_t length, bool exclusive, bool wait);

/// Ends the lock of exactly this range, an exclusive one first. @return 0 or the Win32 error code.
DWORD UnlockRange(FileObject& file, std::uint64_t begin, std::uint64_t length);

/// Ends all locks of a file whose last handle is closed.
void ForgetLocks(FileObject& file);

/// Whether a lock stands against a transfer of @p count bytes at @p position.
/// Costs a host call, unless nobody else can have the file open.
bool TransferIsLocked(const FileObject& file, std::uint64_t position, DWORD count, bool writes);

/// Whether TransferIsLocked can be true for any transfer: asked first, since it needs no position.
bool AnyTransferIsLocked(const FileObject& file, bool writes);

} // namespace kel::platform
