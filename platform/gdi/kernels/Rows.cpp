#include "platform/gdi/kernels/Rows.h"

#include "platform/crt/Avx2.h"

#include <cstring>

// Bodies of loops that the compiler turns into vectors: for the processor at hand, and once more for AVX2.
#define KEL_LOOP __attribute__((always_inline)) inline
// Rows may be the same, but never overlap otherwise.
#ifdef __clang__
#define KEL_SAME_OR_APART _Pragma("clang loop vectorize(assume_safety)")
#else
#define KEL_SAME_OR_APART _Pragma("GCC ivdep")
#endif

namespace kel::platform {
namespace {

std::uint32_t Load32(const std::uint8_t* bytes) {
    std::uint32_t value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

std::uint32_t Load24(const std::uint8_t* bytes) {
    return bytes[0] | std::uint32_t{bytes[1]} << 8 | std::uint32_t{bytes[2]} << 16;
}

void Store24(std::uint8_t* bytes, std::uint32_t value) {
    bytes[0] = static_cast<std::uint8_t>(value);
    bytes[1] = static_cast<std::uint8_t>(value >> 8);
    bytes[2] = static_cast<std::uint8_t>(value >> 16);
}

template <class Pixel>
void Pick(std::uint8_t* to, const std::uint8_t* from, const int* columns, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        std::memcpy(to + i * sizeof(Pixel), from + static_cast<std::size_t>(columns[i]) * sizeof(Pixel), sizeof(Pixel));
}

// Four bytes are moved for three, which the next pixel mends; the last one is moved by bytes, and so is one that has
// nothing behind it.
void Pick24(std::uint8_t* to, const std::uint8_t* from, const int* columns, std::size_t count) {
    int last = 0;
    for (const std::size_t end : {std::size_t{0}, count - 1})
        last = columns[end] > last ? columns[end] : last;
    for (std::size_t i = 0; i < count; ++i, to += 3) {
        const std::uint8_t* pixel = from + 3 * static_cast<std::size_t>(columns[i]);
        if (i + 1 < count && columns[i] < last)
            std::memcpy(to, pixel, 4);
        else
            std::memcpy(to, pixel, 3);
    }
}

KEL_LOOP void Combine(std::uint8_t* to, const std::uint8_t* source, const std::uint8_t* pattern, std::size_t count,
                      unsigned rop) {
    KEL_SAME_OR_APART
    for (std::size_t i = 0; i < count; ++i) {
        const unsigned s = source[i];
        const unsigned p = pattern[i];
        const unsigned t = to[i];
        unsigned result = 0;
        for (unsigned index = 0; index < 8; ++index)
            result |= (index & 4 ? p : ~p) & (index & 2 ? s : ~s) & (index & 1 ? t : ~t) & (0u - (rop >> index & 1));
        to[i] = static_cast<std::uint8_t>(result);
    }
}

template <class Change>
KEL_LOOP void ForBytes(std::uint8_t* to, const std::uint8_t* from, std::size_t count, Change change) {
    KEL_SAME_OR_APART
    for (std::size_t i = 0; i < count; ++i)
        to[i] = static_cast<std::uint8_t>(change(to[i], from[i]));
}

KEL_LOOP void CombineKnown(std::uint8_t* to, const std::uint8_t* source, const std::uint8_t* pattern, std::size_t count,
                           unsigned rop) {
    switch (rop) {
    case DSTINVERT >> 16:
        return ForBytes(to, to, count, [](unsigned t, unsigned) { return ~t; });
    case SRCAND >> 16:
        return ForBytes(to, source, count, [](unsigned t, unsigned s) { return t & s; });
    case SRCPAINT >> 16:
        return ForBytes(to, source, count, [](unsigned t, unsigned s) { return t | s; });
    case SRCINVERT >> 16:
        return ForBytes(to, source, count, [](unsigned t, unsigned s) { return t ^ s; });
    case NOTSRCCOPY >> 16:
        return ForBytes(to, source, count, [](unsigned, unsigned s) { return ~s; });
    case PATINVERT >> 16:
        return ForBytes(to, pattern, count, [](unsigned t, unsigned p) { return t ^ p; });
    default:
        return Combine(to, source, pattern, count, rop);
    }
}

KEL_AVX2 void CombineAvx2(std::uint8_t* to, const std::uint8_t* source, const std::uint8_t* pattern, std::size_t count,
                          unsigned rop) {
    CombineKnown(to, source, pattern, count, rop);
}

KEL_LOOP void KeyLoop32(std::uint32_t* to, const std::uint32_t* from, std::size_t count, std::uint32_t key) {
    KEL_SAME_OR_APART
    for (std::size_t i = 0; i < count; ++i)
        to[i] = ((from[i] ^ key) & 0xFFFFFF) == 0 ? to[i] : from[i];
}

KEL_AVX2 void KeyAvx2(std::uint32_t* to, const std::uint32_t* from, std::size_t count, std::uint32_t key) {
    KeyLoop32(to, from, count, key);
}

void Key24(std::uint8_t* to, const std::uint8_t* from, std::size_t count, std::uint32_t key) {
    for (std::size_t i = 0; i < 3 * count; i += 3) {
        const std::uint32_t pixel = Load24(from + i);
        Store24(to + i, pixel == key ? Load24(to + i) : pixel);
    }
}

// --- blending, eight pixels at a time

KEL_AVX2_INLINE __m256i Divided255(__m256i values) {
    return _mm256_srli_epi16(_mm256_mulhi_epu16(values, _mm256_set1_epi16(static_cast<short>(0x8081))), 7);
}

KEL_AVX2_INLINE __m256i Scaled(__m256i channels, __m256i opacity) {
    return Divided255(_mm256_add_epi16(_mm256_mullo_epi16(channels, opacity), _mm256_set1_epi16(127)));
}

KEL_AVX2_INLINE __m256i Inverse(__m256i opacity) {
    return _mm256_sub_epi16(_mm256_set1_epi16(255), opacity);
}

KEL_AVX2_INLINE __m256i BlendByConstant(__m256i from, __m256i to, __m256i constant) {
    const __m256i sum = _mm256_add_epi16(_mm256_mullo_epi16(from, constant), _mm256_mullo_epi16(to, Inverse(constant)));
    return Divided255(_mm256_add_epi16(sum, _mm256_set1_epi16(127)));
}

KEL_AVX2_INLINE __m256i BlendByPixel(__m256i from, __m256i to, __m256i constant) {
    const __m256i scaled = Scaled(from, constant);
    const __m256i alpha = _mm256_shufflehi_epi16(_mm256_shufflelo_epi16(scaled, 0xFF), 0xFF);
    return _mm256_add_epi16(scaled, Scaled(to, Inverse(alpha)));
}

template <bool perPixel>
KEL_AVX2_INLINE __m256i BlendEight(__m256i from, __m256i to, __m256i constant) {
    const __m256i zero = _mm256_setzero_si256();
    const __m256i fromLow = _mm256_unpacklo_epi8(from, zero);
    const __m256i fromHigh = _mm256_unpackhi_epi8(from, zero);
    const __m256i toLow = _mm256_unpacklo_epi8(to, zero);
    const __m256i toHigh = _mm256_unpackhi_epi8(to, zero);
    if constexpr (perPixel)
        return _mm256_packus_epi16(BlendByPixel(fromLow, toLow, constant), BlendByPixel(fromHigh, toHigh, constant));
    else
        return _mm256_packus_epi16(BlendByConstant(fromLow, toLow, constant),
                                   BlendByConstant(fromHigh, toHigh, constant));
}

template <bool perPixel>
KEL_AVX2 std::size_t BlendAvx2(std::uint8_t* to, const std::uint8_t* from, std::size_t count, int opacity) {
    const __m256i constant = _mm256_set1_epi16(static_cast<short>(opacity));
    std::size_t i = 0;
    for (; i + 8 <= count; i += 8) {
        auto* target = reinterpret_cast<__m256i*>(to + 4 * i);
        const __m256i source = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from + 4 * i));
        _mm256_storeu_si256(target, BlendEight<perPixel>(source, _mm256_loadu_si256(target), constant));
    }
    return i;
}

std::size_t BlendVectors(std::uint8_t* to, const std::uint8_t* from, std::size_t count, const BLENDFUNCTION& function) {
    static const bool hasAvx2 = HasAvx2();
    if (!hasAvx2)
        return 0;
    return function.AlphaFormat == AC_SRC_ALPHA ? BlendAvx2<true>(to, from, count, function.SourceConstantAlpha)
                                                : BlendAvx2<false>(to, from, count, function.SourceConstantAlpha);
}

} // namespace

void PickPixels(std::uint8_t* to, const std::uint8_t* from, const int* columns, std::size_t count, int bytes) {
    switch (bytes) {
    case 1:
        return Pick<std::uint8_t>(to, from, columns, count);
    case 2:
        return Pick<std::uint16_t>(to, from, columns, count);
    case 3:
        return Pick24(to, from, columns, count);
    default:
        return Pick<std::uint32_t>(to, from, columns, count);
    }
}

void FillPixels(std::uint8_t* to, std::uint32_t value, std::size_t count, int bytes) {
    const auto size = static_cast<std::size_t>(bytes);
    for (std::size_t i = 0; i < count && i < 4; ++i)
        for (std::size_t k = 0; k < size; ++k)
            to[i * size + k] = static_cast<std::uint8_t>(value >> 8 * k);
    // What is there already is copied to double it.
    for (std::size_t done = 4; done < count; done *= 2)
        std::memcpy(to + done * size, to, (count - done < done ? count - done : done) * size);
}

void CombineBytes(std::uint8_t* to, const std::uint8_t* source, const std::uint8_t* pattern, std::size_t count,
                  unsigned rop) {
    static const bool hasAvx2 = HasAvx2();
    (hasAvx2 ? CombineAvx2 : CombineKnown)(to, source ? source : to, pattern ? pattern : to, count, rop);
}

void CopyUnlessKey(std::uint8_t* to, const std::uint8_t* from, std::size_t count, int bytes, std::uint32_t key) {
    static const bool hasAvx2 = HasAvx2();
    if (bytes == 3)
        return Key24(to, from, count, key & 0xFFFFFF);
    auto* target = reinterpret_cast<std::uint32_t*>(to);
    const auto* source = reinterpret_cast<const std::uint32_t*>(from);
    (hasAvx2 ? KeyAvx2 : KeyLoop32)(target, source, count, key);
}

void BlendPixels(std::uint8_t* to, const std::uint8_t* from, std::size_t count, const BLENDFUNCTION& function) {
    for (std::size_t i = BlendVectors(to, from, count, function); i < count; ++i) {
        const std::uint32_t result = Blended(function, Load32(from + 4 * i), Load32(to + 4 * i));
        std::memcpy(to + 4 * i, &result, sizeof result);
    }
}

void Widen(std::uint8_t* to, const std::uint8_t* from, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t pixel = Load24(from + 3 * i);
        std::memcpy(to + 4 * i, &pixel, sizeof pixel);
    }
}

void Narrow(std::uint8_t* to, const std::uint8_t* from, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        Store24(to + 3 * i, Load32(from + 4 * i));
}

} // namespace kel::platform
