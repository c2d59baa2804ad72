#include "Scenes.h"

#include <cmath>
#include <iterator>

namespace {

constexpr float kPi = 3.14159265F;
constexpr float kEdge = 0.0014F; // over which an outline fades

struct Place {
    float x, y;
};

/// The share of a pixel inside a shape, told by how far inside its outline it lies.
float Inside(float depth) {
    return Smooth(-kEdge, kEdge, depth);
}

float InBox(float x, float y, float left, float top, float right, float bottom) {
    return Inside(std::min(std::min(x - left, right - x), std::min(y - top, bottom - y)));
}

/// Inside a convex shape whose corners go clockwise.
template <std::size_t kCorners>
float InShape(float x, float y, const Place (&corners)[kCorners]) {
    float least = 1;
    for (std::size_t i = 0; i < kCorners; ++i) {
        const Place& from = corners[i];
        const Place& to = corners[(i + 1) % kCorners];
        const float across = (to.x - from.x) * (y - from.y) - (to.y - from.y) * (x - from.x);
        least = std::min(least, across / std::hypot(to.x - from.x, to.y - from.y));
    }
    return Inside(least);
}

/// The light on an upright round body, @p across from -1 to 1, from the left.
float Round(float across) {
    const float angle = std::asin(std::clamp(across, -1.0F, 1.0F));
    return 0.35F + 0.70F * std::max(0.0F, std::cos(angle + 0.55F));
}

/// Leaves out of focus.
Colour Meadow(float x, float y) {
    Colour colour = Mix(Rgb(0x16321F), Rgb(0x6F9A4A), Fractal(x * 2.2F, y * 2.2F, 3, 101));
    for (int i = 0; i < 26; ++i) {
        const float away = std::hypot(x - 0.67F * Hash(i, 0, 102), y - Hash(i, 1, 102));
        const float radius = 0.03F + 0.06F * Hash(i, 2, 102);
        const float rim = 0.6F + 0.4F * Smooth(0.7F * radius, radius, away);
        colour = Mix(colour, Rgb(0xD9DF8A), Smooth(radius, radius * 0.9F, away) * rim * 0.30F * Hash(i, 3, 102));
    }
    return Lit(colour, 1.05F - 0.45F * y);
}

/// A wreath of petals around (0, 0); @p turn sets it apart from another one.
Colour WithPetals(const Colour& ground, float x, float y, float turn, float length, const Colour& tint) {
    constexpr int kPetals = 17;
    constexpr float kSlot = 2 * kPi / kPetals;
    const float radius = std::hypot(x, y);
    const float angle = std::atan2(y, x) + turn;
    const int index = int(std::floor(angle / kSlot + 0.5F));
    const int petal = (index + 2 * kPetals) % kPetals;
    const float bend = (Hash(petal, int(turn * 100), 111) - 0.5F) * 0.16F;
    const float along = radius / (length * (0.90F + 0.16F * Hash(petal, int(turn * 100), 112)));
    const float across = radius * std::sin(angle - float(index) * kSlot - bend * along);
    const float half = along < 1 ? 0.155F * length * std::pow(std::sin(kPi * std::pow(along, 1.35F)), 0.55F) : -1;
    const float side = half > 0 ? across / half : 2;
    const float light = (0.70F + 0.30F * Smooth(0.15F, 0.75F, along)) * (1 - 0.16F * side * side) +
                        0.035F * std::cos(side * 11) + 0.05F * side;
    return Mix(ground, Lit(tint, light), Inside(half - std::abs(across)));
}

/// The yellow middle: seeds along spirals both ways, on a dome.
Colour WithSeeds(const Colour& ground, float x, float y, float size) {
    const float radius = std::hypot(x, y) / size;
    const float angle = std::atan2(y, x);
    const float rings = std::sqrt(radius) * 34;
    const float seeds = std::sin(13 * angle + rings) * std::sin(21 * angle - rings);
    Colour dome = Mix(Rgb(0xE9A712), Rgb(0xA8600A), Smooth(0.45F, 1.0F, radius));
    dome = Mix(dome, Rgb(0xC6B21E), Smooth(0.35F, 0.0F, radius));
    dome = Lit(dome, 0.92F + 0.24F * seeds - 0.25F * (x + y) / size);
    const Colour shaded = Lit(ground, 0.72F + 0.28F * Smooth(0.95F, 1.35F, radius));
    return Mix(shaded, dome, Inside((1 - radius) * size));
}

Colour DaisyAt(float x, float y) {
    Colour colour = Meadow(x, y);
    const float stem = (x - 0.335F - 0.05F * (y - 0.4F) * (y - 0.4F) * 3) / 0.0125F;
    colour =
        Mix(colour, Lit(Rgb(0x7FA848), Round(stem) * 0.9F), Inside(std::min((1 - std::abs(stem)) * 0.0125F, y - 0.4F)));
    const float dx = x - 0.335F;
    const float dy = (y - 0.40F) * 1.06F;
    colour = WithPetals(colour, dx, dy, 0.18F, 0.285F, Rgb(0xCBCBE2));
    colour = WithPetals(colour, dx, dy, 0.0F, 0.275F, Rgb(0xFFFDF8));
    return WithSeeds(colour, dx, dy, 0.078F);
}

struct Balloon {
    float x, y, radius;
    unsigned colours[3];
};

constexpr Balloon kBalloons[] = {
    {1.20F, 0.60F, 0.052F, {0xF3E2C0, 0x3F7F8C, 0xF3E2C0}},
    {0.20F, 0.52F, 0.070F, {0xE9B23C, 0xD9643A, 0xF3E6CC}},
    {1.28F, 0.22F, 0.105F, {0x2F6E8F, 0xF4EBDD, 0xE2A33B}},
    {0.66F, 0.36F, 0.215F, {0xC8322F, 0xF4EBDD, 0x27486E}},
};

Colour WithBasket(const Colour& ground, float x, float y) {
    const float ropes = std::abs(std::abs(x) - (0.135F + (1.72F - y) * 0.12F));
    Colour colour = y > 1.33F && y < 1.72F ? Mix(ground, Rgb(0x4A3826), Smooth(0.022F, 0.008F, ropes)) : ground;
    const float weave = 0.85F + 0.15F * std::sin(x * 90) * std::sin(y * 70);
    colour = Mix(colour, Lit(Rgb(0x8A5A30), weave * (1 - 1.4F * x)), InBox(x, y, -0.14F, 1.68F, 0.14F, 1.92F));
    return Mix(colour, Rgb(0x4A2E18), InBox(x, y, -0.155F, 1.66F, 0.155F, 1.71F));
}

Colour WithBalloon(const Colour& ground, const Balloon& balloon, float sceneX, float sceneY) {
    const float x = (sceneX - balloon.x) / balloon.radius;
    const float y = (sceneY - balloon.y) / balloon.radius;
    if (std::abs(x) > 1.1F || y < -1.1F || y > 2)
        return ground;
    const Colour colour = WithBasket(ground, x, y);
    const float half = y < 0 ? std::sqrt(std::max(0.0F, 1 - y * y)) : std::cos(std::min(y, 1.36F) * 1.07F);
    const float across = x / std::max(half, 0.01F);
    const float gore = std::asin(std::clamp(across, -1.0F, 1.0F)) / kPi * 12 + 30.5F;
    const float seam = std::abs(gore - std::floor(gore + 0.5F)) * half;
    const bool band = y > 0.28F && y < 0.46F;
    const Colour cloth = Rgb(balloon.colours[band ? 2 : std::size_t(std::floor(gore)) % 2]);
    const float light =
        (0.25F + 0.80F * Round(across)) * (0.88F + 0.12F * Smooth(0.0F, 0.06F, seam)) * (1.06F - 0.14F * y);
    const float depth = std::min(half - std::abs(x), 1.36F - y) * balloon.radius;
    return Mix(colour, Lit(cloth, light), Inside(depth));
}

Colour BalloonsAt(float x, float y) {
    Colour colour = Mix(Rgb(0x4A94D2), Rgb(0xE4F1F6), Smooth(0.0F, 0.85F, y));
    const float cloud = Fractal(x * 2.1F + 7, y * 4.2F, 5, 121);
    colour = Mix(colour, Rgb(0xFDFBF6), Smooth(0.52F, 0.80F, cloud) * Smooth(0.0F, 0.4F, y) * 0.9F);
    for (int i = 0; i < 3; ++i) {
        const float outline =
            0.83F + 0.055F * float(i) - 0.10F * (Fractal(x * (1.3F + float(i)), 0.5F, 4, 122 + i) - 0.5F);
        const float fields = 0.9F + 0.2F * Fractal(x * 6, y * 26, 3, 125);
        colour = Mix(colour, Lit(Mix(Rgb(0x9DBBA6), Rgb(0x54803F), float(i) / 2), fields), Inside(y - outline));
    }
    for (const Balloon& balloon : kBalloons)
        colour = WithBalloon(colour, balloon, x, y);
    return colour;
}

constexpr float kTower = 0.36F; // the middle of the lighthouse
constexpr float kLamp = 0.283F;

Colour Dusk(float x, float y) {
    Colour sky = Mix(Rgb(0x2B3566), Rgb(0xE98A6B), Smooth(0.0F, 0.62F, y));
    sky = Mix(sky, Rgb(0xFFD08A), Smooth(0.48F, 0.80F, y));
    const float cloud = Smooth(0.48F, 0.76F, Fractal(x * 2.4F, y * 9, 5, 131));
    sky = Mix(sky, Mix(Rgb(0xF0A07E), Rgb(0x6B4A78), Smooth(0.65F, 0.15F, y)), cloud * 0.65F);
    const float beam = std::abs(y - kLamp - (x - kTower) * 0.16F) / (0.012F + 0.20F * std::abs(x - kTower));
    return Glow(sky, Rgb(0xFFE9B0), 0.34F * std::exp(-beam * beam * 3) * std::exp(-std::abs(x - kTower) * 2.2F));
}

Colour WithTower(Colour colour, float x, float y) {
    const float half = 0.046F + 0.030F * (y - 0.33F) / 0.5F;
    const float across = (x - kTower) / half;
    const bool red = int(std::floor((y - 0.33F) / 0.098F)) % 2 == 0;
    const float tower = Inside(std::min((1 - std::abs(across)) * half, y - 0.335F));
    colour = Mix(colour, Lit(Rgb(red ? 0xC9342E : 0xFBF3E8), 0.2F + 0.8F * Round(across)), tower);
    for (const float window : {0.46F, 0.66F})
        colour = Mix(colour, Rgb(0x2B2230), InBox(x, y, kTower - 0.010F, window, kTower + 0.010F, window + 0.030F));
    const float head = (x - kTower) / 0.034F;
    colour = Mix(colour, Rgb(0xFFF1BE), InBox(x, y, kTower - 0.032F, 0.252F, kTower + 0.032F, 0.320F));
    if (std::fabs(std::fmod(std::abs(head) * 3 + 0.5F, 1.0F) - 0.5F) < 0.10F)
        colour = Mix(colour, Rgb(0x3A2430), InBox(x, y, kTower - 0.032F, 0.252F, kTower + 0.032F, 0.320F));
    colour =
        Mix(colour, Lit(Rgb(0x54303A), Round(head)), InBox(x, y, kTower - 0.064F, 0.318F, kTower + 0.064F, 0.338F));
    const float dome = 0.040F - std::hypot(x - kTower, (y - 0.253F) * 0.9F);
    return Mix(colour, Lit(Rgb(0xB02C2A), 0.25F + 0.8F * Round(head)), Inside(std::min(dome, 0.253F - y)));
}

Colour LighthouseAt(float x, float y) {
    constexpr float kSea = 0.80F;
    Colour colour = Dusk(x, y);
    if (y > kSea) {
        const float depth = (y - kSea) / (1 - kSea);
        const float waves = Fractal(x * 9 / (depth + 0.3F), 16 / (depth + 0.25F), 4, 141);
        colour =
            Mix(Mix(Rgb(0xE29A7C), Rgb(0x283A63), std::sqrt(depth)), Rgb(0xFFD9A4), Smooth(0.52F, 0.72F, waves) * 0.5F);
    }
    colour = WithTower(colour, x, y);
    const float shelf = 0.80F + 0.16F * Smooth(0.16F, 0.02F, x) + 0.05F * (Fractal(x * 12, 0.5F, 4, 142) - 0.5F);
    const float rough = 0.55F + 0.9F * Fractal(x * 16, y * 22, 5, 143) - 0.5F * (y - shelf);
    colour =
        Mix(colour, Lit(Mix(Rgb(0x6F6A4A), Rgb(0x3B3340), Smooth(0.0F, 0.05F, y - shelf)), rough), Inside(y - shelf));
    const float lamp = std::hypot(x - kTower, y - kLamp);
    return Glow(colour, Rgb(0xFFE0A0), 0.75F * std::exp(-lamp * 17));
}

/// Of a sail: how light its cloth is at a place, bellied and with seams.
float Cloth(float x, float y) {
    return 0.86F + 0.10F * std::sin(y * 150) * std::sin(y * 150) - 0.24F * std::sin(x * 9);
}

float WithRig(float grey, float x, float y) {
    constexpr Place kMain[] = {{0.735F, 0.13F}, {1.02F, 0.66F}, {0.735F, 0.68F}};
    constexpr Place kJib[] = {{0.705F, 0.17F}, {0.715F, 0.665F}, {0.475F, 0.675F}};
    const auto mixed = [](float from, float to, float share) { return from + (to - from) * share; };
    grey = mixed(grey, 0.95F * Cloth(x - 0.72F, y), InShape(x, y, kMain));
    grey = mixed(grey, 0.82F * Cloth(x - 0.42F, y), InShape(x, y, kJib));
    grey = mixed(grey, 0.14F, InBox(x, y, 0.720F, 0.07F, 0.731F, 0.72F));
    const float forestay = std::abs((x - 0.725F) * 0.60F + (y - 0.09F) * 0.29F) / 0.666F;
    if (y > 0.09F && y < 0.69F && x < 0.725F)
        grey = mixed(grey, 0.25F, Smooth(0.0028F, 0.0008F, forestay));
    const float sheer = 0.700F + 0.10F * (x - 0.75F) * (x - 0.75F);
    const float hull = std::min(std::min(y - sheer, 0.775F - y),
                                std::min(x - 0.43F - (y - sheer) * 0.9F, 1.06F - x - (y - sheer) * 0.5F));
    grey = mixed(grey, 0.10F + 0.35F * Smooth(0.025F, 0.0F, y - sheer), Inside(hull));
    return mixed(grey, 0.75F, Inside(std::min(hull, 0.006F - std::abs(y - sheer - 0.018F))));
}

Colour ShipAt(float x, float y) {
    constexpr float kSea = 0.70F;
    float grey = 0.50F + 0.38F * Smooth(0.0F, kSea, y) + 0.22F * (Fractal(x * 1.9F + 3, y * 4.5F, 5, 151) - 0.5F);
    if (y > kSea) {
        const float depth = (y - kSea) / (1 - kSea);
        const float waves = Fractal(x * 7 / (depth + 0.35F), 14 / (depth + 0.3F), 5, 152);
        grey = 0.66F - 0.36F * depth + 0.50F * (waves - 0.5F);
        grey -= 0.16F * Smooth(0.35F, 0.05F, std::abs(x - 0.75F)) * Smooth(0.9F, 0.2F, depth);
    }
    grey = WithRig(grey, x, y);
    const float wake =
        Smooth(0.020F, 0.0F, std::abs(y - 0.776F + 0.010F * std::sin(x * 60))) * InBox(x, y, 0.42F, 0.7F, 1.12F, 0.9F);
    grey += 0.28F * wake * Fractal(x * 40, y * 40, 2, 153);
    const float corner = std::hypot((x - 0.75F) / 0.95F, (y - 0.5F) / 0.66F);
    grey =
        grey * (1.02F - 0.42F * Smooth(0.55F, 1.15F, corner)) + 0.05F * (Hash(int(x * 640), int(y * 640), 154) - 0.5F);
    return {grey, grey, grey, 1};
}

} // namespace

Canvas Daisy() {
    return Painted(480, 720, DaisyAt);
}

Canvas Balloons() {
    return Painted(750, 500, BalloonsAt);
}

Canvas Lighthouse() {
    return Painted(480, 720, LighthouseAt);
}

Canvas Ship() {
    return Painted(750, 500, ShipAt);
}
