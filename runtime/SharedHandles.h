#pragma once

#include <kelcore/platform.h>

/// How many objects hold one system handle, kept beside the objects so that no exported class needs a field for it.
///
/// Only handles held by two or more objects have an entry; a handle that was never copied costs one relaxed load when
/// it is let go. Safe from any thread.
namespace kel::SharedHandles {

/// One more object holds @p handle from now on. Null and the invalid handle are not counted.
/// @throws std::bad_alloc; nothing is counted then.
void Share(HANDLE handle);

/// One object lets go of @p handle.
/// @return true if it was the last one, which then has to close the handle.
bool DropIsLast(HANDLE handle) noexcept;

} // namespace kel::SharedHandles
