#pragma once

#include <cstdint>

/// What reader and writer of object records share.
namespace kel {

inline constexpr std::uint32_t kCommand = 0; // the first word of every record that is no object
inline constexpr std::uint32_t kReferenceCommand = 0x80190311;
inline constexpr std::uint32_t kBackReferenceCommand = 0x96190311;
inline constexpr std::uint32_t kNullReference = 0;
inline constexpr std::uint32_t kOtherNullReference = 0xFFFFFFFF; // only read

/// Every object call takes the next number. The counter wraps rather than overflow.
/// @return the number of the call.
inline std::uint32_t RaiseCounter(std::int32_t& counter) {
    const auto number = static_cast<std::uint32_t>(counter);
    counter = static_cast<std::int32_t>(number + 1);
    return number;
}

inline constexpr char kUnexpectedObject[] = "Unexpected object in stream";

} // namespace kel
