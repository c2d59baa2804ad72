#pragma once

#include <cstddef>

namespace kel::platform {

/// Views of mappings that are mapped now.
std::size_t OpenViews();

} // namespace kel::platform
