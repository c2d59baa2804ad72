#pragma once

/// @file
/// What the drawing cases draw on and from: a bitmap of any kind in a memory context, filled from a seed.

#include "tests/compare/Cases.h"

#include <string>
#include <vector>

namespace kel::compare {

class Canvas {
public:
    /// A DIB section of any depth or a device-dependent bitmap of one bit or of the screen's depth; Bits() and Info()
    /// describe it as a DIB whatever it is.
    static Canvas Any(Random& random);

    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;
    ~Canvas();

    HDC Dc() const { return m_dc; }
    HBITMAP Bitmap() const { return m_bitmap; }
    int Width() const { return m_width; }
    int Height() const { return m_height; }
    int Depth() const { return m_depth; }
    bool IsDeviceDependent() const { return m_deviceDependent; }
    bool IsTopDown() const { return m_topDown; }
    const void* Bits() const { return m_dib.data(); }
    const BITMAPINFO* Info() const { return reinterpret_cast<const BITMAPINFO*>(m_info.data()); }
    /// Such as "24", "8v" (rows top-down), "16f" (5-6-5, or 8-8-8, by bit fields) or "1d" (device-dependent).
    std::string Name() const;

    /// Whether its colour table does not go from black to white.
    bool HasOddTable() const { return m_oddTable; }

    /// The colour of one of its pixels.
    COLORREF AnyColour(Random& random) const;

    /// Makes the colours of a 32-bit DIB section no larger than its alpha.
    void Premultiply();

    /// Lets Info() have indices into the default palette in place of a table. @return how its colours are meant.
    UINT UsePaletteIndices(Random& random);
    /// Whether some of them are beyond what the depth can number.
    bool HasFarIndices() const { return m_farIndices; }

    /// Selects a brush of any style. @return what it is, such as " hatch3".
    std::string ChooseBrush(Random& random);

    /// Whether the brush is a hatch or a pattern.
    bool BrushRepeats() const { return m_repeats; }

    /// Takes the bitmap out of its context for a while.
    void Release();
    void Select();

    /// CRC-32 of the pixels as they are stored; of device-dependent bitmaps as 24-bit rows.
    /// @param coloursAlone of pixels of 16 and 32 bits without those bits that are no part of the colour.
    DWORD Checksum(bool coloursAlone) const;
    /// CRC-32 of rows as GetDIBits gives them in another depth, with its result.
    DWORD ChecksumAs(int depth, UINT start, UINT lines) const;
    /// Prints the pixels as colours.
    void Dump() const;

private:
    Canvas(Random& random, int depth, bool deviceDependent);

    void MakeInfo(Random& random);
    void Fill(Random& random);

    HDC m_dc = nullptr;
    HBITMAP m_bitmap = nullptr;
    HGDIOBJ m_before = nullptr;
    HBRUSH m_brush = nullptr;
    int m_width;
    int m_height;
    int m_depth;
    bool m_deviceDependent;
    bool m_topDown;
    bool m_bitFields;
    bool m_oddTable = false;
    bool m_repeats = false;
    bool m_farIndices = false;
    void* m_pixels = nullptr;          // of a DIB section
    std::vector<unsigned char> m_dib;  // the pixels at the start
    std::vector<unsigned char> m_info; // header and colour table of m_dib
};

} // namespace kel::compare
