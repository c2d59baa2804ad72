#pragma once

#include "toolkit/Budget.h"
#include "toolkit/PackedDib.h"

#include <kelcore/imaging/toolkit.h>

#include <cstdint>
#include <optional>
#include <span>

/// @file
/// What a kind of picture file has to offer, and what it is given for it.
namespace kel::toolkit {

using Bytes = std::span<const BYTE>;

/// A load on its way.
struct LoadJob {
    Bytes file;                   ///< the whole file; not empty
    Budget budget;                ///< asked by MakePicture
    bool keepOrientation = false; ///< leave photographs as their rows lie in the file
    PackedDib picture;            ///< the result
    /// The picture's RowsFingerprint, from a codec that took it on the way.
    std::optional<std::uint64_t> rowsFingerprint = {};
};

/// What is in the rows of a new picture.
enum class Fresh {
    Zeros,
    Anything, ///< zeros behind the last pixel of each row; the codec writes all pixels
};

/// Makes the job's picture from the measures in a file's header, before anything of that size is allocated: rows from
/// the bottom, colours zero. A picture that is there already is dropped first.
/// @param colours entries of the colour table; 0 for 2^depth (none above depth 8).
/// @return kLoaded, kOverBudget (for want of memory too), or kDamaged for measures that no picture has.
SHORT MakePicture(LoadJob& job, std::int64_t width, std::int64_t height, int depth, std::size_t colours = 0,
                  Fresh fresh = Fresh::Zeros);

/// A kind of picture file.
struct Codec {
    const char* name;

    /// Whether a file is of this kind, going by its first bytes (there may be none behind them).
    bool (*sniff)(Bytes file);

    /// Decodes the first picture of a file of this kind. Nothing is thrown; what libraries hold is freed on every road.
    /// Bit depth and colours are kept where a packed bitmap has them (1, 4, 8, 24, 32 with straight alpha).
    /// @return kLoaded, kDamaged, kOverBudget. What the job's picture holds after a failure does not count.
    SHORT (*load)(LoadJob& job);
};

/// The kinds that this module was built with, in the order in which they are asked.
std::span<const Codec* const> Codecs();

} // namespace kel::toolkit
