#include "Scenes.h"

#include <cmath>

namespace {

constexpr int kWidth = 720;
constexpr int kHeight = 480;
constexpr float kEdge = 0.0012F; // over which an outline fades

/// The share of a pixel that lies below an outline.
float Below(float outline, float y) {
    return Smooth(outline - kEdge, outline + kEdge, y);
}

float Jagged(float x, float base, float height, float fineness, int seed) {
    return base - height * (Fractal(x * fineness, 0.5F, 6, seed) - 0.5F) * 2;
}

/// How high the firs on a ridge reach above it: a pointed tree in each slot, its sides in steps like branches.
float Firs(float x, float slot, float height, int seed) {
    float highest = 0;
    for (int neighbour = -1; neighbour <= 1; ++neighbour) {
        const int index = int(std::floor(x / slot)) + neighbour;
        const float middle = (float(index) + 0.2F + 0.6F * Hash(index, 1, seed)) * slot;
        const float tall = height * (0.35F + 0.65F * Hash(index, 2, seed));
        const float away = std::abs(x - middle) / slot;
        const float branch = 0.12F * std::abs(std::sin(away * 40));
        highest = std::max(highest, tall * (1 - away * 1.5F - branch));
    }
    return highest;
}

float Stars(float x, float y, float fineness, int seed) {
    const int column = int(std::floor(x * fineness));
    const int row = int(std::floor(y * fineness));
    const float dx = x * fineness - float(column) - 0.2F - 0.6F * Hash(column, row, seed);
    const float dy = y * fineness - float(row) - 0.2F - 0.6F * Hash(column, row, seed + 1);
    const float bright = Hash(column, row, seed + 2);
    return Smooth(0.10F, 0.02F, std::hypot(dx, dy)) * Smooth(0.72F, 1.0F, bright);
}

Colour SunriseSky(float x, float y) {
    Colour sky = Mix(Rgb(0x3E6AA5), Rgb(0xF2B88C), Smooth(0.0F, 0.46F, y));
    sky = Mix(sky, Rgb(0xFFE2AE), Smooth(0.34F, 0.62F, y));
    const float sun = std::hypot(x - 1.02F, y - 0.40F);
    const float cloud = Smooth(0.50F, 0.78F, Fractal(x * 1.6F + 4, y * 8 - x, 5, 11)) * Smooth(0.55F, 0.30F, y);
    sky = Mix(sky, Mix(Rgb(0xB9748A), Rgb(0xFFE0BC), Smooth(0.85F, 0.10F, sun)), cloud * 0.75F);
    sky = Glow(sky, Rgb(0xFFB45A), 0.55F * std::exp(-sun * 6));
    return Mix(sky, Rgb(0xFFFBE6), Smooth(0.066F, 0.060F, sun));
}

Colour SunriseAt(float x, float y) {
    Colour colour = SunriseSky(x, y);
    constexpr int kRidges = 5;
    for (int i = 0; i < kRidges; ++i) {
        const float near = float(i) / (kRidges - 1);
        const float middle = 0.50F + 0.10F * float(i);
        if (y < middle - 0.20F)
            break; // high above this ridge and those in front of it
        float outline = Jagged(x, middle, 0.11F - 0.04F * near, 1.1F + 0.5F * near, 20 + 7 * i);
        if (i >= 3)
            outline -= Firs(x, i == 3 ? 0.014F : 0.030F, i == 3 ? 0.026F : 0.085F, 60 + i);
        Colour hill = Mix(Rgb(0xC98F86), Rgb(0x13262B), std::sqrt(near));
        const float mist = Smooth(outline + 0.01F, outline + 0.17F, y) * (1 - near) * 0.8F;
        hill = Mix(hill, Rgb(0xF6C9A4), mist);
        hill = Glow(hill, Rgb(0xFF9A4A), 0.30F * (1 - near) * std::exp(-4 * std::hypot(x - 1.02F, y - 0.42F)));
        colour = Mix(colour, hill, Below(outline, y));
    }
    return colour;
}

constexpr float kHorizon = 0.58F;
constexpr float kMoonX = 0.98F;

Colour NightSky(float x, float y) {
    Colour sky = Mix(Rgb(0x070D24), Rgb(0x3A5C8C), Smooth(0.0F, kHorizon + 0.1F, y));
    const float moon = std::hypot(x - kMoonX, y - 0.24F);
    const float cloud = Smooth(0.45F, 0.85F, Fractal(x * 1.5F, y * 7, 5, 31)) * Smooth(0.10F, 0.45F, y);
    sky = Mix(Glow(sky, Rgb(0xFFFFFF), Stars(x, y, 34, 5) * 0.9F), Rgb(0x6F86AC), cloud * 0.45F);
    sky = Glow(sky, Rgb(0xBFD0F0), 0.42F * std::exp(-moon * 7));
    const float seas = 0.86F + 0.14F * Fractal(x * 22, y * 22, 3, 9);
    return Mix(sky, Lit(Rgb(0xFFF6DC), seas), Smooth(0.077F, 0.072F, moon));
}

Colour NightWater(float x, float y) {
    const float depth = (y - kHorizon) / (1 - kHorizon);
    const float far = 1 / (depth + 0.07F);
    const float waves = Fractal(x * 3.2F * std::sqrt(far), far * 7, 4, 77);
    Colour water = Mix(Rgb(0x3C5F8E), Rgb(0x050A1A), std::sqrt(depth));
    water = Lit(water, 0.75F + 0.5F * waves);
    const float path = (x - kMoonX) / (0.035F + 0.20F * depth);
    const float glitter = std::exp(-path * path) * Smooth(0.46F, 0.66F, waves);
    return Mix(water, Rgb(0xFFF0C8), glitter * (0.95F - 0.35F * depth));
}

Colour NightSeaAt(float x, float y) {
    Colour colour = y < kHorizon ? NightSky(x, y) : NightWater(x, y);
    const float shore = 0.11F * Smooth(0.62F, 0.05F, x) * (0.6F + 0.8F * Fractal(x * 5, 0.5F, 5, 41));
    const float island = Below(kHorizon - shore, y) * Smooth(kHorizon + 0.006F, kHorizon + 0.002F, y);
    colour = Mix(colour, Rgb(0x060A18), island);
    const float lamp = std::hypot(x - 0.335F, y - 0.518F);
    return Glow(colour, Rgb(0xFFC060), 0.9F * std::exp(-lamp * 70) + Smooth(0.006F, 0.003F, lamp));
}

constexpr float kShore = 0.78F;

Colour AuroraSky(float x, float y) {
    Colour sky = Mix(Rgb(0x040818), Rgb(0x12333F), Smooth(0.0F, kShore, y));
    sky = Glow(sky, Rgb(0xE8F2FF), Stars(x, y, 30, 15));
    for (int i = 0; i < 3; ++i) {
        const float foot = 0.60F - 0.11F * float(i) + 0.30F * (Fractal(x * 1.3F + float(i) * 5, 0.5F, 3, 51) - 0.5F);
        const float above = foot - y;
        const float height = 0.13F + 0.10F * Noise(x * 4, float(i), 52);
        const float body = above > 0 ? std::exp(-above / height) : std::exp(above / 0.016F);
        const float folds = 0.35F + 0.65F * Fractal(x * 13 + y * 0.8F, float(i) * 3, 3, 53 + i);
        const Colour light = Mix(Rgb(0x38F29A), Rgb(0x8A4CE0), Smooth(0.02F, 0.30F, above));
        sky = Glow(sky, light, body * folds * (0.85F - 0.2F * float(i)));
    }
    return sky;
}

Colour AuroraAbove(float x, float y) {
    const float outline = Jagged(x, 0.68F, 0.13F, 1.5F, 61);
    const float slope = Fractal(x * 9 + y * 14, y * 5, 4, 62);
    const float snow = Smooth(0.46F, 0.60F, slope) * Smooth(kShore, outline, y);
    const Colour rock = Mix(Rgb(0x07121C), Rgb(0x4E8C8A), snow * 0.8F);
    return Mix(AuroraSky(x, y), rock, Below(outline, y));
}

Colour AuroraAt(float x, float y) {
    if (y < kShore)
        return AuroraAbove(x, y);
    const float depth = y - kShore;
    const float ripple = (Fractal(x * 6, depth * 90, 3, 63) - 0.5F) * (0.02F + depth * 0.25F);
    const Colour mirrored = AuroraAbove(x + ripple, std::max(0.0F, kShore - depth * 2.1F + ripple));
    return Mix(Lit(mirrored, 0.62F), Rgb(0x04101A), 0.25F);
}

float DuneLine(float x, int dune) {
    return 0.06F * std::sin(x * 3.1F + float(dune) * 2.3F) + 0.14F * (Noise(x * 1.5F, 0.5F, 71 + dune) - 0.5F);
}

Colour DuneSand(float x, float y, float outline, int dune) {
    const float down = y - outline;
    // Crests run on below the outline, leaning; what faces the low sun at the left is lit.
    const float along = x - down * (1.5F - 0.15F * float(dune)) + 0.05F * std::sin(down * 19);
    const float slope = (DuneLine(along + 0.01F, dune) - DuneLine(along - 0.01F, dune)) / 0.02F;
    const float lit = Smooth(0.06F, -0.05F, slope);
    const float ripples = 0.035F * std::sin((y * 3 + along * 0.6F) * 120 + 9 * Fractal(x * 5, y * 5, 3, 75));
    const Colour sand = Mix(Rgb(0x7E3D24), Rgb(0xF0AE62), lit);
    return Lit(Mix(sand, Rgb(0xE9B78C), 0.45F - 0.15F * float(dune)), 1 + ripples * (0.2F + 0.8F * lit));
}

Colour DunesAt(float x, float y) {
    Colour colour = Mix(Rgb(0x5E93C4), Rgb(0xF6D9B0), Smooth(0.0F, 0.45F, y));
    for (int dune = 0; dune < 4; ++dune) {
        const float outline = 0.34F + 0.15F * float(dune) + DuneLine(x, dune);
        const float seen = Below(outline, y);
        if (seen > 0)
            colour = Mix(colour, DuneSand(x, y, outline, dune), seen);
    }
    return colour;
}

Colour MistAt(float x, float y) {
    Colour colour = Mix(Rgb(0xA9C6DC), Rgb(0xF7E9DA), Smooth(0.0F, 0.5F, y));
    const float sun = std::hypot(x - 0.45F, y - 0.22F);
    colour = Mix(Glow(colour, Rgb(0xFFE6C0), 0.35F * std::exp(-sun * 5)), Rgb(0xFFFDF4), Smooth(0.058F, 0.050F, sun));
    constexpr int kRidges = 6;
    for (int i = 0; i < kRidges; ++i) {
        const float near = float(i) / (kRidges - 1);
        const float outline = Jagged(x + 3, 0.36F + 0.11F * float(i), 0.15F - 0.03F * near, 1.2F + near, 80 + 9 * i);
        const Colour ridge = Mix(Rgb(0xA3BCCF), Rgb(0x14344F), near);
        const float mist = Smooth(outline, outline + 0.22F, y) * (0.85F - 0.5F * near);
        colour = Mix(colour, Mix(ridge, Rgb(0xEDF0EE), mist), Below(outline, y));
    }
    return colour;
}

} // namespace

Canvas Sunrise() {
    return Painted(kWidth, kHeight, SunriseAt);
}

Canvas NightSea() {
    return Painted(kWidth, kHeight, NightSeaAt);
}

Canvas Aurora() {
    return Painted(kWidth, kHeight, AuroraAt);
}

Canvas Dunes() {
    return Painted(480, 320, DunesAt);
}

Canvas Mist() {
    return Painted(360, 240, MistAt);
}
