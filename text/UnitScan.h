#pragma once

#include <cstddef>

/// Scans over 16-bit units that the compiler turns into vector code: whole blocks are counted without a branch, and
/// only the block that holds the answer is looked at unit by unit.
namespace kel::UnitScan {

inline constexpr std::size_t kBlock = 32;

/// How many of the kBlock units at @p units are @p unit.
inline std::size_t CountInBlock(const unsigned short* units, unsigned short unit) {
    unsigned short count = 0;
    for (std::size_t i = 0; i != kBlock; ++i)
        count = static_cast<unsigned short>(count + (units[i] == unit));
    return count;
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
