#pragma once

#include "platform/comctl/ImageList.h"

namespace kel::platform {

/// Gives a list its handle. @throws std::bad_alloc
HIMAGELIST OpenList(std::shared_ptr<ImageList> list);

/// The list of a handle; null with ERROR_INVALID_HANDLE.
std::shared_ptr<ImageList> FindList(HIMAGELIST handle);

/// The list, if it has the image; otherwise null with ERROR_INVALID_PARAMETER.
std::shared_ptr<ImageList> FindListWith(HIMAGELIST handle, int index);

} // namespace kel::platform
