#include "bench/crc/Checksum.h"

#include <array>
#include <cstring>

namespace {

using Tables = std::array<std::array<std::uint32_t, 256>, 8>;

constexpr Tables MakeTables() {
    Tables tables{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t value = byte;
        for (int bit = 0; bit < 8; ++bit)
            value = (value >> 1) ^ (value & 1 ? 0xEDB88320U : 0);
        tables[0][byte] = value;
    }
    for (std::size_t table = 1; table < 8; ++table)
        for (std::size_t byte = 0; byte < 256; ++byte)
            tables[table][byte] = (tables[table - 1][byte] >> 8) ^ tables[0][tables[table - 1][byte] & 0xFF];
    return tables;
}

constexpr Tables kTables = MakeTables();

std::uint32_t EightBytes(std::uint32_t crc, const char* data) {
    std::uint64_t word;
    std::memcpy(&word, data, sizeof word);
    word ^= crc;
    std::uint32_t result = 0;
    for (std::size_t i = 0; i < 8; ++i)
        result ^= kTables[7 - i][(word >> (8 * i)) & 0xFF];
    return result;
}

// Slicing by eight.
std::uint32_t Compute(const char* data, std::size_t count) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (; count >= 8; data += 8, count -= 8)
        crc = EightBytes(crc, data);
    for (; count > 0; ++data, --count)
        crc = (crc >> 8) ^ kTables[0][(crc ^ static_cast<unsigned char>(*data)) & 0xFF];
    return ~crc;
}

const kel::bench::Enter<kel::bench::Checksum> entered{{"plain", &Compute}};

} // namespace
