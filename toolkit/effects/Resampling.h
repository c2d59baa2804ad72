#pragma once

#include <cstddef>
#include <cstdint>

/// @file
/// How pictures are brought to another size: rows are weighed into a row of 16-bit values, whose pixels are weighed
/// into those of the result. No function with a body stands here: compiled for one road's processor, it could be linked
/// into code that runs on any.
namespace kel::toolkit::effects::resampling {

using Byte = unsigned char;

/// What the weights of one new row or column add up to, and how many bits that is.
inline constexpr int kWeightBits = 14;
inline constexpr int kWhole = 1 << kWeightBits;
/// A weighed row has values of 15 bits, so that they are factors of signed 16-bit multiplications.
inline constexpr int kRowBits = 7;

/// Which old rows (or columns) go into each new one. Each new one has the same number of them, an even one, with
/// weights of 0 behind those it needs; these may lie beyond the last.
struct Axis {
    std::size_t count;           ///< new ones
    std::size_t taps;            ///< old ones for each
    const std::size_t* first;    ///< of each new one
    const std::int16_t* weights; ///< `taps` of each new one
};

/// The inner loops; all roads give the same values.
struct Road {
    const char* name;
    /// Weighs @p taps rows of @p count values: `(sum + 64) >> 7`.
    void (*weighRows)(const Byte* const* rows, const std::int16_t* weights, std::size_t taps, std::size_t count,
                      std::int16_t* row);
    /// Weighs the pixels of a weighed row, of 1, 3 or 4 channels: `(sum + 2^20) >> 21`. @p row can be read for
    /// `axis.taps` pixels beyond its end.
    void (*weighPixels)(const std::int16_t* row, const Axis& axis, std::size_t channels, Byte* pixels);
};

/// The definition: every processor has it.
extern const Road kPortableRoad;

/// Steps of 32 bytes. @return null if this processor has no AVX2.
const Road* Avx2Road();

/// Has all work take @p road from now on, or the quickest again when null. For tests and measurements.
void TakeRoad(const Road* road);

} // namespace kel::toolkit::effects::resampling
