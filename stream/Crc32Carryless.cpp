#include "stream/Crc32.h"

#if defined(__x86_64__) || defined(__i386__)

#include "stream/Crc32Folding.h"

namespace {

constexpr std::size_t kStep = 64;

__attribute__((target("pclmul,sse4.1"))) std::uint32_t UpdateCarryless(std::uint32_t crc, const char* data,
                                                                       std::size_t count) {
    using namespace kel;
    if (count < kStep)
        return UpdateByTables(crc, data, count);
    // The register counts as part of the first four bytes.
    __m128i a = _mm_xor_si128(Load16(data), _mm_cvtsi32_si128(static_cast<int>(crc)));
    __m128i b = Load16(data + 16);
    __m128i c = Load16(data + 32);
    __m128i d = Load16(data + 48);
    const __m128i factors = Factors<8 * kStep>();
    for (data += kStep, count -= kStep; count >= kStep; data += kStep, count -= kStep) {
        a = Fold16(a, factors, Load16(data));
        b = Fold16(b, factors, Load16(data + 16));
        c = Fold16(c, factors, Load16(data + 32));
        d = Fold16(d, factors, Load16(data + 48));
    }
    a = Fold16(a, Factors<256>(), c);
    b = Fold16(b, Factors<256>(), d);
    return Finish(Fold16(a, Factors<128>(), b), data, count);
}

} // namespace

kel::Crc32Update kel::CarrylessRoad() {
    return __builtin_cpu_supports("pclmul") && __builtin_cpu_supports("sse4.1") ? &UpdateCarryless : nullptr;
}

#else

kel::Crc32Update kel::CarrylessRoad() {
    return nullptr;
}

#endif
