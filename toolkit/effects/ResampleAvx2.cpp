// Two rows, or two pixels, go into one multiplication that adds their products.

#include "toolkit/effects/Resampling.h"

#if defined(__x86_64__) || defined(__i386__)

#include <cstring>
#include <immintrin.h>

namespace kel::toolkit::effects::resampling {
namespace {

constexpr std::size_t kStep = 32;
constexpr int kPixelBits = kWeightBits + kRowBits;

/// The sums of 32 values in the order in which unpacking leaves them.
struct Sums {
    __m256i lowLow, lowHigh, highLow, highHigh;
};

inline __m256i LoadBytes(const Byte* bytes) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes));
}

inline std::int32_t PairOfWeights(const std::int16_t* weights) {
    std::int32_t pair;
    std::memcpy(&pair, weights, sizeof pair);
    return pair;
}

inline __m256i AddProducts(__m256i sum, __m256i values, __m256i weights) {
    return _mm256_add_epi32(sum, _mm256_madd_epi16(values, weights));
}

inline void AddTwoRows(Sums& sums, const Byte* one, const Byte* two, __m256i weights) {
    const __m256i zero = _mm256_setzero_si256();
    const __m256i low = _mm256_unpacklo_epi8(LoadBytes(one), LoadBytes(two));
    const __m256i high = _mm256_unpackhi_epi8(LoadBytes(one), LoadBytes(two));
    sums.lowLow = AddProducts(sums.lowLow, _mm256_unpacklo_epi8(low, zero), weights);
    sums.lowHigh = AddProducts(sums.lowHigh, _mm256_unpackhi_epi8(low, zero), weights);
    sums.highLow = AddProducts(sums.highLow, _mm256_unpacklo_epi8(high, zero), weights);
    sums.highHigh = AddProducts(sums.highHigh, _mm256_unpackhi_epi8(high, zero), weights);
}

inline __m256i Narrow(__m256i low, __m256i high) {
    return _mm256_packs_epi32(_mm256_srai_epi32(low, kRowBits), _mm256_srai_epi32(high, kRowBits));
}

inline void StoreSums(const Sums& sums, std::int16_t* row) {
    const __m256i low = Narrow(sums.lowLow, sums.lowHigh);
    const __m256i high = Narrow(sums.highLow, sums.highHigh);
    auto* const target = reinterpret_cast<__m256i*>(row);
    _mm256_storeu_si256(target, _mm256_permute2x128_si256(low, high, 0x20));
    _mm256_storeu_si256(target + 1, _mm256_permute2x128_si256(low, high, 0x31));
}

inline void WeighStep(const Byte* const* rows, const std::int16_t* weights, std::size_t taps, std::size_t at,
                      std::int16_t* row) {
    const __m256i half = _mm256_set1_epi32(1 << (kRowBits - 1));
    Sums sums = {half, half, half, half};
    for (std::size_t tap = 0; tap < taps; tap += 2)
        AddTwoRows(sums, rows[tap] + at, rows[tap + 1] + at, _mm256_set1_epi32(PairOfWeights(weights + tap)));
    StoreSums(sums, row + at);
}

inline void WeighRest(const Byte* const* rows, const std::int16_t* weights, std::size_t taps, std::size_t at,
                      std::size_t count, std::int16_t* row) {
    for (; at < count; ++at) {
        std::int32_t sum = 1 << (kRowBits - 1);
        for (std::size_t tap = 0; tap < taps; ++tap)
            sum += rows[tap][at] * weights[tap];
        row[at] = static_cast<std::int16_t>(sum >> kRowBits);
    }
}

void WeighRows(const Byte* const* rows, const std::int16_t* weights, std::size_t taps, std::size_t count,
               std::int16_t* row) {
    std::size_t at = 0;
    for (; at + kStep <= count; at += kStep)
        WeighStep(rows, weights, taps, at, row);
    WeighRest(rows, weights, taps, at, count, row);
}

inline __m128i LoadPixel(const std::int16_t* pixel) {
    return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(pixel));
}

/// The channels of one new pixel, a fourth one being of no meaning when there are three.
template <std::size_t Channels>
inline std::uint32_t WeighPixel(const std::int16_t* pixel, const std::int16_t* weights, std::size_t taps) {
    __m128i sums = _mm_set1_epi32(1 << (kPixelBits - 1));
    for (std::size_t tap = 0; tap < taps; tap += 2, pixel += 2 * Channels) {
        const __m128i pair = _mm_unpacklo_epi16(LoadPixel(pixel), LoadPixel(pixel + Channels));
        sums = _mm_add_epi32(sums, _mm_madd_epi16(pair, _mm_set1_epi32(PairOfWeights(weights + tap))));
    }
    const __m128i words = _mm_packs_epi32(_mm_srai_epi32(sums, kPixelBits), _mm_setzero_si128());
    return static_cast<std::uint32_t>(_mm_cvtsi128_si32(_mm_packus_epi16(words, words)));
}

// The fourth byte of a pixel of three is overwritten by its neighbour; behind the last one it is not written.
template <std::size_t Channels>
void WeighPixelsOf(const std::int16_t* row, const Axis& axis, Byte* pixels) {
    const std::int16_t* weights = axis.weights;
    const std::size_t last = axis.count - 1;
    for (std::size_t i = 0; i < last; ++i, weights += axis.taps) {
        const std::uint32_t pixel = WeighPixel<Channels>(row + axis.first[i] * Channels, weights, axis.taps);
        std::memcpy(pixels + i * Channels, &pixel, sizeof pixel);
    }
    const std::uint32_t pixel = WeighPixel<Channels>(row + axis.first[last] * Channels, weights, axis.taps);
    std::memcpy(pixels + last * Channels, &pixel, Channels);
}

void WeighPixels(const std::int16_t* row, const Axis& axis, std::size_t channels, Byte* pixels) {
    if (channels == 1)
        kPortableRoad.weighPixels(row, axis, channels, pixels);
    else if (channels == 3)
        WeighPixelsOf<3>(row, axis, pixels);
    else
        WeighPixelsOf<4>(row, axis, pixels);
}

} // namespace

const Road* Avx2Road() {
    static constexpr Road road = {"avx2", &WeighRows, &WeighPixels};
    return __builtin_cpu_supports("avx2") ? &road : nullptr;
}

} // namespace kel::toolkit::effects::resampling

#else

const kel::toolkit::effects::resampling::Road* kel::toolkit::effects::resampling::Avx2Road() {
    return nullptr;
}

#endif
