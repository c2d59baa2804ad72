#include "toolkit/effects/Resampling.h"

namespace kel::toolkit::effects::resampling {
namespace {

constexpr int kPixelBits = kWeightBits + kRowBits;

void WeighRows(const Byte* const* rows, const std::int16_t* weights, std::size_t taps, std::size_t count,
               std::int16_t* row) {
    // As many values as stay in the processor's nearest memory while all rows are added.
    constexpr std::size_t kRun = 256;
    std::int32_t sums[kRun];
    for (std::size_t begin = 0; begin < count; begin += kRun) {
        const std::size_t run = count - begin < kRun ? count - begin : kRun;
        for (std::size_t i = 0; i < run; ++i)
            sums[i] = 1 << (kRowBits - 1);
        for (std::size_t tap = 0; tap < taps; ++tap)
            for (std::size_t i = 0; i < run; ++i)
                sums[i] += rows[tap][begin + i] * weights[tap];
        for (std::size_t i = 0; i < run; ++i)
            row[begin + i] = static_cast<std::int16_t>(sums[i] >> kRowBits);
    }
}

template <std::size_t Channels>
void WeighPixelsOf(const std::int16_t* row, const Axis& axis, Byte* pixels) {
    const std::int16_t* weights = axis.weights;
    for (std::size_t i = 0; i < axis.count; ++i, weights += axis.taps) {
        const std::int16_t* pixel = row + axis.first[i] * Channels;
        std::int32_t sums[Channels];
        for (std::int32_t& sum : sums)
            sum = 1 << (kPixelBits - 1);
        for (std::size_t tap = 0; tap < axis.taps; ++tap, pixel += Channels)
            for (std::size_t channel = 0; channel < Channels; ++channel)
                sums[channel] += pixel[channel] * weights[tap];
        for (const std::int32_t sum : sums)
            *pixels++ = static_cast<Byte>(sum >> kPixelBits);
    }
}

void WeighPixels(const std::int16_t* row, const Axis& axis, std::size_t channels, Byte* pixels) {
    if (channels == 1)
        WeighPixelsOf<1>(row, axis, pixels);
    else if (channels == 3)
        WeighPixelsOf<3>(row, axis, pixels);
    else
        WeighPixelsOf<4>(row, axis, pixels);
}

} // namespace

const Road kPortableRoad = {"portable", &WeighRows, &WeighPixels};

} // namespace kel::toolkit::effects::resampling
