#pragma once

#include "bitmap/pixels/Pixels.h"

#include <smmintrin.h>

#include <cstring>

/// @file
/// A vector of 16 bytes and the instructions that the language has no operator for (SSE4.1). Kernels.h is written
/// against these names; Vectors32.h gives them to vectors of 32 bytes. One of the two is included, with no linkage.
namespace kel::pixels {
namespace {

constexpr std::size_t kStep = 16;
constexpr std::size_t kLanes = 1;

typedef Byte Bytes __attribute__((vector_size(kStep)));
typedef std::uint16_t Words __attribute__((vector_size(kStep)));
typedef std::uint32_t Quads __attribute__((vector_size(kStep)));

inline Bytes Load(const Byte* at) {
    return Bytes(_mm_loadu_si128(reinterpret_cast<const __m128i*>(at)));
}
inline void Store(Byte* at, Bytes value) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(at), __m128i(value));
}
/// 48 bytes a lane: its first, second and third 16.
struct Three {
    Bytes a;
    Bytes b;
    Bytes c;
};

/// The lanes follow each other in memory.
inline Three LoadThree(const Byte* at) {
    return {Load(at), Load(at + 16), Load(at + 32)};
}
inline void StoreThree(Byte* at, const Three& value) {
    Store(at, value.a);
    Store(at + 16, value.b);
    Store(at + 32, value.c);
}
/// Each lane the 16 bytes at @p at.
inline Bytes EachLane(const Byte* at) {
    return Load(at);
}
inline Bytes EachByte(Byte value) {
    return Bytes(_mm_set1_epi8(static_cast<char>(value)));
}
inline Words EachWord(std::uint16_t value) {
    return Words(_mm_set1_epi16(static_cast<short>(value)));
}
inline Quads EachQuad(std::uint32_t value) {
    return Quads(_mm_set1_epi32(static_cast<int>(value)));
}
/// The bits at @p mask, a bit a byte of the vector; lane by lane, each of its bytes stands in eight neighbours.
inline Bytes SpreadMask(const Byte* mask) {
    std::uint16_t bits;
    std::memcpy(&bits, mask, sizeof bits);
    const __m128i order = _mm_set_epi64x(0x0101010101010101, 0);
    return Bytes(_mm_shuffle_epi8(_mm_cvtsi32_si128(bits), order));
}
/// Unsigned bytes times signed ones, neighbours added.
inline Words MultiplyAdd(Bytes values, Bytes factors) {
    return Words(_mm_maddubs_epi16(__m128i(values), __m128i(factors)));
}
/// Signed words times signed words, neighbours added.
inline Quads MultiplyAdd(Words values, Words factors) {
    return Quads(_mm_madd_epi16(__m128i(values), __m128i(factors)));
}
/// Lane by lane, the bytes of @p values that @p order names; 0 where its top bit is set.
inline Bytes Shuffle(Bytes values, Bytes order) {
    return Bytes(_mm_shuffle_epi8(__m128i(values), __m128i(order)));
}
/// Lane by lane, the 16 bytes from byte @p Count on of @p low followed by @p high.
template <int Count>
inline Bytes Following(Bytes low, Bytes high) {
    return Bytes(_mm_alignr_epi8(__m128i(high), __m128i(low), Count));
}
/// The bytes of @p second where the top bit of @p choice is set, elsewhere those of @p first.
inline Bytes Choose(Bytes first, Bytes second, Bytes choice) {
    return Bytes(_mm_blendv_epi8(__m128i(first), __m128i(second), __m128i(choice)));
}
/// The upper halves of products of unsigned words.
inline Words MultiplyHigh(Words values, Words factors) {
    return Words(_mm_mulhi_epu16(__m128i(values), __m128i(factors)));
}
/// Words below 256 as bytes. The lanes of the three vectors follow each other; in each stand its own in the upper half
/// and, but for the first, those of the lane before in the lower half.
inline Three NarrowNeighbours(Words a, Words b, Words c) {
    const auto narrow = [](Words low, Words high) { return Bytes(_mm_packus_epi16(__m128i(low), __m128i(high))); };
    return {narrow(a, a), narrow(a, b), narrow(b, c)};
}
inline bool AnySet(Bytes value) {
    return _mm_testz_si128(__m128i(value), __m128i(value)) == 0;
}

} // namespace
} // namespace kel::pixels
