#pragma once

#include "platform/kernel/FileObject.h"

namespace kel::platform {

/// Views of mappings that are mapped now.
std::size_t OpenViews();

/// The size that a file must keep for the mappings that this process has of it; 0 if there are none.
std::int64_t MappedSize(const FileId& file);

} // namespace kel::platform
