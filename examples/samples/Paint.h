#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

/// Red, green, blue and alpha from 0 to 1; the colours are not premultiplied.
struct Colour {
    float red = 0;
    float green = 0;
    float blue = 0;
    float alpha = 1;
};

/// 0xRRGGBB, opaque.
constexpr Colour Rgb(unsigned value) {
    return {float(value >> 16 & 0xFF) / 255, float(value >> 8 & 0xFF) / 255, float(value & 0xFF) / 255, 1};
}

/// @p from for a share of 0, @p to for 1; alpha is mixed as well.
Colour Mix(const Colour& from, const Colour& to, float share);

/// Multiplies the three colours.
Colour Lit(const Colour& colour, float light);

/// Adds light of a colour.
Colour Glow(const Colour& colour, const Colour& light, float strength);

/// 0 up to @p from, 1 from @p to on, a soft step between; @p from may lie above @p to.
float Smooth(float from, float to, float value);

/// A number from 0 to 1 that belongs to a place in a grid.
float Hash(int x, int y, int seed);

/// Smooth noise from 0 to 1 that changes over a distance of 1.
float Noise(float x, float y, int seed);

/// @p octaves of noise, each at twice the fineness and half the weight of the one before.
float Fractal(float x, float y, int octaves, int seed);

/// A picture in memory.
struct Canvas {
    int width;
    int height;
    std::vector<Colour> pixels; ///< rows from the top

    const Colour& At(int x, int y) const { return pixels[std::size_t(y) * std::size_t(width) + std::size_t(x)]; }
    bool HasAlpha() const;
};

/// A picture whose colours a function of the place tells: y goes from 0 at the top to 1, x from 0 in the same unit.
template <class ColourAt>
Canvas Painted(int width, int height, ColourAt colourAt) {
    Canvas canvas = {width, height, {}};
    canvas.pixels.reserve(std::size_t(width) * std::size_t(height));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            canvas.pixels.push_back(colourAt((float(x) + 0.5F) / float(height), (float(y) + 0.5F) / float(height)));
    }
    return canvas;
}
