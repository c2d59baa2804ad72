#pragma once

#include <kelcore/platform.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

/// @file
/// Single pixels of every depth.
namespace kel::toolkit {

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

/// Turns a row of pixels round.
template <class Pixels>
void MirrorRow(Pixels pixels, BYTE* row, int width) {
    for (int left = 0, right = width - 1; left < right; ++left, --right) {
        const std::uint32_t pixel = pixels.Load(row, left);
        pixels.Store(row, left, pixels.Load(row, right));
        pixels.Store(row, right, pixel);
    }
}

/// Calls @p work with the kind above that loads and stores pixels of that depth.
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

} // namespace kel::toolkit
