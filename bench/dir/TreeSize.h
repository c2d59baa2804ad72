#pragma once

#include "bench/support/Jobs.h"

#include <cstdint>
#include <string>

namespace kel::bench {

/// One who adds the sizes of all files below a folder.
struct TreeSize {
    const char* who;
    std::int64_t (*add)(const std::string& folder);
};

} // namespace kel::bench
