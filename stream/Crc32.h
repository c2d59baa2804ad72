#pragma once

#include <cstddef>
#include <cstdint>

/// CRC-32 of IEEE 802.3, zlib and PNG: reflected polynomial 0xEDB88320, initial register and final complement of ones.
namespace kel {

/// @return the checksum of @p count bytes, computed on the quickest road the processor has.
std::uint32_t Crc32(const char* data, std::size_t count);

/// A road takes the register over @p count more bytes.
using Crc32Update = std::uint32_t (*)(std::uint32_t crc, const char* data, std::size_t count);

/// Portable: eight tables, eight bytes a step. The oracle of the others.
std::uint32_t UpdateByTables(std::uint32_t crc, const char* data, std::size_t count);

/// Carry-less multiplication of 128 bits (PCLMULQDQ, SSE4.1).
/// @return null if this processor cannot.
Crc32Update CarrylessRoad();

/// Carry-less multiplication of 256 bits (VPCLMULQDQ, AVX2).
/// @return null if this processor cannot.
Crc32Update WideCarrylessRoad();

} // namespace kel
