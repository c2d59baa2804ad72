#pragma once

#include "bench/support/Jobs.h"

#include <array>
#include <vector>

namespace kel::bench {

using Edges = std::array<int, 4>; ///< left, top, right, bottom

/// One who combines two regions, each the union of the rectangles given.
struct Combiner {
    const char* who;
    /// @param mode RGN_AND (1), RGN_OR (2) or RGN_DIFF (4).
    Call (*make)(const std::vector<Edges>& first, const std::vector<Edges>& second, int mode);
};

} // namespace kel::bench
