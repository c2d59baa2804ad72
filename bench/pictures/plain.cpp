// The obvious loop for whole factors: rows are summed, then columns.

#include "bench/pictures/Resizer.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace {

using namespace kel::bench;

#if defined(__x86_64__)
#define KELCORE_PLAIN __attribute__((target("avx2")))
#else
#define KELCORE_PLAIN
#endif

KELCORE_PLAIN void AddRow(std::uint16_t* sums, const unsigned char* row, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        sums[i] = static_cast<std::uint16_t>(sums[i] + row[i]);
}

template <std::size_t Channels>
void AddColumns(const std::uint16_t* sums, std::size_t factor, std::size_t width, unsigned area, unsigned char* to) {
    for (std::size_t x = 0; x < width; ++x)
        for (std::size_t channel = 0; channel < Channels; ++channel) {
            unsigned sum = area / 2;
            for (std::size_t i = 0; i < factor; ++i)
                sum += sums[(x * factor + i) * Channels + channel];
            *to++ = static_cast<unsigned char>(sum / area);
        }
}

template <std::size_t Channels>
void Shrink(const Scene& scene, unsigned char* to) {
    const auto factor = static_cast<std::size_t>(scene.width / scene.newWidth);
    const auto width = static_cast<std::size_t>(scene.newWidth);
    const std::size_t rowBytes = static_cast<std::size_t>(scene.width) * Channels;
    std::vector<std::uint16_t> sums(rowBytes);
    const unsigned char* row = scene.pixels;
    for (int y = 0; y < scene.newHeight; ++y, to += width * Channels) {
        std::fill(sums.begin(), sums.end(), std::uint16_t{0});
        for (std::size_t i = 0; i < factor; ++i, row += rowBytes)
            AddRow(sums.data(), row, rowBytes);
        AddColumns<Channels>(sums.data(), factor, width, static_cast<unsigned>(factor * factor), to);
    }
}

std::function<void()> Prepare(const Scene& scene) {
    return [=] {
        std::vector<unsigned char> to(static_cast<std::size_t>(scene.newWidth * scene.newHeight * scene.channels));
        (scene.channels == 3 ? Shrink<3> : Shrink<4>)(scene, to.data());
        benchmark::DoNotOptimize(to.data());
    };
}

const Enter<Resizer> entered{{"plain", /*whole factors*/ true, &Prepare}};

} // namespace
