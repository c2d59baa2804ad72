#include "Paint.h"

#include <cmath>
#include <cstdint>

Colour Mix(const Colour& from, const Colour& to, float share) {
    const auto mixed = [share](float a, float b) { return a + (b - a) * share; };
    return {mixed(from.red, to.red), mixed(from.green, to.green), mixed(from.blue, to.blue),
            mixed(from.alpha, to.alpha)};
}

Colour Lit(const Colour& colour, float light) {
    return {colour.red * light, colour.green * light, colour.blue * light, colour.alpha};
}

Colour Glow(const Colour& colour, const Colour& light, float strength) {
    return {colour.red + light.red * strength, colour.green + light.green * strength,
            colour.blue + light.blue * strength, colour.alpha};
}

float Smooth(float from, float to, float value) {
    const float t = std::clamp((value - from) / (to - from), 0.0F, 1.0F);
    return t * t * (3 - 2 * t);
}

float Hash(int x, int y, int seed) {
    std::uint32_t bits =
        std::uint32_t(x) * 0x9E3779B1U ^ std::uint32_t(y) * 0x85EBCA77U ^ std::uint32_t(seed) * 0xC2B2AE3DU;
    bits = (bits ^ bits >> 15) * 0x2C1B3C6DU;
    bits = (bits ^ bits >> 12) * 0x297A2D39U;
    return float((bits ^ bits >> 15) >> 8) / float(1 << 24);
}

/// As std::floor, which is a call into a library on older processors.
static int Floor(float value) {
    const int cut = int(value);
    return cut - (value < float(cut) ? 1 : 0);
}

float Noise(float x, float y, int seed) {
    const int left = Floor(x);
    const int top = Floor(y);
    const float across = Smooth(0, 1, x - float(left));
    const float down = Smooth(0, 1, y - float(top));
    const auto row = [&](int dy) {
        const float a = Hash(left, top + dy, seed);
        return a + (Hash(left + 1, top + dy, seed) - a) * across;
    };
    const float upper = row(0);
    return upper + (row(1) - upper) * down;
}

float Fractal(float x, float y, int octaves, int seed) {
    float sum = 0;
    float weights = 0;
    float weight = 1;
    for (int octave = 0; octave < octaves; ++octave) {
        sum += weight * Noise(x, y, seed + octave);
        weights += weight;
        weight /= 2;
        x *= 2;
        y *= 2;
    }
    return sum / weights;
}

bool Canvas::HasAlpha() const {
    return std::any_of(pixels.begin(), pixels.end(), [](const Colour& pixel) { return pixel.alpha < 1; });
}
