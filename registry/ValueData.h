#pragma once

#include <algorithm>
#include <cstdint>
#include <string>

namespace kel {

/// The number in the first 4 bytes of a value's data, the lowest byte first; bytes that are not there count as zero.
inline std::uint32_t FirstDword(const std::string& data) {
    std::uint32_t number = 0;
    for (std::size_t i = std::min<std::size_t>(data.size(), sizeof number); i-- != 0;)
        number = number << 8 | static_cast<unsigned char>(data[i]);
    return number;
}

} // namespace kel
