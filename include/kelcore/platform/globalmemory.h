#pragma once

/// @file
/// Blocks of memory, fixed or movable. A fixed block's handle is its address. A movable block's handle is not:
/// GlobalLock gives the address, which holds until the last GlobalUnlock; the block is moved by GlobalReAlloc alone.
/// Blocks are never discarded. Every call may be made from any thread; handles that are none are refused with
/// ERROR_INVALID_HANDLE.

#include <kelcore/platform/base.h>

typedef void* HGLOBAL;

/// @name Flags of GlobalAlloc and GlobalReAlloc
/// @{
#define GMEM_FIXED 0x0000
#define GMEM_MOVEABLE 0x0002
#define GMEM_ZEROINIT 0x0040
#define GMEM_MODIFY 0x0080
#define GMEM_DISCARDABLE 0x0100
#define GMEM_SHARE 0x2000 ///< without effect
#define GMEM_DDESHARE 0x2000
#define GHND (GMEM_MOVEABLE | GMEM_ZEROINIT)
#define GPTR (GMEM_FIXED | GMEM_ZEROINIT)
/// @}

/// @name Results of GlobalFlags
/// @{
#define GMEM_INVALID_HANDLE 0x8000
#define GMEM_DISCARDED 0x4000
#define GMEM_LOCKCOUNT 0x00FF
/// @}

extern "C" {

/// Makes a block that the caller frees with GlobalFree. Its memory is aligned to 16 bytes; without GMEM_ZEROINIT its
/// content is undetermined.
/// @return null with ERROR_NOT_ENOUGH_MEMORY.
KELPLATFORM_API HGLOBAL WINAPI GlobalAlloc(UINT flags, SIZE_T bytes);

/// Changes a block's size, or, with GMEM_MODIFY, turns a fixed block into a movable one (other attributes are not
/// kept). New bytes are zero with GMEM_ZEROINIT. A fixed block and one that is locked keep their address unless
/// GMEM_MOVEABLE allows another.
/// @return the block's handle, which for a fixed block may be a new one; null on failure, the block is then as it was.
KELPLATFORM_API HGLOBAL WINAPI GlobalReAlloc(HGLOBAL memory, SIZE_T bytes, UINT flags);

/// Frees a block, locked or not. @return null; @p memory itself on failure. Null is accepted and does nothing.
KELPLATFORM_API HGLOBAL WINAPI GlobalFree(HGLOBAL memory);

/// Counts a lock of a movable block (up to 255). @return the block's address, null on failure and for a block of no
/// bytes.
KELPLATFORM_API LPVOID WINAPI GlobalLock(HGLOBAL memory);

/// Takes one lock back.
/// @return TRUE while locks remain. FALSE when none does, with NO_ERROR, and when there was none, with
/// ERROR_NOT_LOCKED.
///         TRUE for a fixed block, always.
KELPLATFORM_API BOOL WINAPI GlobalUnlock(HGLOBAL memory);

/// The size in bytes that was asked for. @return 0 on failure.
KELPLATFORM_API SIZE_T WINAPI GlobalSize(HGLOBAL memory);

/// The number of locks in the low byte. @return GMEM_INVALID_HANDLE on failure.
KELPLATFORM_API UINT WINAPI GlobalFlags(HGLOBAL memory);

/// The handle of the block at the address @p memory. @return null with ERROR_INVALID_HANDLE if none begins there.
KELPLATFORM_API HGLOBAL WINAPI GlobalHandle(LPCVOID memory);

} // extern "C"
