#pragma once

#include "platform/gdi/Surface.h"

namespace kel::platform {

/// The first @p count rows of @p surface from @p y on.
Surface RowsOf(const Surface& surface, int y, int count);

/// Copies the top left pixels that both surfaces have, each as its colour in the other's format.
/// @throws std::bad_alloc
void CopyPixels(const Surface& to, const Surface& from);

} // namespace kel::platform
