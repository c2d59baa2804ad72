#include "platform/crt/TablePages.h"

#if defined(__x86_64__)

#include "platform/crt/Avx2.h"

namespace kel::platform {
namespace {

constexpr std::size_t kBlock = 32;

KEL_AVX2 void DecodeSingles(const HighHalf& table, DecodeJob& job) {
    while (job.Left() >= kBlock && job.Room() >= kBlock) {
        const __m256i block = LoadBytes(job.from);
        __m256i low = _mm256_setzero_si256();
        __m256i high = _mm256_setzero_si256();
        // Every row is looked into; a byte of another row, or of ASCII, has an index there that gives 0.
        for (unsigned char row = 0; row < 8; ++row) {
            const __m256i inRow = _mm256_sub_epi8(block, Bytes(static_cast<unsigned char>(0x80 + 16 * row)));
            const __m256i index = _mm256_adds_epu8(inRow, Bytes(0x70));
            low = _mm256_or_si256(low, LookUp(table.low[row], index));
            high = _mm256_or_si256(high, LookUp(table.high[row], index));
        }
        low = _mm256_blendv_epi8(block, low, block);
        const __m256i even = _mm256_unpacklo_epi8(low, high); // units 0 to 7 and 16 to 23
        const __m256i odd = _mm256_unpackhi_epi8(low, high);  // units 8 to 15 and 24 to 31
        auto* to = reinterpret_cast<__m256i*>(job.to);
        _mm256_storeu_si256(to, _mm256_permute2x128_si256(even, odd, 0x20));
        _mm256_storeu_si256(to + 1, _mm256_permute2x128_si256(even, odd, 0x31));
        job.from += kBlock;
        job.to += kBlock;
    }
}

} // namespace

void (*BestSinglesKernel())(const HighHalf&, DecodeJob&) {
    return HasAvx2() ? DecodeSingles : nullptr;
}

} // namespace kel::platform

#else

namespace kel::platform {
void (*BestSinglesKernel())(const HighHalf&, DecodeJob&) {
    return nullptr;
}
} // namespace kel::platform

#endif
