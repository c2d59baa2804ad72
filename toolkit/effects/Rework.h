#pragma once

#include "toolkit/PackedDib.h"

#include <cstdint>
#include <cstring>
#include <functional>

/// @file
/// How effects replace a picture. Those that make new colours work on wide pictures: 24 or 32 bits a pixel, or 8 bits
/// over a colour table that is grey n at entry n. All other pictures are widened first: those of 1, 4 and 8 bits whose
/// colour table is grey throughout to 8 bits, all others to 24.
namespace kel::toolkit::effects {

/// Writes the pixels of the new picture, which are zero, from those of the old one.
using Maker = std::function<void(const DibLock& from, const DibLock& to)>;

/// A wide picture with the colours of @p picture, which may be wide itself; pixels without an entry in the colour table
/// are black. @return an empty object if there is no memory.
PackedDib Widened(const PackedDib& picture);

/// Replaces the picture by a wide one of that size; both that @p make is given are wide and of one depth.
/// @return S_OK; E_OUTOFMEMORY, and the picture is as it was.
HRESULT Remake(PackedDib& picture, std::int64_t width, std::int64_t height, const Maker& make);

/// Replaces the picture by one of that size with the same depth and colour table. @return as Remake.
HRESULT Move(PackedDib& picture, std::int64_t width, std::int64_t height, const Maker& make);

/// Pixels of whole bytes.
template <int Bytes>
struct WholePixels {
    static std::uint32_t Load(const BYTE* row, int x) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, row + std::size_t{Bytes} * static_cast<std::size_t>(x), Bytes);
        return pixel;
    }
    static void Store(BYTE* row, int x, std::uint32_t pixel) {
        std::memcpy(row + std::size_t{Bytes} * static_cast<std::size_t>(x), &pixel, Bytes);
    }
};

/// Pixels of 1 or 4 bits, the first in the top bits of its byte.
template <int Bits>
struct PartPixels {
    static constexpr unsigned kPerByte = 8 / Bits;
    static constexpr unsigned kMask = (1U << Bits) - 1;

    static unsigned ShiftOf(unsigned x) { return (kPerByte - 1 - x % kPerByte) * Bits; }

    static std::uint32_t Load(const BYTE* row, int x) {
        const auto at = static_cast<unsigned>(x);
        return row[at / kPerByte] >> ShiftOf(at) & kMask;
    }
    static void Store(BYTE* row, int x, std::uint32_t pixel) {
        const auto at = static_cast<unsigned>(x);
        BYTE& byte = row[at / kPerByte];
        byte = static_cast<BYTE>((byte & ~(kMask << ShiftOf(at))) | pixel << ShiftOf(at));
    }
};

/// Calls @p work with the one of these that loads and stores pixels of that depth.
template <class Work>
void WithPixels(int depth, Work work) {
    switch (depth) {
    case 1:
        return work(PartPixels<1>());
    case 4:
        return work(PartPixels<4>());
    case 8:
        return work(WholePixels<1>());
    case 16:
        return work(WholePixels<2>());
    case 24:
        return work(WholePixels<3>());
    default:
        return work(WholePixels<4>());
    }
}

} // namespace kel::toolkit::effects
