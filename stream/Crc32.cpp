#include "stream/Crc32.h"

#include "stream/Crc32Tables.h"

std::uint32_t kel::Crc32(const char* data, std::size_t count) {
    return ~UpdateByTables(~std::uint32_t{0}, data, count);
}
