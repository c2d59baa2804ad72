// Squares of one colour.

#include "toolkit/effects/Effect.h"
#include "toolkit/effects/Rework.h"

#include <algorithm>

namespace kel::toolkit::effects {
namespace {

/// Part of a picture: columns from left to right, rows from top to bottom, each end behind the last.
struct Square {
    int left, top, right, bottom;

    std::uint64_t Pixels() const {
        return static_cast<std::uint64_t>(right - left) * static_cast<std::uint64_t>(bottom - top);
    }
};

template <class Work>
void ForEachPixel(const DibLock& picture, const Square& square, Work work) {
    const auto step = static_cast<std::size_t>(picture.Layout().depth / 8);
    for (int y = square.top; y < square.bottom; ++y)
        for (int x = square.left; x < square.right; ++x)
            work(picture.Row(y) + step * static_cast<std::size_t>(x));
}

void Level(const DibLock& picture, const Square& square) {
    const int channels = std::min(picture.Layout().depth / 8, 3);
    const std::uint64_t pixels = square.Pixels();
    for (int channel = 0; channel < channels; ++channel) {
        std::uint64_t sum = pixels / 2;
        ForEachPixel(picture, square, [&sum, channel](const BYTE* pixel) { sum += pixel[channel]; });
        const auto mean = static_cast<BYTE>(sum / pixels);
        ForEachPixel(picture, square, [mean, channel](BYTE* pixel) { pixel[channel] = mean; });
    }
}

} // namespace

HRESULT Mosaic(PackedDib& picture, SHORT size) {
    const int width = picture.Layout().width;
    const int height = picture.Layout().height;
    const int side = std::max<int>(size, 1);
    return Remake(picture, width, height, [=](const DibLock& from, const DibLock& to) {
        std::ranges::copy(from.Pixels(), to.Pixels().begin());
        for (int top = 0; top < height; top += std::min(side, height - top))
            for (int left = 0; left < width; left += std::min(side, width - left))
                Level(to, {left, top, left + std::min(side, width - left), top + std::min(side, height - top)});
    });
}

} // namespace kel::toolkit::effects
