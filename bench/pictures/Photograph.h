#pragma once

#include <vector>

namespace kel::bench {

/// Pixels of blue, green and red; the top row first, rows without gaps.
struct Photograph {
    int width, height;
    std::vector<unsigned char> pixels;

    const unsigned char* Row(int y) const { return pixels.data() + RowBytes() * static_cast<std::size_t>(y); }
    std::size_t RowBytes() const { return static_cast<std::size_t>(width) * 3; }
};

/// What compresses as photographs do: large soft shapes, finer and fainter ones on them, colours that change slowly,
/// and the noise of a sensor. The same seed gives the same picture.
Photograph TakePhotograph(int width, int height, unsigned seed);

} // namespace kel::bench
