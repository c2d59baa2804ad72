#pragma once

#include "bench/support/Jobs.h"

#include <functional>

namespace kel::bench {

/// A picture to bring to another size. Rows follow each other without gaps.
struct Scene {
    const unsigned char* pixels;
    int width, height;
    int channels;
    int newWidth, newHeight;
};

/// One who resamples by area. Everyone rounds in an own way, so results are not compared.
struct Resizer {
    const char* who;
    bool wholeFactors; ///< does nothing else
    /// @return the work, which makes a new picture each time.
    std::function<void()> (*prepare)(const Scene& scene);
};

} // namespace kel::bench
