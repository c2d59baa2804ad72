#include "Scenes.h"

#include <cmath>
#include <cstring>
#include <iterator>

namespace {

constexpr float kPi = 3.14159265F;

constexpr float kEdge = 0.003F; // over which the outlines of the logo fade

/// Lays a colour over what is there, as far as it covers.
Colour Over(const Colour& below, const Colour& paint, float cover) {
    const float alpha = cover + below.alpha * (1 - cover);
    Colour colour = Mix(below, paint, alpha > 0 ? cover / alpha : 0);
    colour.alpha = alpha;
    return colour;
}

/// Takes away what is there; its colour stays for whoever mixes it with its surroundings.
Colour Cut(Colour colour, float cover) {
    colour.alpha *= 1 - cover;
    return colour;
}

float Beyond(float outline, float at) {
    return Smooth(outline - kEdge, outline + kEdge, at);
}

/// A sun over the sea; gaps above the waves and inside the ring let the background through.
Colour LogoAt(float x, float y) {
    const float radius = std::hypot(x - 0.5F, y - 0.5F);
    const Colour ring = Rgb(0x123A63);
    Colour colour = Mix(Rgb(0xF7C04A), Rgb(0xE0603C), Smooth(0.10F, 0.55F, y));
    colour = Mix(Rgb(0xFFF4D6), colour, Beyond(0.135F, std::hypot(x - 0.5F, y - 0.42F)));
    for (int i = 0; i < 3; ++i) {
        const float top = 0.52F + 0.12F * float(i) + 0.022F * std::sin(x * 4 * kPi + 1.4F * float(i));
        colour = Cut(colour, Beyond(top - 0.028F, y));
        colour = Over(colour, Mix(Rgb(0x1F8A9E), ring, float(i) / 2), Beyond(top, y));
    }
    colour = Cut(colour, Beyond(0.395F, radius));
    colour = Over(colour, ring, Beyond(0.425F, radius));
    return Cut(colour, Beyond(0.475F, radius));
}

Colour SilkAt(float x, float y) {
    const float warp = Fractal(x * 1.1F, y * 1.1F + 9, 2, 201);
    const float fold = std::sin(3.4F * x + 5.2F * y + 5 * warp);
    const float along = Fractal(x * 0.9F + warp, y * 0.9F, 2, 202);
    Colour colour = Mix(Rgb(0x2A1A5E), Rgb(0xE8467C), Smooth(0.20F, 0.62F, along));
    colour = Mix(colour, Rgb(0xFFB35C), Smooth(0.50F, 0.86F, along + 0.14F * fold));
    colour = Mix(colour, Rgb(0x2FA4C8), Smooth(0.42F, 0.16F, along + 0.10F * fold) * 0.8F);
    return Lit(colour, 0.86F + 0.20F * fold);
}

/// A quarter of an ornament, mirrored into the others.
Colour TileAt(float x, float y) {
    const float u = std::abs(x - 0.5F);
    const float v = std::abs(y - 0.5F);
    const float radius = std::hypot(u, v);
    const float petals = 0.235F + 0.075F * std::cos(8 * std::atan2(v, u));
    const float corner = std::hypot(0.5F - u, 0.5F - v);
    const Colour white = Rgb(0xF6F1E4);
    const Colour blue = Rgb(0x1F4E8C);
    Colour colour = Mix(white, Rgb(0x7FA8CF), Smooth(0.36F, 0.352F, std::abs(u) + std::abs(v)) * 0.55F);
    const auto paint = [&colour](const Colour& with, float depth) {
        colour = Mix(colour, with, Smooth(-0.004F, 0.004F, depth));
    };
    paint(blue, petals - radius);
    paint(white, petals * 0.80F - radius);
    paint(Rgb(0xE3A638), petals * 0.52F - radius);
    paint(blue, 0.058F - radius);
    paint(blue, 0.215F - corner);
    paint(white, 0.185F - corner);
    paint(Rgb(0xE3A638), 0.105F - corner);
    paint(blue, 0.052F - corner);
    paint(blue, 0.012F - std::abs(corner - 0.285F));
    paint(Rgb(0xC9C1AE), std::max(u, v) - 0.494F);
    return colour;
}

constexpr int kShore = 118; // the number of the first colour of land

float Ground(float x, float y) {
    const float warp = Fractal(x * 2, y * 2, 3, 211);
    const float height = Fractal(x * 2.3F + warp, y * 2.3F + 3 + warp, 6, 212);
    return std::clamp((height - 0.26F) / 0.56F, 0.0F, 1.0F);
}

// Every twelfth colour is darker, which draws the lines of equal height.
std::vector<Colour> ChartColours() {
    std::vector<Colour> colours;
    for (int i = 0; i < 256; ++i) {
        const float deep = float(i) / kShore;
        const float high = float(i - kShore) / (255 - kShore);
        Colour colour = Mix(Rgb(0x2C6C9E), Rgb(0xCDE8EC), deep * deep);
        if (i >= kShore)
            colour = high < 0.45F ? Mix(Rgb(0xE9E0B0), Rgb(0x8FB06A), high / 0.45F)
                                  : Mix(Rgb(0x8FB06A), Rgb(0xF3EDE4), (high - 0.45F) / 0.4F);
        if (i == kShore || i == kShore + 1)
            colour = Rgb(0x4A4A3A);
        colours.push_back(i % 12 == 0 ? Lit(colour, 0.82F) : colour);
    }
    return colours;
}

// A boat before the sun, a letter for a pixel.
constexpr char kLetters[] = "abcdeflyowgrRmhH";
constexpr unsigned kIconColours[] = {0x5AA9DC, 0x8CC8E8, 0xC4E6F2, 0x3C8FBF, 0x2A6FA3, 0x1C5486, 0xA6DCEE, 0xFFE27A,
                                     0xFFC24A, 0xFFFDF4, 0xD5DCE4, 0xE2503C, 0xA8342C, 0x6B4426, 0x7A3B24, 0x4E2416};
constexpr const char* kIcon[] = {
    "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa", "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa", "aaaaaaaaaaaaaamaaaaaaaaaaaaaaaaa",
    "aaaaaaaaaaaaaamwaaaaaaooooooaaaa", "aaaaaaaaaaaaaamgaaaaaooyyyyooaaa", "aaaaaaaaaaaaaamwgaaaooyyyyyyooaa",
    "aaaaaaaaaaaaRamwgaaaoyyyyyyyyoaa", "ababababababRbmwwgaboyyyyyyyyoab", "bbbbbbbbbbbbRbmwwgbboyyyyyyyyobb",
    "bbbbbbbbbbbRrbmwwwgboyyyyyyyyobb", "bbbbbbbbbbbRrbmwwwgbooyyyyyyoobb", "bbbbbbbbbbRrrbmwwwwgbooyyyyoobbb",
    "bbbbbbbbbbRrrbmwwwwwgboooooobbbb", "bbbbbbbbbRrrrbmwwwwwgbbbbbbbbbbb", "cbcbcbcbcRrrrbmwwwwwwgcbcbcbcbcb",
    "ccccccccRrrrrcmwwwwwwgcccccccccc", "ccccccccRrrrrcmwwwwwwwgccccccccc", "cccccccRrrrrrcmwwwwwwwgccccccccc",
    "cccccccRrrrrrcmwwwwwwwwgcccccccc", "ccccccRrrrrrrcmwwwwwwwwwgccccccc", "ccccccccccccccmccccccccccccccccc",
    "cccccHHHHHHHHHHHHHHHHHHHHHHccccc", "ddddddhhhhhhhhhhhhhhhhhhhhdddddd", "ddddddlhhhhhhhhhhhhhhhhhhdlllddd",
    "ddddddddhhhhhhhhhhhhhhhhdddddddd", "eeeeeeeeehhhhhhhhhhhhhheeeeeeeee", "eeeelllllleelleelllelleellllleee",
    "eeeeeeeeeeeeeeeeeeeeeeeeeeeeeeee", "ffffffffffffffffffffffffffffffff", "ffffffdddfffffffdddfffffffdddfff",
    "ffffffffffffffffffffffffffffffff", "ffffffffffffffffffffffffffffffff",
};

/// Of a shell in the shape of a spiral: the whole turn up to a place, in radians, and where the place lies between the
/// seam (0) and the back (1) of its turn.
struct OnShell {
    float turn;
    float across;
};

constexpr float kGrowth = 0.172F;     // of the radius with each radian, in its logarithm
constexpr float kMouth = 5.75F * kPi; // where the shell ends

OnShell ShellAt(float x, float y) {
    const float radius = std::hypot(x, y);
    const float angle = std::atan2(y, x) + kPi;
    const float turns = (std::log(std::max(radius, 1e-4F) / 0.0262F) / kGrowth - angle) / (2 * kPi);
    const float whole = std::floor(turns);
    const OnShell place = {angle + 2 * kPi * (whole + 1), turns - whole};
    return place;
}

/// How dark the shell is; below 0 beside it.
float ShellTone(const OnShell& place) {
    if (place.turn > kMouth)
        return -1;
    const float tube = std::sin(kPi * std::clamp(place.across * 0.9F + 0.08F, 0.0F, 1.0F));
    const float stripes =
        Smooth(0.35F, 0.60F, std::sin(place.turn * 4.5F + 3 * place.across * place.across) + place.across - 0.45F);
    return std::clamp(1.0F - 0.95F * tube + 0.55F * stripes * Smooth(1.0F, 4.5F * kPi, place.turn), 0.06F, 1.0F);
}

/// Black lines that are the broader the darker the place is; they follow the growth of the shell.
bool IsInk(float x, float y) {
    const float dx = x - 0.71F;
    const float dy = (y - 0.44F) * 1.02F;
    const OnShell place = ShellAt(dx, dy);
    const float tone = ShellTone(place);
    const auto line = [](float phase) { return std::abs(phase - std::floor(phase) - 0.5F) * 2; };
    if (tone >= 0)
        return line(place.turn * 15 - 1.6F * place.across) < tone * 0.92F || place.across < 0.025F ||
               place.turn > kMouth - 0.02F;
    // The shadow on the ground: a screen of level lines.
    const float shade = 0.62F * Smooth(1.0F, 0.25F, std::hypot((x - 0.72F) / 0.66F, (y - 0.90F) / 0.08F));
    return line(y * 110) < shade;
}

} // namespace

Canvas Logo() {
    return Painted(480, 480, LogoAt);
}

Canvas Silk() {
    return Painted(720, 480, SilkAt);
}

Canvas Tile() {
    return Painted(240, 240, TileAt);
}

Indexed Chart() {
    constexpr int kWidth = 720;
    constexpr int kHeight = 540;
    Indexed chart = {kWidth, kHeight, ChartColours(), {}};
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x)
            chart.pixels.push_back(static_cast<unsigned char>(255 * Ground(float(x) / kHeight, float(y) / kHeight)));
    }
    return chart;
}

Indexed Icon() {
    Indexed icon = {32, int(std::size(kIcon)), {}, {}};
    for (const unsigned colour : kIconColours)
        icon.colours.push_back(Rgb(colour));
    for (const char* const row : kIcon) {
        for (int x = 0; x < icon.width; ++x)
            icon.pixels.push_back(static_cast<unsigned char>(std::strchr(kLetters, row[x]) - kLetters));
    }
    return icon;
}

Indexed Engraving() {
    constexpr int kWidth = 1400;
    constexpr int kHeight = 1000;
    Indexed drawing = {kWidth, kHeight, {Rgb(0xFFFFFF), Rgb(0x000000)}, {}};
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x)
            drawing.pixels.push_back(IsInk(float(x) / kHeight, float(y) / kHeight));
    }
    return drawing;
}
