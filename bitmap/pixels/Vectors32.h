#pragma once

#include "bitmap/pixels/Pixels.h"

#include <immintrin.h>

#include <cstring>

/// @file
/// A vector of 32 bytes, two lanes of 16, under the names of Vectors16.h (AVX2).
namespace kel::pixels {
namespace {

constexpr std::size_t kStep = 32;
constexpr std::size_t kLanes = 2;

typedef Byte Bytes __attribute__((vector_size(kStep)));
typedef std::uint16_t Words __attribute__((vector_size(kStep)));
typedef std::uint32_t Quads __attribute__((vector_size(kStep)));

inline Bytes Load(const Byte* at) {
    return Bytes(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(at)));
}
inline void Store(Byte* at, Bytes value) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(at), __m256i(value));
}

struct Three {
    Bytes a;
    Bytes b;
    Bytes c;
};

template <int Halves>
inline Bytes Permute(Bytes first, Bytes second) {
    return Bytes(_mm256_permute2x128_si256(__m256i(first), __m256i(second), Halves));
}
inline Bytes LowAndHigh(Bytes low, Bytes high) {
    return Bytes(_mm256_blend_epi32(__m256i(low), __m256i(high), 0xF0));
}
inline Three LoadThree(const Byte* at) {
    const Bytes first = Load(at);
    const Bytes second = Load(at + 32);
    const Bytes third = Load(at + 64);
    return {LowAndHigh(first, second), Permute<0x21>(first, third), LowAndHigh(second, third)};
}
inline void StoreThree(Byte* at, const Three& value) {
    Store(at, Permute<0x20>(value.a, value.b));
    Store(at + 32, LowAndHigh(value.c, value.a));
    Store(at + 64, Permute<0x31>(value.b, value.c));
}
inline Bytes EachLane(const Byte* at) {
    return Bytes(_mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(at))));
}
inline Bytes EachByte(Byte value) {
    return Bytes(_mm256_set1_epi8(static_cast<char>(value)));
}
inline Words EachWord(std::uint16_t value) {
    return Words(_mm256_set1_epi16(static_cast<short>(value)));
}
inline Quads EachQuad(std::uint32_t value) {
    return Quads(_mm256_set1_epi32(static_cast<int>(value)));
}
inline Bytes SpreadMask(const Byte* mask) {
    std::int32_t bits;
    std::memcpy(&bits, mask, sizeof bits);
    const __m256i order = _mm256_set_epi64x(0x0303030303030303, 0x0202020202020202, 0x0101010101010101, 0);
    return Bytes(_mm256_shuffle_epi8(_mm256_set1_epi32(bits), order));
}
inline Words MultiplyAdd(Bytes values, Bytes factors) {
    return Words(_mm256_maddubs_epi16(__m256i(values), __m256i(factors)));
}
inline Quads MultiplyAdd(Words values, Words factors) {
    return Quads(_mm256_madd_epi16(__m256i(values), __m256i(factors)));
}
inline Bytes Shuffle(Bytes values, Bytes order) {
    return Bytes(_mm256_shuffle_epi8(__m256i(values), __m256i(order)));
}
template <int Count>
inline Bytes Following(Bytes low, Bytes high) {
    return Bytes(_mm256_alignr_epi8(__m256i(high), __m256i(low), Count));
}
inline Bytes Choose(Bytes first, Bytes second, Bytes choice) {
    return Bytes(_mm256_blendv_epi8(__m256i(first), __m256i(second), __m256i(choice)));
}
inline Words MultiplyHigh(Words values, Words factors) {
    return Words(_mm256_mulhi_epu16(__m256i(values), __m256i(factors)));
}
inline Bytes NarrowPair(Bytes before, Words own) {
    return Bytes(_mm256_packus_epi16(__m256i(before), __m256i(own)));
}
inline Three NarrowNeighbours(Words a, Words b, Words c) {
    return {NarrowPair(Permute<0x00>(Bytes(a), Bytes(a)), a), NarrowPair(Permute<0x21>(Bytes(a), Bytes(b)), b),
            NarrowPair(Permute<0x21>(Bytes(b), Bytes(c)), c)};
}
inline bool AnySet(Bytes value) {
    return _mm256_testz_si256(__m256i(value), __m256i(value)) == 0;
}

} // namespace
} // namespace kel::pixels
