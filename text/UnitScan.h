#pragma once

#include <bit>
#include <cstddef>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// Scans over 16-bit units, several units at a step.
namespace kel::UnitScan {

inline constexpr std::size_t kStep = 8;
inline constexpr std::size_t kBlock = 32;

/// Which of the kStep units at @p units are @p unit, the first one in the lowest bit.
inline unsigned MatchStep(const unsigned short* units, unsigned short unit) {
#if defined(__SSE2__)
    const __m128i step = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units));
    const __m128i equal = _mm_cmpeq_epi16(step, _mm_set1_epi16(static_cast<short>(unit)));
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(equal, _mm_setzero_si128())));
#else
    unsigned matches = 0;
    for (std::size_t i = 0; i != kStep; ++i)
        matches |= static_cast<unsigned>(units[i] == unit) << i;
    return matches;
#endif
}

/// How many of the kBlock units at @p units are @p unit; the compiler makes vector code of it.
inline std::size_t CountInBlock(const unsigned short* units, unsigned short unit) {
    unsigned short count = 0;
    for (std::size_t i = 0; i != kBlock; ++i)
        count = static_cast<unsigned short>(count + (units[i] == unit));
    return count;
}

/// The first occurrence of @p unit, @p end if there is none.
inline const unsigned short* FindFirst(const unsigned short* begin, const unsigned short* end, unsigned short unit) {
    const bool steps = static_cast<std::size_t>(end - begin) >= kStep;
    for (; static_cast<std::size_t>(end - begin) >= kStep; begin += kStep)
        if (const unsigned matches = MatchStep(begin, unit); matches != 0)
            return begin + std::countr_zero(matches);
    if (steps) {
        // The last step may overlap units that are known to be others.
        const unsigned matches = MatchStep(end - kStep, unit);
        return matches == 0 ? end : end - kStep + std::countr_zero(matches);
    }
    while (begin != end && *begin != unit)
        ++begin;
    return begin;
}

/// The last occurrence of @p unit, null if there is none.
inline const unsigned short* FindLast(const unsigned short* begin, const unsigned short* end, unsigned short unit) {
    const bool steps = static_cast<std::size_t>(end - begin) >= kStep;
    for (; static_cast<std::size_t>(end - begin) >= kStep; end -= kStep)
        if (const unsigned matches = MatchStep(end - kStep, unit); matches != 0)
            return end - kStep + (std::bit_width(matches) - 1);
    if (steps) {
        const unsigned matches = MatchStep(begin, unit);
        return matches == 0 ? nullptr : begin + (std::bit_width(matches) - 1);
    }
    while (end != begin)
        if (*--end == unit)
            return end;
    return nullptr;
}

/// The @p nth (from 1) occurrence of @p unit from the front, @p end if there are fewer.
inline const unsigned short* FindNth(const unsigned short* begin, const unsigned short* end, unsigned short unit,
                                     std::size_t nth) {
    for (; static_cast<std::size_t>(end - begin) >= kBlock; begin += kBlock) {
        const std::size_t count = CountInBlock(begin, unit);
        if (count >= nth)
            break;
        nth -= count;
    }
    for (; begin != end; ++begin)
        if (*begin == unit && --nth == 0)
            return begin;
    return end;
}

/// The @p nth (from 1) occurrence of @p unit from the back, null if there are fewer.
inline const unsigned short* FindNthLast(const unsigned short* begin, const unsigned short* end, unsigned short unit,
                                         std::size_t nth) {
    for (; static_cast<std::size_t>(end - begin) >= kBlock; end -= kBlock) {
        const std::size_t count = CountInBlock(end - kBlock, unit);
        if (count >= nth)
            break;
        nth -= count;
    }
    while (end != begin)
        if (*--end == unit && --nth == 0)
            return end;
    return nullptr;
}

} // namespace kel::UnitScan
