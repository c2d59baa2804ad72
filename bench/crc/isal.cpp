#include "bench/crc/Checksum.h"

#include <isa-l/crc.h>

namespace {

std::uint32_t Compute(const char* data, std::size_t count) {
    return crc32_gzip_refl(0, reinterpret_cast<const unsigned char*>(data), count);
}

const kel::bench::Enter<kel::bench::Checksum> entered{{"isal", &Compute}};

} // namespace
