#pragma once

/// @file
/// What the programs of scripts/compare-windows share: numbers from seeds, a picture to draw on, the loop over cases.

#include <kelcore/platform.h>

#include <cstdint>

namespace kel::compare {

/// A small generator of numbers, the same on every system.
class Random {
public:
    explicit Random(std::uint32_t seed);

    std::uint32_t Next();
    std::uint32_t Below(std::uint32_t bound) { return Next() % bound; }
    int Between(int least, int most) {
        return least + static_cast<int>(Below(static_cast<std::uint32_t>(most - least + 1)));
    }
    COLORREF Colour() { return Next() & 0xFFFFFF; }
    /// A depth of DIBs.
    int Depth();

private:
    std::uint64_t m_state;
};

/// A brush of a pattern of 8 x 8 pixels in two colours.
HBRUSH PatternBrush(Random& random);

/// Pixels of 32 bits, rows from the top, in a memory context; black at first.
class Sheet {
public:
    Sheet(int width, int height);
    Sheet(const Sheet&) = delete;
    Sheet& operator=(const Sheet&) = delete;
    ~Sheet();

    HDC Dc() const { return m_dc; }
    const BITMAPINFO* Info() const { return &m_info; }
    const DWORD* Pixels() const { return m_pixels; }
    DWORD* Pixels() { return m_pixels; }
    /// One pixel's colour; what operations make of the fourth byte is nobody's business.
    DWORD At(int x, int y) const { return m_pixels[y * m_info.bmiHeader.biWidth + x] & 0xFFFFFF; }

private:
    HDC m_dc;
    BITMAPINFO m_info{};
    HBITMAP m_bitmap;
    DWORD* m_pixels;
};

/// Runs cases as the command line `[COUNT [FIRST]] [--dump]` tells, else @p count of them from 0.
/// @param run prints the case of a number; with @p dump it prints the pixels as well.
/// @return the program's exit code.
int RunCases(int argc, char** argv, int count, void (*run)(int number, bool dump));

} // namespace kel::compare
