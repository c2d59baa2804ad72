#pragma once

/// @file
/// Hooks of the platform layer for tests: failing calls, counting handles, reporting another system version. They exist
/// off Windows only and are not part of the door; a program that is not a test has no use for them.

#include <kelcore/platform/base.h>

#include <string>

namespace kel::platform {

/// What the armed call does instead of its work.
enum class Fault {
    Fail,  ///< fails with the given error code
    Short, ///< ReadFile and WriteFile transfer half of the bytes (rounded down) and succeed; other calls run unharmed
};

/// Arms a fault: of the hooked calls that the process makes from now on, number @p nth (counted from 1) meets it.
/// Arming again starts the count anew. One fault is armed at a time. A call that closes something (CloseHandle,
/// FindClose, UnmapViewOfFile, …) or releases something (ReleaseSemaphore, timeKillEvent) does so all the same and
/// fails then.
/// @param error the last error of a failing call.
KELPLATFORM_API void ArmFault(int nth, DWORD error, Fault kind = Fault::Fail);

/// Ends an armed fault. @return whether it was met.
KELPLATFORM_API bool DisarmFault();

/// The name of the call that met the last armed fault, "" if none did.
KELPLATFORM_API const char* FaultedCall();

/// What is open now: handles of every kind but the standard ones, accelerator tables, views of mappings, and uses of
/// modules.
KELPLATFORM_API std::size_t OpenHandles();

/// Drawing objects that are alive: contexts, bitmaps, brushes … but for the stock objects.
KELPLATFORM_API std::size_t GdiObjects();

/// One line for each of them: handle, kind, what is known of it, how often it is selected.
KELPLATFORM_API std::string ListGdiObjects();

/// Windows that are alive.
KELPLATFORM_API std::size_t OpenWindows();

/// Image lists that are alive.
KELPLATFORM_API std::size_t ImageLists();

/// Blocks of global memory that are alive.
KELPLATFORM_API std::size_t GlobalBlocks();

/// What GetVersionExA reports from now on; all zero brings the layer's own answer back.
KELPLATFORM_API void ReportVersion(DWORD platformId, DWORD major, DWORD minor);

/// Makes the registry live in the file @p path (":memory:": in memory, empty), or where it usually does if @p path is
/// empty, from the next call on. Open keys lose their meaning.
KELPLATFORM_API void UseHive(const char* path);

} // namespace kel::platform
