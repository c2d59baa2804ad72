#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

/// The portable road of CRC-32: eight tables, so that eight bytes cost eight independent look-ups.
namespace kel {

inline constexpr std::uint32_t kCrc32Polynomial = 0xEDB88320; // reflected, without the x^32 term

using Crc32Tables = std::array<std::array<std::uint32_t, 256>, 8>;

constexpr Crc32Tables MakeCrc32Tables() {
    Crc32Tables tables{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t crc = byte;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? kCrc32Polynomial : 0);
        tables[0][byte] = crc;
    }
    for (std::size_t byte = 0; byte < 256; ++byte) {
        for (std::size_t ahead = 1; ahead < 8; ++ahead) {
            const std::uint32_t crc = tables[ahead - 1][byte];
            tables[ahead][byte] = (crc >> 8) ^ tables[0][crc & 0xFF];
        }
    }
    return tables;
}

inline constexpr Crc32Tables kCrc32Tables = MakeCrc32Tables();

/// @return the register after @p count more bytes.
inline std::uint32_t UpdateByTables(std::uint32_t crc, const char* data, std::size_t count) {
    const auto& table = kCrc32Tables;
    for (; count >= 8; count -= 8, data += 8) {
        std::uint32_t low;
        std::uint32_t high;
        std::memcpy(&low, data, 4);
        std::memcpy(&high, data + 4, 4);
        low ^= crc;
        crc = table[7][low & 0xFF] ^ table[6][(low >> 8) & 0xFF] ^ table[5][(low >> 16) & 0xFF] ^ table[4][low >> 24] ^
              table[3][high & 0xFF] ^ table[2][(high >> 8) & 0xFF] ^ table[1][(high >> 16) & 0xFF] ^
              table[0][high >> 24];
    }
    for (; count > 0; --count, ++data)
        crc = (crc >> 8) ^ table[0][(crc ^ static_cast<unsigned char>(*data)) & 0xFF];
    return crc;
}

} // namespace kel
