#pragma once

#include "toolkit/PackedDib.h"

#include <cstdint>

namespace kel::toolkit {

/// How large a picture may become by loading. Asked with the measures of a file's header, so that a small file cannot
/// make the process allocate for a picture that nobody could want.
struct Budget {
    static constexpr std::uint64_t kMegabyte = 1U << 20;
    static constexpr std::uint64_t kDefaultBytes = 512 * kMegabyte;

    std::uint64_t bytes = kDefaultBytes; ///< of the packed bitmap
    std::uint64_t pixels = 0;            ///< 0 for any number

    bool Allows(const DibLayout& layout) const;
};

/// The budget that the process was started with: KELCORE_PICTURE_BUDGET in MiB, or else 512.
std::uint64_t EnvironmentBudget();

} // namespace kel::toolkit
