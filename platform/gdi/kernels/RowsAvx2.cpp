#include "platform/crt/Avx2.h"
#include "platform/gdi/kernels/Loops.h"
#include "platform/gdi/kernels/Rows.h"

namespace kel::platform {
namespace {

constexpr std::size_t kVector = 32;

KEL_AVX2_INLINE __m256i Load(const std::uint8_t* from) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
}

KEL_AVX2_INLINE void Store(std::uint8_t* to, __m256i bytes) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), bytes);
}

KEL_AVX2_INLINE __m128i LoadHalf(const std::uint8_t* from) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}

KEL_AVX2_INLINE void StoreHalf(std::uint8_t* to, __m128i bytes) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), bytes);
}

// Both halves look their bytes up in themselves by the same sixteen places.
KEL_AVX2_INLINE __m256i Placed(__m256i bytes, __m128i places) {
    return _mm256_shuffle_epi8(bytes, _mm256_broadcastsi128_si256(places));
}

// --- picking

// A step in each half.
KEL_AVX2_INLINE __m256i Picked(const std::uint8_t* first, const std::uint8_t* second, const std::uint8_t* places) {
    const __m256i pixels = _mm256_inserti128_si256(_mm256_castsi128_si256(LoadHalf(first)), LoadHalf(second), 1);
    return _mm256_shuffle_epi8(pixels, Load(places));
}

template <std::size_t pieces>
KEL_AVX2 void PickPairs(std::uint8_t* to, const std::uint8_t* from, const ColumnPlan& plan) {
    constexpr std::size_t kPiece = ColumnPlan::kPieceBytes;
    const std::size_t stepBytes = plan.PixelsOfStep() * plan.Bytes();
    const std::uint32_t* windows = plan.Windows();
    const std::uint8_t* places = plan.Places();
    for (std::size_t i = plan.Pairs(); i > 0; --i, to += 2 * stepBytes, windows += 2, places += pieces * kVector) {
        const std::uint8_t* first = from + windows[0];
        const std::uint8_t* second = from + windows[1];
        __m256i pixels = Picked(first, second, places);
        if constexpr (pieces == 2)
            pixels = _mm256_or_si256(pixels, Picked(first + kPiece, second + kPiece, places + kVector));
        StoreHalf(to, _mm256_castsi256_si128(pixels));
        StoreHalf(to + stepBytes, _mm256_extracti128_si256(pixels, 1));
    }
}

void Pick(std::uint8_t* to, const std::uint8_t* from, const ColumnPlan& plan) {
    if (plan.Pieces() == 0)
        return kPlainRows.pick(to, from, plan);
    (plan.Pieces() == 1 ? PickPairs<1> : PickPairs<2>)(to, from, plan);
    const std::size_t bytes = plan.Bytes();
    for (std::size_t i = 2 * plan.Pairs() * plan.PixelsOfStep(); i < plan.Columns().size(); ++i)
        std::memcpy(to + i * bytes, from + static_cast<std::size_t>(plan.Columns()[i]) * bytes, bytes);
}

// --- writing and copying

// As long as the common multiple of vectors and of pixels of any size.
constexpr std::size_t kFillBytes = 3 * kVector;

KEL_AVX2 void Fill(std::uint8_t* to, std::uint32_t value, std::size_t count, int bytes) {
    std::uint8_t block[kFillBytes];
    kPlainRows.fill(block, value, kFillBytes / static_cast<std::size_t>(bytes), bytes);
    const __m256i first = Load(block);
    const __m256i second = Load(block + kVector);
    const __m256i third = Load(block + 2 * kVector);
    std::size_t left = count * static_cast<std::size_t>(bytes);
    for (; left >= kFillBytes; left -= kFillBytes, to += kFillBytes) {
        Store(to, first);
        Store(to + kVector, second);
        Store(to + 2 * kVector, third);
    }
    std::memcpy(to, block, left);
}

// Only whole lines of the cache can do without being read first.
KEL_AVX2 void Stream(std::uint8_t* to, const std::uint8_t* from, std::size_t count) {
    constexpr std::size_t kLine = 64;
    const std::size_t ahead = -reinterpret_cast<std::uintptr_t>(to) % kLine;
    const std::size_t head = ahead < count ? ahead : count;
    std::memcpy(to, from, head);
    std::size_t i = head;
    for (; i + kLine <= count; i += kLine) {
        _mm256_stream_si256(reinterpret_cast<__m256i*>(to + i), Load(from + i));
        _mm256_stream_si256(reinterpret_cast<__m256i*>(to + i + kVector), Load(from + i + kVector));
    }
    std::memcpy(to + i, from + i, count - i);
}

void Settle() {
    _mm_sfence();
}

KEL_AVX2 void Combine(std::uint8_t* to, const std::uint8_t* source, const std::uint8_t* pattern, std::size_t count,
                      unsigned rop) {
    CombineLoop(to, source ? source : to, pattern ? pattern : to, count, rop);
}

// --- between 24 and 32 bits: eight pixels at a time, four in each half of a vector

KEL_AVX2_INLINE __m128i PlacesOfWide() {
    return _mm_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1);
}

KEL_AVX2_INLINE __m128i PlacesOfNarrow() {
    return _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
}

constexpr std::size_t kHalfOfEight = 12;  // bytes of four pixels of 24 bits
constexpr std::size_t kEightAndMore = 10; // pixels that hold the 28 bytes that are touched

KEL_AVX2_INLINE __m256i LoadEight(const std::uint8_t* from) {
    return _mm256_inserti128_si256(_mm256_castsi128_si256(LoadHalf(from)), LoadHalf(from + kHalfOfEight), 1);
}

KEL_AVX2_INLINE void StoreEight(std::uint8_t* to, __m256i pixels) {
    StoreHalf(to, _mm256_castsi256_si128(pixels));
    StoreHalf(to + kHalfOfEight, _mm256_extracti128_si256(pixels, 1));
}

KEL_AVX2 void Widen(std::uint8_t* to, const std::uint8_t* from, std::size_t count) {
    std::size_t i = 0;
    for (; i + kEightAndMore <= count; i += 8)
        Store(to + 4 * i, Placed(LoadEight(from + 3 * i), PlacesOfWide()));
    WidenLoop(to + 4 * i, from + 3 * i, count - i);
}

KEL_AVX2 void Narrow(std::uint8_t* to, const std::uint8_t* from, std::size_t count) {
    std::size_t i = 0;
    for (; i + kEightAndMore <= count; i += 8)
        StoreEight(to + 3 * i, Placed(Load(from + 4 * i), PlacesOfNarrow()));
    NarrowLoop(to + 3 * i, from + 4 * i, count - i);
}

// --- copying but for a colour: 32 pixels at a time, of which most often none or all have it

constexpr std::size_t kBlock = 32;

KEL_AVX2_INLINE __m256i Matches32(__m256i pixels, __m256i key) {
    return _mm256_cmpeq_epi32(_mm256_and_si256(pixels, _mm256_set1_epi32(0xFFFFFF)), key);
}

KEL_AVX2_INLINE void StoreUnless(std::uint8_t* to, __m256i pixels, __m256i matches) {
    Store(to, _mm256_blendv_epi8(pixels, Load(to), matches));
}

KEL_AVX2 void CopyUnless32(std::uint8_t* to, const std::uint8_t* from, std::size_t count, std::uint32_t colour) {
    const __m256i key = _mm256_set1_epi32(static_cast<int>(colour & 0xFFFFFF));
    std::size_t i = 0;
    for (; i + kBlock <= count; i += kBlock) {
        const __m256i a = Load(from + 4 * i);
        const __m256i b = Load(from + 4 * i + kVector);
        const __m256i c = Load(from + 4 * i + 2 * kVector);
        const __m256i d = Load(from + 4 * i + 3 * kVector);
        const __m256i inA = Matches32(a, key);
        const __m256i inB = Matches32(b, key);
        const __m256i inC = Matches32(c, key);
        const __m256i inD = Matches32(d, key);
        const __m256i any = _mm256_or_si256(_mm256_or_si256(inA, inB), _mm256_or_si256(inC, inD));
        std::uint8_t* block = to + 4 * i;
        if (_mm256_testz_si256(any, any)) {
            Store(block, a);
            Store(block + kVector, b);
            Store(block + 2 * kVector, c);
            Store(block + 3 * kVector, d);
        } else {
            StoreUnless(block, a, inA);
            StoreUnless(block + kVector, b, inB);
            StoreUnless(block + 2 * kVector, c, inC);
            StoreUnless(block + 3 * kVector, d, inD);
        }
    }
    CopyUnlessLoop<4>(to + 4 * i, from + 4 * i, count - i, colour);
}

/// The bytes of a colour, each in a vector of its own.
struct Key24 {
    __m256i blue, green, red, whole;
};

KEL_AVX2_INLINE Key24 KeyOf(std::uint32_t colour) {
    return {Bytes(static_cast<unsigned char>(colour)), Bytes(static_cast<unsigned char>(colour >> 8)),
            Bytes(static_cast<unsigned char>(colour >> 16)), _mm256_set1_epi32(static_cast<int>(colour & 0xFFFFFF))};
}

// A bit for each byte of a vector: whether the colour's three bytes stand from there on.
KEL_AVX2_INLINE std::uint32_t Matches24(const std::uint8_t* from, const Key24& key) {
    const __m256i blue = _mm256_cmpeq_epi8(Load(from), key.blue);
    const __m256i green = _mm256_cmpeq_epi8(Load(from + 1), key.green);
    const __m256i red = _mm256_cmpeq_epi8(Load(from + 2), key.red);
    return static_cast<std::uint32_t>(_mm256_movemask_epi8(_mm256_and_si256(_mm256_and_si256(blue, green), red)));
}

// Bytes in which pixels begin, in the three vectors of a block.
constexpr std::uint32_t kBegins[] = {0x49249249, 0x92492492, 0x24924924};

enum class Holds { none, some, all };

KEL_AVX2_INLINE Holds KeyIn(const std::uint8_t* block, const Key24& key) {
    const std::uint32_t first = Matches24(block, key) & kBegins[0];
    const std::uint32_t second = Matches24(block + kVector, key) & kBegins[1];
    const std::uint32_t third = Matches24(block + 2 * kVector, key) & kBegins[2];
    if ((first | second | third) == 0)
        return Holds::none;
    return first == kBegins[0] && second == kBegins[1] && third == kBegins[2] ? Holds::all : Holds::some;
}

// What the two stores write beside their twelve bytes is what is there.
KEL_AVX2_INLINE void CopyEightUnless(std::uint8_t* to, const std::uint8_t* from, __m256i key) {
    const __m256i pixels = LoadEight(from);
    const __m256i matches = _mm256_cmpeq_epi32(Placed(pixels, PlacesOfWide()), key);
    const __m256i others = _mm256_xor_si256(matches, _mm256_set1_epi8(-1));
    StoreEight(to, _mm256_blendv_epi8(LoadEight(to), pixels, Placed(others, PlacesOfNarrow())));
}

KEL_AVX2_INLINE void CopyBlock(std::uint8_t* to, const std::uint8_t* from) {
    for (std::size_t i = 0; i < 3 * kVector; i += kVector)
        Store(to + i, Load(from + i));
}

KEL_AVX2 void CopyUnless24(std::uint8_t* to, const std::uint8_t* from, std::size_t count, std::uint32_t colour) {
    constexpr std::size_t kTouched = kBlock + 2; // the last eight touch 28 bytes
    const Key24 key = KeyOf(colour);
    for (; count >= kTouched; count -= kBlock, to += 3 * kBlock, from += 3 * kBlock) {
        const Holds holds = KeyIn(from, key);
        if (holds == Holds::none)
            CopyBlock(to, from);
        for (std::size_t i = 0; holds == Holds::some && i < 3 * kBlock; i += 2 * kHalfOfEight)
            CopyEightUnless(to + i, from + i, key.whole);
    }
    CopyUnlessLoop<3>(to, from, count, colour);
}

// --- blending: sixteen channels at a time, in numbers of 16 bits

// The quotient by 255, rounded; exact for products of two bytes.
KEL_AVX2_INLINE __m256i Over255(__m256i products) {
    return _mm256_mulhi_epu16(_mm256_add_epi16(products, Words(128)), Words(257));
}

/// Weights of two rows that add up to 255, the larger one as what it leaves of 255: that is less than 128, as the
/// products of bytes want it.
struct Weights {
    bool swapped;  ///< whether the row that is weighed less is the target
    __m256i pairs; ///< less and more, for channels of both rows side by side
};

KEL_AVX2_INLINE Weights WeightsOf(unsigned opacity) {
    const unsigned less = opacity < 128 ? opacity : 255 - opacity;
    return {opacity >= 128, Words(static_cast<unsigned short>(less << 8 | (-less & 0xFF)))};
}

// The row that weighs more is changed by a share of the difference, the quotient by 255 of a number with a sign: half
// of the range is added first, and 128 taken from the quotient afterwards.
KEL_AVX2_INLINE __m256i Changes(__m256i pairs, const Weights& weights) {
    const __m256i products = _mm256_maddubs_epi16(pairs, weights.pairs);
    return _mm256_mulhi_epu16(_mm256_xor_si256(products, Words(0x8000)), Words(257));
}

KEL_AVX2_INLINE __m256i Weighed(__m256i more, __m256i less, const Weights& weights) {
    const __m256i changes = _mm256_packus_epi16(Changes(_mm256_unpacklo_epi8(more, less), weights),
                                                Changes(_mm256_unpackhi_epi8(more, less), weights));
    return _mm256_xor_si256(_mm256_add_epi8(more, changes), Bytes(0x80));
}

template <bool swapped>
KEL_AVX2 std::size_t WeighVectors(std::uint8_t* to, const std::uint8_t* from, std::size_t count,
                                  const Weights& weights) {
    std::size_t i = 0;
    for (; i + kVector <= count; i += kVector) {
        const __m256i source = Load(from + i);
        const __m256i target = Load(to + i);
        Store(to + i, swapped ? Weighed(source, target, weights) : Weighed(target, source, weights));
    }
    return i;
}

KEL_AVX2 void Weigh(std::uint8_t* to, const std::uint8_t* from, std::size_t count, unsigned opacity) {
    const Weights weights = WeightsOf(opacity);
    const std::size_t done = (weights.swapped ? WeighVectors<true> : WeighVectors<false>)(to, from, count, weights);
    WeighLoop(to + done, from + done, count - done, opacity);
}

// Every other channel, in the low byte of a number and in the high one.
KEL_AVX2_INLINE __m256i Even(__m256i bytes) {
    return _mm256_and_si256(bytes, Words(0xFF));
}

KEL_AVX2_INLINE __m256i Odd(__m256i bytes) {
    return _mm256_srli_epi16(bytes, 8);
}

// What each pixel leaves of the target, for both halves of its channels.
KEL_AVX2_INLINE __m256i Rests(__m256i from) {
    const __m256i left = _mm256_xor_si256(from, _mm256_set1_epi8(-1));
    return Placed(left, _mm_setr_epi8(3, -1, 3, -1, 7, -1, 7, -1, 11, -1, 11, -1, 15, -1, 15, -1));
}

KEL_AVX2_INLINE __m256i Shares(__m256i bytes, __m256i opacities) {
    const __m256i even = Over255(_mm256_mullo_epi16(Even(bytes), opacities));
    const __m256i odd = Over255(_mm256_mullo_epi16(Odd(bytes), opacities));
    return _mm256_or_si256(even, _mm256_slli_epi16(odd, 8));
}

KEL_AVX2_INLINE __m256i Laid(__m256i from, __m256i to) {
    return _mm256_adds_epu8(from, Shares(to, Rests(from)));
}

template <bool whole>
KEL_AVX2 std::size_t LayVectors(std::uint8_t* to, const std::uint8_t* from, std::size_t count, unsigned opacity) {
    const __m256i share = Words(static_cast<unsigned short>(opacity));
    std::size_t i = 0;
    for (; i + 8 <= count; i += 8) {
        const __m256i source = Load(from + 4 * i);
        Store(to + 4 * i, Laid(whole ? source : Shares(source, share), Load(to + 4 * i)));
    }
    return i;
}

KEL_AVX2 void Lay(std::uint8_t* to, const std::uint8_t* from, std::size_t count, unsigned opacity) {
    const std::size_t done = (opacity == 255 ? LayVectors<true> : LayVectors<false>)(to, from, count, opacity);
    LayLoop(to + 4 * done, from + 4 * done, count - done, opacity);
}

} // namespace

const RowRoad kAvx2Rows = {&Pick,         &Fill,  &Stream, &Settle, &Combine, &CopyUnless24,
                           &CopyUnless32, &Weigh, &Lay,    &Widen,  &Narrow};

} // namespace kel::platform
