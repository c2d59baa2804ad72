#pragma once

#include <cstddef>
#include <cstdint>

/// CRC-32 of IEEE 802.3, zlib and PNG: reflected polynomial 0xEDB88320, initial register and final complement of ones.
namespace kel {

/// @return the checksum of @p count bytes, computed on the quickest road the processor has.
std::uint32_t Crc32(const char* data, std::size_t count);

/// The roads, which all give the same checksum; tests compare them.
enum class Crc32Road {
    Tables,        ///< portable, eight bytes a step
    Carryless,     ///< PCLMULQDQ and SSE4.1
    WideCarryless, ///< VPCLMULQDQ and AVX2
};

/// Whether this processor has what the road needs.
bool HasCrc32Road(Crc32Road road);

/// @return the checksum by a road that the processor has.
std::uint32_t Crc32By(Crc32Road road, const char* data, std::size_t count);

} // namespace kel
