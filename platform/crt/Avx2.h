#pragma once

#include <immintrin.h>

/// Only functions marked so are compiled for AVX2; they run where HasAvx2 says so.
#define KEL_AVX2 __attribute__((target("avx2,popcnt")))
#define KEL_AVX2_INLINE KEL_AVX2 __attribute__((always_inline)) inline

namespace kel::platform {

/// Whether this processor runs functions marked KEL_AVX2.
inline bool HasAvx2() {
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("popcnt");
}

KEL_AVX2_INLINE __m256i Bytes(unsigned char value) {
    return _mm256_set1_epi8(static_cast<char>(value));
}

KEL_AVX2_INLINE __m256i Words(unsigned short value) {
    return _mm256_set1_epi16(static_cast<short>(value));
}

KEL_AVX2_INLINE __m256i LoadBytes(const char* from) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
}

/// Each 128-bit half looks 16 indices up in the 16 aligned bytes at @p table; indices from 0x80 on give 0.
KEL_AVX2_INLINE __m256i LookUp(const unsigned char* table, __m256i indices) {
    const __m128i half = _mm_load_si128(reinterpret_cast<const __m128i*>(table));
    return _mm256_shuffle_epi8(_mm256_broadcastsi128_si256(half), indices);
}

} // namespace kel::platform
