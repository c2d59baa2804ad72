#include "stream/Crc32.h"

namespace {

kel::Crc32Update QuickestRoad() {
    if (const kel::Crc32Update wide = kel::WideCarrylessRoad())
        return wide;
    const kel::Crc32Update carryless = kel::CarrylessRoad();
    return carryless != nullptr ? carryless : &kel::UpdateByTables;
}

} // namespace

std::uint32_t kel::Crc32(const char* data, std::size_t count) {
    static const Crc32Update update = QuickestRoad();
    return ~update(~std::uint32_t{0}, data, count);
}
