#include "bench/crc/Checksum.h"

#include <zlib.h>

namespace {

std::uint32_t Compute(const char* data, std::size_t count) {
    return static_cast<std::uint32_t>(crc32_z(0, reinterpret_cast<const unsigned char*>(data), count));
}

const kel::bench::Enter<kel::bench::Checksum> entered{{"zlib", &Compute}};

} // namespace
