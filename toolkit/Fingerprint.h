#pragma once

#include "toolkit/PackedDib.h"

#include <kelcore/platform.h>

#include <cstdint>
#include <span>

namespace kel::toolkit {

/// A 64-bit number for a row of bytes that another row hardly ever has: the check field of saved pictures
/// (docs/formats/saved-picture.md has the formula). It guards against damage and change, not against an adversary.
/// Every single changed word changes it.
std::uint64_t Fingerprint(std::span<const BYTE> bytes, std::uint64_t seed = 0);

/// @name What a picture is known by
/// The number of a picture is the sum of those of its rows and of what precedes them in the packed bitmap, so that rows
/// can be taken in any order: those who decode take them while they are in the cache.
/// @{
std::uint64_t RowFingerprint(const DibLock& picture, int y); ///< of one row, counted from the top
std::uint64_t RowsFingerprint(const DibLock& picture);       ///< of all rows
std::uint64_t FrontFingerprint(const DibLock& picture);      ///< of header, masks and colour table
/// @}

} // namespace kel::toolkit
