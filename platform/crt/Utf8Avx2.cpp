#include "platform/crt/Utf8Kernels.h"
#include "platform/crt/Utf8Scalar.h"

#if defined(__x86_64__)

#include "platform/crt/Avx2.h"

#include <array>
#include <cstring>

namespace kel::platform {
namespace {

using Shuffle = std::array<unsigned char, 16>;
using ShuffleTable = std::array<Shuffle, 256>;

// A shuffle takes a zero byte for this index.
constexpr unsigned char kNoByte = 0x80;

KEL_AVX2_INLINE __m128i At(const ShuffleTable& table, unsigned index) {
    return _mm_load_si128(reinterpret_cast<const __m128i*>(table[index].data()));
}

// --- encoding: 16 units a block

constexpr std::size_t kUnits = 16;
// Four groups of up to 12 bytes, each written with 16.
constexpr std::size_t kEncodeRoom = 4 * 12 + 4;

/// Where the bytes of four units go. Each unit comes as four bytes: the lead of three, nothing, the lead of two or the
/// middle of three, the last. The index has a bit in its low half for each unit that is ASCII and one in its high half
/// for each below 0x800.
constexpr ShuffleTable MakeEncodeTable() {
    ShuffleTable table{};
    for (unsigned index = 0; index < 256; ++index) {
        std::size_t to = 0;
        table[index].fill(kNoByte);
        for (unsigned unit = 0; unit < 4; ++unit) {
            const bool ascii = (index >> unit & 1) != 0;
            const bool two = (index >> (unit + 4) & 1) != 0;
            if (!two)
                table[index][to++] = static_cast<unsigned char>(4 * unit);
            if (!ascii)
                table[index][to++] = static_cast<unsigned char>(4 * unit + 2);
            table[index][to++] = static_cast<unsigned char>(4 * unit + 3);
        }
    }
    return table;
}

alignas(16) constexpr ShuffleTable kEncodeTable = MakeEncodeTable();

KEL_AVX2_INLINE void PutGroup(__m128i units, unsigned index, char* to) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_shuffle_epi8(units, At(kEncodeTable, index)));
}

/// Sixteen units on their way to bytes, a word for each.
struct EncodedUnits {
    __m256i lead;  ///< the lead of three bytes
    __m256i tail;  ///< the two last bytes, the very last in the high half
    __m256i ascii; ///< all ones where one byte is written
    __m256i two;   ///< all ones where one or two are
};

KEL_AVX2_INLINE EncodedUnits EncodeUnits(__m256i units) {
    const __m256i zero = _mm256_setzero_si256();
    const __m256i ascii = _mm256_cmpeq_epi16(_mm256_subs_epu16(units, Words(0x7F)), zero);
    const __m256i two = _mm256_cmpeq_epi16(_mm256_subs_epu16(units, Words(0x7FF)), zero);
    const __m256i shifted = _mm256_slli_epi16(units, 8);
    const __m256i body = _mm256_or_si256(_mm256_and_si256(shifted, Words(0x3F00)),
                                         _mm256_and_si256(_mm256_srli_epi16(units, 6), Words(0x003F)));
    const __m256i mark = _mm256_or_si256(Words(0x8080), _mm256_and_si256(two, Words(0x0040)));
    const __m256i tail = _mm256_blendv_epi8(_mm256_or_si256(body, mark), shifted, ascii);
    const __m256i lead = _mm256_or_si256(_mm256_srli_epi16(units, 12), Words(0x00E0));
    return {lead, tail, ascii, two};
}

/// Makes two bytes of each half of a surrogate pair; its third byte has bits of both.
/// @return false if a surrogate is not one half of a pair, which may go on behind the block.
KEL_AVX2_INLINE bool EncodePairs(__m256i units, EncodedUnits& encoded) {
    const __m256i kind = _mm256_and_si256(units, Words(0xFC00));
    const __m256i high = _mm256_cmpeq_epi16(kind, Words(0xD800));
    const __m256i low = _mm256_cmpeq_epi16(kind, Words(0xDC00));
    if (static_cast<unsigned>(_mm256_movemask_epi8(high)) << 2 != static_cast<unsigned>(_mm256_movemask_epi8(low)))
        return false;
    // The code point's bits from 10 on.
    const __m256i top = _mm256_sub_epi16(units, Words(0xD7C0));
    const __m256i front = _mm256_or_si256(_mm256_or_si256(_mm256_srli_epi16(top, 8), Words(0x80F0)),
                                          _mm256_and_si256(_mm256_slli_epi16(top, 6), Words(0x3F00)));
    const __m256i before = _mm256_alignr_epi8(units, _mm256_permute2x128_si256(units, units, 0x08), 14);
    const __m256i shared = _mm256_and_si256(_mm256_slli_epi16(before, 4), Words(0x0030));
    const __m256i back = _mm256_or_si256(_mm256_and_si256(encoded.tail, Words(0xBF8F)), shared);
    encoded.tail = _mm256_blendv_epi8(_mm256_blendv_epi8(encoded.tail, front, high), back, low);
    encoded.two = _mm256_or_si256(encoded.two, _mm256_or_si256(high, low));
    return true;
}

/// Writes the bytes of the first @p kCount units, 8 or 16. @return how many.
template <std::size_t kCount>
KEL_AVX2_INLINE std::size_t PutBytes(const EncodedUnits& units, char* to) {
    const __m256i low = _mm256_unpacklo_epi16(units.lead, units.tail);  // units 0 to 3 and 8 to 11
    const __m256i high = _mm256_unpackhi_epi16(units.lead, units.tail); // units 4 to 7 and 12 to 15
    // One byte of the mask is the table's index of four units.
    const __m256i classes = _mm256_shuffle_epi32(_mm256_packs_epi16(units.ascii, units.two), _MM_SHUFFLE(3, 1, 2, 0));
    const auto mask = static_cast<unsigned>(_mm256_movemask_epi8(classes));
    PutGroup(_mm256_castsi256_si128(low), mask & 0xFF, to);
    PutGroup(_mm256_castsi256_si128(high), mask >> 8 & 0xFF, to + 12 - _mm_popcnt_u32(mask & 0xFF));
    if (kCount == 8)
        return 24 - static_cast<std::size_t>(_mm_popcnt_u32(mask & 0xFFFF));
    PutGroup(_mm256_extracti128_si256(low, 1), mask >> 16 & 0xFF, to + 24 - _mm_popcnt_u32(mask & 0xFFFF));
    PutGroup(_mm256_extracti128_si256(high, 1), mask >> 24, to + 36 - _mm_popcnt_u32(mask & 0xFFFFFF));
    return 48 - static_cast<std::size_t>(_mm_popcnt_u32(mask));
}

/// Encodes @p kCount units of the job, which are in @p units. @return false, without a change, for lone surrogates.
template <std::size_t kCount>
KEL_AVX2_INLINE bool EncodeBlock(__m256i units, EncodeJob& job) {
    EncodedUnits encoded = EncodeUnits(units);
    const __m256i surrogates = _mm256_cmpeq_epi16(_mm256_and_si256(units, Words(0xF800)), Words(0xD800));
    const bool pairs = _mm256_testz_si256(surrogates, surrogates) == 0;
    if (pairs && !EncodePairs(units, encoded))
        return false;
    job.to += PutBytes<kCount>(encoded, job.to);
    job.from += kCount;
    if (pairs && IsHighSurrogate(job.from[-1])) {
        // Its pair is the next block's.
        job.to -= 2;
        job.from -= 1;
    }
    return true;
}

KEL_AVX2_INLINE __m256i LoadUnits(const WCHAR* from) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
}

/// Copies ASCII as far as whole double blocks of it go.
KEL_AVX2_INLINE void NarrowRun(EncodeJob& job) {
    while (job.Left() >= 2 * kUnits && job.Room() >= 2 * kUnits) {
        const __m256i low = LoadUnits(job.from);
        const __m256i high = LoadUnits(job.from + kUnits);
        if (_mm256_testz_si256(_mm256_or_si256(low, high), Words(0xFF80)) == 0)
            return;
        const __m256i bytes = _mm256_permute4x64_epi64(_mm256_packus_epi16(low, high), _MM_SHUFFLE(3, 1, 2, 0));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(job.to), bytes);
        job.from += 2 * kUnits;
        job.to += 2 * kUnits;
    }
}

KEL_AVX2 void Encode(EncodeJob& job) {
    NarrowRun(job);
    while (job.Left() >= kUnits && job.Room() >= kEncodeRoom) {
        if (!EncodeBlock<kUnits>(LoadUnits(job.from), job))
            return;
    }
    // Half a block, as short texts are often not ASCII and short of a whole one.
    if (job.Left() >= kUnits / 2 && job.Room() >= kEncodeRoom)
        EncodeBlock<kUnits / 2>(_mm256_zextsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(job.from))),
                                job);
}

// --- decoding: 32 bytes a block

constexpr std::size_t kBytes = 32;
// Four groups of up to 8 units, each written with 8.
constexpr std::size_t kDecodeRoom = 32;

/// Moves to the front those of eight units whose bit in the index is set.
constexpr ShuffleTable MakeDecodeTable() {
    ShuffleTable table{};
    for (unsigned index = 0; index < 256; ++index) {
        std::size_t to = 0;
        table[index].fill(kNoByte);
        for (unsigned unit = 0; unit < 8; ++unit) {
            if ((index >> unit & 1) == 0)
                continue;
            table[index][to++] = static_cast<unsigned char>(2 * unit);
            table[index][to++] = static_cast<unsigned char>(2 * unit + 1);
        }
    }
    return table;
}

alignas(16) constexpr ShuffleTable kDecodeTable = MakeDecodeTable();

/// What can be wrong about a byte and the one before it. Each flag is a set of pairs that is a product of three sets:
/// of high and low halves of the first byte and of high halves of the second. So a pair has a flag exactly if all three
/// tables have it.
enum Flag : unsigned char {
    kTooShort = 1,      // a lead byte without a continuation
    kTooLong = 2,       // ASCII with a continuation
    kOverlong2 = 4,     // C0, C1
    kOverlong3 = 8,     // E0 with 80 to 9F
    kOverlong4 = 16,    // F0 with 80 to 8F; also F5 to FF with the same, which shares its low table with the next
    kSurrogate = 32,    // ED with A0 to BF
    kTooLarge = 64,     // F4 with 90 to BF, F5 to FF with any continuation
    kContinuation = 128 // two continuations: right or wrong, which the bytes before them decide
};

constexpr Shuffle MakeFirstHighTable() {
    Shuffle table{};
    for (unsigned high = 0; high < 16; ++high) {
        if (high < 8)
            table[high] = kTooLong;
        else if (high < 12)
            table[high] = kContinuation;
        else
            table[high] = kTooShort;
    }
    table[0xC] |= kOverlong2;
    table[0xE] |= kOverlong3 | kSurrogate;
    table[0xF] |= kOverlong4 | kTooLarge;
    return table;
}

constexpr Shuffle MakeFirstLowTable() {
    Shuffle table{};
    for (unsigned low = 0; low < 16; ++low) {
        table[low] = kTooShort | kTooLong | kContinuation;
        if (low < 2)
            table[low] |= kOverlong2;
        if (low == 0)
            table[low] |= kOverlong3;
        if (low == 0 || low > 4)
            table[low] |= kOverlong4;
        if (low == 0xD)
            table[low] |= kSurrogate;
        if (low >= 4)
            table[low] |= kTooLarge;
    }
    return table;
}

constexpr Shuffle MakeSecondHighTable() {
    Shuffle table{};
    for (unsigned high = 0; high < 16; ++high) {
        if (high < 8 || high > 11) {
            table[high] = kTooShort;
            continue;
        }
        table[high] = kTooLong | kOverlong2 | kContinuation;
        table[high] |= high < 10 ? kOverlong3 : kSurrogate;
        table[high] |= high == 8 ? kOverlong4 : kTooLarge;
    }
    return table;
}

alignas(16) constexpr Shuffle kFirstHigh = MakeFirstHighTable();
alignas(16) constexpr Shuffle kFirstLow = MakeFirstLowTable();
alignas(16) constexpr Shuffle kSecondHigh = MakeSecondHighTable();

/// A block, and the bytes one, two and three places before each of its bytes.
struct Window {
    __m256i at;
    __m256i before1;
    __m256i before2;
    __m256i before3;
};

KEL_AVX2_INLINE Window Look(__m256i previous, __m256i block) {
    const __m256i between = _mm256_permute2x128_si256(previous, block, 0x21);
    return {block, _mm256_alignr_epi8(block, between, 15), _mm256_alignr_epi8(block, between, 14),
            _mm256_alignr_epi8(block, between, 13)};
}

KEL_AVX2_INLINE bool WellFormed(const Window& window) {
    const __m256i half = Bytes(0x0F);
    const __m256i flags = _mm256_and_si256(
        _mm256_and_si256(LookUp(kFirstHigh.data(), _mm256_and_si256(_mm256_srli_epi16(window.before1, 4), half)),
                         LookUp(kFirstLow.data(), _mm256_and_si256(window.before1, half))),
        LookUp(kSecondHigh.data(), _mm256_and_si256(_mm256_srli_epi16(window.at, 4), half)));
    // The top bit where a third or fourth byte is due: just there, two continuations in a row are right.
    const __m256i due = _mm256_or_si256(_mm256_subs_epu8(window.before2, Bytes(0xE0 - 0x80)),
                                        _mm256_subs_epu8(window.before3, Bytes(0xF0 - 0x80)));
    const __m256i wrong = _mm256_xor_si256(flags, _mm256_and_si256(due, Bytes(0x80)));
    return _mm256_testz_si256(wrong, wrong) != 0;
}

/// The unit that ends at each byte, as low and high bytes. Where none ends it is of no use.
struct UnitBytes {
    __m256i low;
    __m256i high;
};

/// Units of sequences of one to three bytes.
KEL_AVX2_INLINE UnitBytes DecodeShort(const Window& window) {
    const __m256i tail = _mm256_or_si256(_mm256_and_si256(window.at, Bytes(0x3F)),
                                         _mm256_and_si256(_mm256_slli_epi16(window.before1, 6), Bytes(0xC0)));
    const __m256i middle = _mm256_and_si256(_mm256_srli_epi16(window.before1, 2), Bytes(0x0F));
    const __m256i top = _mm256_and_si256(_mm256_slli_epi16(window.before2, 4), Bytes(0xF0));
    // The byte two places before is a lead only behind a continuation.
    const __m256i third = _mm256_cmpgt_epi8(Bytes(0xC0), window.before1);
    const __m256i high = _mm256_or_si256(middle, _mm256_and_si256(top, third));
    const __m256i ascii = _mm256_cmpgt_epi8(Bytes(0), window.at);
    return {_mm256_blendv_epi8(window.at, tail, window.at), _mm256_and_si256(high, ascii)};
}

/// All ones for bytes from @p least on.
KEL_AVX2_INLINE __m256i AtLeast(__m256i bytes, unsigned char least) {
    return _mm256_cmpeq_epi8(_mm256_max_epu8(bytes, Bytes(least)), bytes);
}

/// Puts in the units of sequences of four bytes: the low surrogate ends at the fourth byte, and the high one at the
/// third, as all of its bits are known there. @return where high surrogates end.
KEL_AVX2_INLINE __m256i DecodeLong(const Window& window, UnitBytes& units) {
    const __m256i fourth = AtLeast(window.before3, 0xF0);
    const __m256i lowHalf = _mm256_and_si256(_mm256_srli_epi16(window.before1, 2), Bytes(0x03));
    units.high = _mm256_blendv_epi8(units.high, _mm256_or_si256(lowHalf, Bytes(0xDC)), fourth);

    const __m256i third = AtLeast(window.before2, 0xF0);
    // Bits 20 to 16 of the code point, less one as UTF-16 stores them.
    const __m256i plane =
        _mm256_sub_epi8(_mm256_or_si256(_mm256_and_si256(_mm256_slli_epi16(window.before2, 2), Bytes(0x1C)),
                                        _mm256_and_si256(_mm256_srli_epi16(window.before1, 4), Bytes(0x03))),
                        Bytes(1));
    const __m256i high = _mm256_or_si256(_mm256_and_si256(_mm256_srli_epi16(plane, 2), Bytes(0x03)), Bytes(0xD8));
    const __m256i low =
        _mm256_or_si256(_mm256_or_si256(_mm256_and_si256(_mm256_slli_epi16(plane, 6), Bytes(0xC0)),
                                        _mm256_and_si256(_mm256_slli_epi16(window.before1, 2), Bytes(0x3C))),
                        _mm256_and_si256(_mm256_srli_epi16(window.at, 4), Bytes(0x03)));
    units.high = _mm256_blendv_epi8(units.high, high, third);
    units.low = _mm256_blendv_epi8(units.low, low, third);
    return third;
}

KEL_AVX2_INLINE WCHAR* PutUnits(__m128i units, unsigned mask, WCHAR* to) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_shuffle_epi8(units, At(kDecodeTable, mask)));
    return to + _mm_popcnt_u32(mask);
}

/// Writes the units whose bit in @p mask is set. @return the end of what is written.
KEL_AVX2_INLINE WCHAR* Put(const UnitBytes& units, unsigned mask, WCHAR* to) {
    const __m256i even = _mm256_unpacklo_epi8(units.low, units.high); // units 0 to 7 and 16 to 23
    const __m256i odd = _mm256_unpackhi_epi8(units.low, units.high);  // units 8 to 15 and 24 to 31
    to = PutUnits(_mm256_castsi256_si128(even), mask & 0xFF, to);
    to = PutUnits(_mm256_castsi256_si128(odd), mask >> 8 & 0xFF, to);
    to = PutUnits(_mm256_extracti128_si256(even, 1), mask >> 16 & 0xFF, to);
    return PutUnits(_mm256_extracti128_si256(odd, 1), mask >> 24, to);
}

/// Whether a sequence begins in a well-formed block and goes on behind it.
KEL_AVX2_INLINE bool IsPending(__m256i block) {
    // The most that the last bytes may be, the very last in front.
    const __m256i most = _mm256_set_epi64x(static_cast<long long>(0xBFDFEFFFFFFFFFFF), -1, -1, -1);
    const __m256i over = _mm256_subs_epu8(block, most);
    return _mm256_testz_si256(over, over) == 0;
}

/// Takes back the sequence that goes on behind the last block, and the high surrogate that the third byte of four has
/// given already.
void TakeBack(DecodeJob& job) {
    const auto before = [&](int count) { return static_cast<unsigned char>(job.from[-count]); };
    if (before(1) >= 0xC0) {
        job.from -= 1;
    } else if (before(2) >= 0xE0) {
        job.from -= 2;
    } else {
        job.from -= 3;
        --job.to;
    }
}

/// Copies ASCII as far as whole blocks of it go.
KEL_AVX2_INLINE void WidenRun(DecodeJob& job) {
    while (job.Left() >= kBytes && job.Room() >= kBytes) {
        const __m256i block = LoadBytes(job.from);
        if (_mm256_movemask_epi8(block) != 0)
            return;
        auto* to = reinterpret_cast<__m256i*>(job.to);
        _mm256_storeu_si256(to, _mm256_cvtepu8_epi16(_mm256_castsi256_si128(block)));
        _mm256_storeu_si256(to + 1, _mm256_cvtepu8_epi16(_mm256_extracti128_si256(block, 1)));
        job.from += kBytes;
        job.to += kBytes;
    }
}

/// Decodes one well-formed block. @return whether its last sequence goes on behind it.
KEL_AVX2_INLINE bool DecodeBlock(const Window& window, DecodeJob& job) {
    UnitBytes units = DecodeShort(window);
    const auto inside = static_cast<unsigned>(_mm256_movemask_epi8(_mm256_cmpgt_epi8(Bytes(0xC0), window.at)));
    const bool pending = IsPending(window.at);
    // A character ends where the next byte is in none.
    unsigned ends = ~(inside >> 1 | static_cast<unsigned>(pending) << 31);
    const __m256i rare = AtLeast(_mm256_max_epu8(window.before2, window.before3), 0xF0);
    if (_mm256_testz_si256(rare, rare) == 0)
        ends |= static_cast<unsigned>(_mm256_movemask_epi8(DecodeLong(window, units)));
    job.to = Put(units, ends, job.to);
    job.from += kBytes;
    return pending;
}

KEL_AVX2 void DecodeBlocks(DecodeJob& job) {
    // A job stands at a character's front, so nothing before it matters.
    __m256i previous = _mm256_setzero_si256();
    bool pending = false;
    WidenRun(job);
    while (job.Left() >= kBytes && job.Room() >= kDecodeRoom) {
        const __m256i block = LoadBytes(job.from);
        if (!pending && _mm256_movemask_epi8(block) == 0) {
            WidenRun(job);
            previous = _mm256_setzero_si256();
            continue;
        }
        const Window window = Look(previous, block);
        if (!WellFormed(window))
            break;
        pending = DecodeBlock(window, job);
        previous = block;
    }
    if (pending)
        TakeBack(job);
}

/// Decodes the last bytes, fewer than a block, with NULs behind them; not if they are malformed or the result has no
/// room.
void DecodePadded(DecodeJob& job) {
    const std::size_t left = job.Left();
    if (left == 0 || left >= kBytes)
        return;
    char from[kBytes] = {};
    WCHAR to[kDecodeRoom];
    std::memcpy(from, job.from, left);
    DecodeJob padded = {from, from + kBytes, to, to + kDecodeRoom, job.strict};
    DecodeBlocks(padded);
    if (padded.from != padded.fromEnd)
        return;
    const std::size_t size = static_cast<std::size_t>(padded.to - to) - (kBytes - left);
    if (size > job.Room())
        return;
    std::memcpy(job.to, to, size * sizeof(WCHAR));
    job.from = job.fromEnd;
    job.to += size;
}

void Decode(DecodeJob& job) {
    DecodeBlocks(job);
    DecodePadded(job);
}

constexpr Utf8Kernel kKernel = {Encode, Decode};

} // namespace

const Utf8Kernel* BestUtf8Kernel() {
    return HasAvx2() ? &kKernel : nullptr;
}

} // namespace kel::platform

#else

namespace kel::platform {
const Utf8Kernel* BestUtf8Kernel() {
    return nullptr;
}
} // namespace kel::platform

#endif
