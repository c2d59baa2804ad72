#pragma once

#include "stream/Crc32Polynomial.h"

#include <immintrin.h>

#include <cstddef>
#include <cstdint>

/// CRC-32 by folding, after "Fast CRC Computation for Generic Polynomials Using PCLMULQDQ Instruction" (Gopal et al.,
/// Intel, 2009): a register's bytes are multiplied by x^distance mod P and added to data that lies that far behind.
#define KELCORE_CARRYLESS __attribute__((target("pclmul,sse4.1"))) inline

namespace kel {

/// The two factors that fold 16 bytes over a distance in bits.
template <unsigned Distance>
KELCORE_CARRYLESS __m128i Factors() {
    constexpr auto low = static_cast<long long>(FoldingFactor(Distance + 32));
    constexpr auto high = static_cast<long long>(FoldingFactor(Distance - 32));
    return _mm_set_epi64x(high, low);
}

KELCORE_CARRYLESS __m128i Load16(const char* data) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(data));
}

/// Folds @p value onto @p data.
KELCORE_CARRYLESS __m128i Fold16(__m128i value, __m128i factors, __m128i data) {
    const __m128i low = _mm_clmulepi64_si128(value, factors, 0x00);
    const __m128i high = _mm_clmulepi64_si128(value, factors, 0x11);
    return _mm_xor_si128(_mm_xor_si128(low, data), high);
}

/// Moves @p value and the last @p count bytes (1 to 15) of the data together: @p value's first bytes are folded onto
/// the 16 bytes that its last ones and the data's make.
KELCORE_CARRYLESS __m128i FoldTail(__m128i value, const char* end, std::size_t count) {
    alignas(16) static constexpr unsigned char kShifts[48] = {
        0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80,
        0,    1,    2,    3,    4,    5,    6,    7,    8,    9,    10,   11,   12,   13,   14,   15,
        0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80};
    const char* const shifts = reinterpret_cast<const char*>(kShifts);
    const __m128i up = Load16(shifts + count);        // the first count bytes move to the end
    const __m128i down = Load16(shifts + 16 + count); // the others to the front
    const __m128i fresh = _mm_xor_si128(down, _mm_set1_epi8(static_cast<char>(0x80)));
    const __m128i first = _mm_shuffle_epi8(value, up);
    const __m128i rest = _mm_shuffle_epi8(value, down);
    const __m128i joined = _mm_blendv_epi8(Load16(end - 16), rest, fresh);
    return Fold16(first, Factors<128>(), joined);
}

/// Brings 16 folded bytes down to the register: two folds of 64 and 32 bits, then Barrett's reduction.
KELCORE_CARRYLESS std::uint32_t Reduce(__m128i value) {
    const __m128i mask = _mm_set_epi32(0, 0, 0, -1);
    const __m128i factor128 = Factors<128>();
    const __m128i factor64 = _mm_set_epi64x(0, static_cast<long long>(FoldingFactor(64)));
    const __m128i barrett =
        _mm_set_epi64x(static_cast<long long>(BarrettQuotient()), static_cast<long long>(kBarrettPolynomial));
    value = _mm_xor_si128(_mm_srli_si128(value, 8), _mm_clmulepi64_si128(value, factor128, 0x10));
    value = _mm_xor_si128(_mm_srli_si128(value, 4), _mm_clmulepi64_si128(_mm_and_si128(value, mask), factor64, 0x00));
    const __m128i quotient = _mm_clmulepi64_si128(_mm_and_si128(value, mask), barrett, 0x10);
    value = _mm_xor_si128(value, _mm_clmulepi64_si128(_mm_and_si128(quotient, mask), barrett, 0x00));
    return static_cast<std::uint32_t>(_mm_extract_epi32(value, 1));
}

/// Takes in what is left, less than 32 bytes behind @p value, and reduces.
KELCORE_CARRYLESS std::uint32_t Finish(__m128i value, const char* data, std::size_t count) {
    for (; count >= 16; count -= 16, data += 16)
        value = Fold16(value, Factors<128>(), Load16(data));
    if (count > 0)
        value = FoldTail(value, data + count, count);
    return Reduce(value);
}

} // namespace kel
