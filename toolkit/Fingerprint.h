#pragma once

#include <kelcore/platform.h>

#include <cstdint>
#include <span>

namespace kel::toolkit {

/// A 64-bit number for a row of bytes that another row hardly ever has: the check field of saved pictures
/// (docs/formats/saved-picture.md has the formula), and how a picture's pixels are known to be as they were. It guards
/// against damage and change, not against an adversary. Every single changed word changes it.
std::uint64_t Fingerprint(std::span<const BYTE> bytes, std::uint64_t seed = 0);

} // namespace kel::toolkit
