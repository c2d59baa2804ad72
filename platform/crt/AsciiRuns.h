#pragma once

#include <kelcore/platform/base.h>

#include <bit>
#include <cstddef>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// Copying runs of ASCII between units and bytes, by the vectors that every processor of the target has. All code pages
/// share it: most texts are ASCII from end to end, short ones above all.
///
/// Each function copies the ASCII elements at the front of @p count elements, and may write anything behind them in the
/// room of @p count elements. @return how many it copied: all, or the index of the first that is not ASCII.
namespace kel::platform {

#if defined(__SSE2__)

namespace ascii {

// Elements of one step.
constexpr std::size_t kStep = 16;

/// Narrows 16 units. @return a mask of those that are not ASCII.
inline unsigned Narrow16(const WCHAR* from, char* to) {
    const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
    const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + 8));
    // Saturation makes 0xFF of units past 0xFF and 0 of those past 0x7FFF, hence the test before it.
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_packus_epi16(low, high));
    const __m128i other = _mm_set1_epi16(static_cast<short>(0xFF80));
    const __m128i zero = _mm_setzero_si128();
    const __m128i plain = _mm_packs_epi16(_mm_cmpeq_epi16(_mm_and_si128(low, other), zero),
                                          _mm_cmpeq_epi16(_mm_and_si128(high, other), zero));
    return static_cast<unsigned>(_mm_movemask_epi8(plain)) ^ 0xFFFF;
}

inline unsigned Narrow8(const WCHAR* from, char* to) {
    const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(to), _mm_packus_epi16(units, units));
    const __m128i other = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xFF80)));
    const __m128i plain = _mm_cmpeq_epi16(other, _mm_setzero_si128());
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(plain, plain)) & 0xFF) ^ 0xFF;
}

/// Widens 16 bytes. @return a mask of those that are not ASCII.
inline unsigned Widen16(const char* from, WCHAR* to) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
    const __m128i zero = _mm_setzero_si128();
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_unpacklo_epi8(bytes, zero));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to + 8), _mm_unpackhi_epi8(bytes, zero));
    return static_cast<unsigned>(_mm_movemask_epi8(bytes));
}

inline unsigned Widen8(const char* from, WCHAR* to) {
    const __m128i bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(from));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_unpacklo_epi8(bytes, _mm_setzero_si128()));
    return static_cast<unsigned>(_mm_movemask_epi8(bytes)) & 0xFF;
}

/// Runs over @p count elements by steps of 16 and 8. What is left at the end is done by a step that begins earlier and
/// repeats what is already there; fewer than 8 elements are done one by one.
template <class From, class To, unsigned (*Step16)(const From*, To*), unsigned (*Step8)(const From*, To*)>
inline std::size_t Run(const From* from, std::size_t count, To* to) {
    std::size_t done = 0;
    for (; count - done >= 16; done += 16) {
        if (const unsigned others = Step16(from + done, to + done); others != 0)
            return done + static_cast<std::size_t>(std::countr_zero(others));
    }
    if (count - done > 8 && count >= 16) {
        const unsigned others = Step16(from + count - 16, to + count - 16);
        return others == 0 ? count : count - 16 + static_cast<std::size_t>(std::countr_zero(others));
    }
    if (count - done >= 8) {
        if (const unsigned others = Step8(from + done, to + done); others != 0)
            return done + static_cast<std::size_t>(std::countr_zero(others));
        done += 8;
    }
    if (done < count && count >= 8) {
        const unsigned others = Step8(from + count - 8, to + count - 8);
        return others == 0 ? count : count - 8 + static_cast<std::size_t>(std::countr_zero(others));
    }
    for (; done < count && static_cast<WCHAR>(from[done]) < 0x80; ++done)
        to[done] = static_cast<To>(from[done]);
    return done;
}

} // namespace ascii

inline std::size_t NarrowAscii(const WCHAR* from, std::size_t count, char* to) {
    return ascii::Run<WCHAR, char, ascii::Narrow16, ascii::Narrow8>(from, count, to);
}

inline std::size_t WidenAscii(const char* from, std::size_t count, WCHAR* to) {
    return ascii::Run<char, WCHAR, ascii::Widen16, ascii::Widen8>(from, count, to);
}

#else

inline std::size_t NarrowAscii(const WCHAR* from, std::size_t count, char* to) {
    std::size_t done = 0;
    for (std::uint64_t four; count - done >= 4; done += 4) {
        std::memcpy(&four, from + done, sizeof four);
        if ((four & 0xFF80FF80FF80FF80u) != 0)
            break;
        for (std::size_t i = 0; i < 4; ++i)
            to[done + i] = static_cast<char>(from[done + i]);
    }
    for (; done < count && from[done] < 0x80; ++done)
        to[done] = static_cast<char>(from[done]);
    return done;
}

inline std::size_t WidenAscii(const char* from, std::size_t count, WCHAR* to) {
    std::size_t done = 0;
    for (std::uint64_t eight; count - done >= 8; done += 8) {
        std::memcpy(&eight, from + done, sizeof eight);
        if ((eight & 0x8080808080808080u) != 0)
            break;
        for (std::size_t i = 0; i < 8; ++i)
            to[done + i] = static_cast<unsigned char>(from[done + i]);
    }
    for (; done < count && static_cast<unsigned char>(from[done]) < 0x80; ++done)
        to[done] = static_cast<unsigned char>(from[done]);
    return done;
}

#endif

/// The same over the common length of a job's source and room, moving its fronts.
template <class AnyJob, class Run>
inline void MoveAscii(AnyJob& job, Run run) {
    const std::size_t count = job.Left() < job.Room() ? job.Left() : job.Room();
    const std::size_t done = run(job.from, count, job.to);
    job.from += done;
    job.to += done;
}

} // namespace kel::platform
