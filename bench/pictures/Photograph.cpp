#include "bench/pictures/Photograph.h"

#include "bench/support/Random.h"

#include <algorithm>
#include <cmath>

namespace kel::bench {
namespace {

// Random heights at the corners of a grid, and what lies between them.
class Layer {
public:
    Layer(Random& random, int width, int height, int grid, float strength)
        : m_grid(grid), m_columns(width / grid + 2),
          m_heights(static_cast<std::size_t>(m_columns) * static_cast<std::size_t>(height / grid + 2)) {
        for (float& at : m_heights)
            at = (static_cast<float>(random.Below(1001)) / 500 - 1) * strength;
    }

    void AddTo(std::vector<float>& row, int y) const {
        const float* const above = m_heights.data() + std::ptrdiff_t{y / m_grid} * m_columns;
        const float down = Part(y);
        for (std::size_t x = 0; x < row.size(); ++x) {
            const auto column = static_cast<int>(x);
            const float* const corner = above + column / m_grid;
            const float left = Between(corner[0], corner[m_columns], down);
            row[x] += Between(left, Between(corner[1], corner[m_columns + 1], down), Part(column));
        }
    }

private:
    float Part(int at) const { return static_cast<float>(at % m_grid) / static_cast<float>(m_grid); }
    static float Between(float from, float to, float part) { return from + (to - from) * part; }

    const int m_grid;
    const int m_columns;
    std::vector<float> m_heights;
};

using Layers = std::vector<Layer>;

// A row of the sum of all layers.
void Sum(const Layers& layers, std::vector<float>& row, int y) {
    std::fill(row.begin(), row.end(), 0.0F);
    for (const Layer& layer : layers)
        layer.AddTo(row, y);
}

unsigned char Sample(float light, std::uint32_t noise) {
    return static_cast<unsigned char>(std::clamp(light + static_cast<float>(noise), 0.0F, 255.0F));
}

} // namespace

Photograph TakePhotograph(int width, int height, unsigned seed) {
    Random random(seed);
    Photograph photograph{width, height, {}};
    photograph.pixels.reserve(photograph.RowBytes() * static_cast<std::size_t>(height));
    const Layers light = {Layer(random, width, height, 512, 80), Layer(random, width, height, 61, 30),
                          Layer(random, width, height, 13, 14), Layer(random, width, height, 3, 7)};
    const Layers blue = {Layer(random, width, height, 300, 40)};
    const Layers red = {Layer(random, width, height, 300, 40)};
    std::vector<float> lights(static_cast<std::size_t>(width)), blues(lights), reds(lights);
    for (int y = 0; y < height; ++y) {
        Sum(light, lights, y);
        Sum(blue, blues, y);
        Sum(red, reds, y);
        for (std::size_t x = 0; x < lights.size(); ++x) {
            const std::uint32_t noise = 123 + random.Below(9);
            photograph.pixels.push_back(Sample(lights[x] + blues[x], noise));
            photograph.pixels.push_back(Sample(lights[x], noise));
            photograph.pixels.push_back(Sample(lights[x] + reds[x], noise));
        }
    }
    return photograph;
}

} // namespace kel::bench
