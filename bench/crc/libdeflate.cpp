#include "bench/crc/Checksum.h"

#include <libdeflate.h>

namespace {

std::uint32_t Compute(const char* data, std::size_t count) {
    return libdeflate_crc32(0, data, count);
}

const kel::bench::Enter<kel::bench::Checksum> entered{{"libdeflate", &Compute}};

} // namespace
