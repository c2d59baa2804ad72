#include "stream/Crc32.h"

#if defined(__x86_64__) || defined(__i386__)

#include "stream/Crc32Folding.h"

#define KELCORE_WIDE __attribute__((target("vpclmulqdq,pclmul,avx2")))

namespace {

constexpr std::size_t kStep = 128;

template <unsigned Distance>
KELCORE_WIDE inline __m256i WideFactors() {
    return _mm256_broadcastsi128_si256(kel::Factors<Distance>());
}

KELCORE_WIDE inline __m256i Load32(const char* data) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(data));
}

KELCORE_WIDE inline __m256i Fold32(__m256i value, __m256i factors, __m256i data) {
    const __m256i low = _mm256_clmulepi64_epi128(value, factors, 0x00);
    const __m256i high = _mm256_clmulepi64_epi128(value, factors, 0x11);
    return _mm256_xor_si256(_mm256_xor_si256(low, data), high);
}

KELCORE_WIDE std::uint32_t UpdateWide(std::uint32_t crc, const char* data, std::size_t count) {
    static const kel::Crc32Update narrow = kel::CarrylessRoad();
    if (count < 2 * kStep)
        return narrow(crc, data, count);
    const __m256i start = _mm256_inserti128_si256(_mm256_setzero_si256(), _mm_cvtsi32_si128(static_cast<int>(crc)), 0);
    __m256i a = _mm256_xor_si256(Load32(data), start);
    __m256i b = Load32(data + 32);
    __m256i c = Load32(data + 64);
    __m256i d = Load32(data + 96);
    const __m256i factors = WideFactors<8 * kStep>();
    for (data += kStep, count -= kStep; count >= kStep; data += kStep, count -= kStep) {
        a = Fold32(a, factors, Load32(data));
        b = Fold32(b, factors, Load32(data + 32));
        c = Fold32(c, factors, Load32(data + 64));
        d = Fold32(d, factors, Load32(data + 96));
    }
    a = Fold32(a, WideFactors<512>(), c);
    b = Fold32(b, WideFactors<512>(), d);
    a = Fold32(a, WideFactors<256>(), b);
    for (; count >= 32; data += 32, count -= 32)
        a = Fold32(a, WideFactors<256>(), Load32(data));
    const __m128i low = _mm256_castsi256_si128(a);
    const __m128i high = _mm256_extracti128_si256(a, 1);
    return kel::Finish(kel::Fold16(low, kel::Factors<128>(), high), data, count);
}

} // namespace

kel::Crc32Update kel::WideCarrylessRoad() {
    // Short runs take the narrow road.
    const bool can =
        CarrylessRoad() != nullptr && __builtin_cpu_supports("vpclmulqdq") && __builtin_cpu_supports("avx2");
    return can ? &UpdateWide : nullptr;
}

#else

kel::Crc32Update kel::WideCarrylessRoad() {
    return nullptr;
}

#endif
