#pragma once

#include "bench/support/Jobs.h"

#include <cstddef>
#include <cstdint>

namespace kel::bench {

/// One who computes the CRC-32 of IEEE 802.3.
struct Checksum {
    const char* who;
    std::uint32_t (*compute)(const char* data, std::size_t count);
};

} // namespace kel::bench
