#include "stream/Crc32.h"
#include "stream/Crc32Polynomial.h"

#include <array>
#include <cstring>

namespace {

using Tables = std::array<std::array<std::uint32_t, 256>, 8>;

constexpr Tables MakeTables() {
    Tables tables{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t crc = byte;
        for (int bit = 0; bit < 8; ++bit)
            crc = kel::TimesX(crc);
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

constexpr Tables kTables = MakeTables();

// What four bytes contribute that lie @p ahead bytes before the end of a step.
std::uint32_t LookUp(std::uint32_t word, std::size_t ahead) {
    return kTables[ahead + 3][word & 0xFF] ^ kTables[ahead + 2][(word >> 8) & 0xFF] ^
           kTables[ahead + 1][(word >> 16) & 0xFF] ^ kTables[ahead][word >> 24];
}

} // namespace

std::uint32_t kel::UpdateByTables(std::uint32_t crc, const char* data, std::size_t count) {
    for (; count >= 8; count -= 8, data += 8) {
        std::uint32_t words[2];
        std::memcpy(words, data, sizeof words);
        crc = LookUp(words[0] ^ crc, 4) ^ LookUp(words[1], 0);
    }
    for (; count > 0; --count, ++data)
        crc = (crc >> 8) ^ kTables[0][(crc ^ static_cast<unsigned char>(*data)) & 0xFF];
    return crc;
}
