#pragma once

#include "tests/toolkit/Toolkit.h"

#include <array>
#include <cmath>

/// Picture files made by the encoders of the libraries, with samples that follow from their place.
namespace kel::test {

enum class Kind { Grey, WhiteFirst, GreyAlpha, Palette, Rgb, RgbExtra, Rgba, RgbaMultiplied, Cmyk, GreyAlphaExtra };

struct Raster {
    Kind kind;
    int bits; ///< of a sample
    int width = 37;
    int height = 21;

    int Channels() const;
    int Sample(int x, int y, int channel) const;
    /// Samples of one row, packed from the highest bit on; those of 16 bits in the machine's order.
    Bytes Row(int y) const;
    /// Those of one channel.
    Bytes Row(int y, int channel) const;
};

/// Red, green, blue, alpha.
using Colour = std::array<int, 4>;
Colour PaletteColour(int index);
/// What a pixel is, to 8 bits.
Colour ColourAt(const Raster& raster, int x, int y);

struct PngOptions {
    bool interlaced = false;
    bool transparent = false; ///< sample 1 (index 1) is transparent
    int orientation = 0;
};
Bytes PngFile(const Raster& raster, const PngOptions& options);

struct TiffOptions {
    int compression = 1;
    bool planes = false;
    bool tiles = false;
    int orientation = 1;
    int stripRows = 8;
};
Bytes TiffFile(const Raster& raster, const TiffOptions& options);

/// Alpha is odd everywhere. @param animated one picture, 2 columns and 4 rows into its canvas
Bytes WebPFile(const Raster& raster, bool animated, int orientation);

/// @param left of the picture on its canvas, which is that much wider
Bytes GifFile(const Raster& raster, bool interlaced, bool transparent, int left);

/// An EXIF block, little- or big-endian.
Bytes ExifBlock(int orientation, bool big);

/// A packed bitmap as the toolkit gives it.
struct Decoded {
    Bytes dib;

    const BITMAPINFOHEADER& Header() const { return *reinterpret_cast<const BITMAPINFOHEADER*>(dib.data()); }
    /// -1 as alpha below depth 32.
    Colour At(int x, int y) const;
};

} // namespace kel::test
