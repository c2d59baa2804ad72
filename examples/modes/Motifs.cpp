#include "Motifs.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kWidth = 128;
constexpr int kHeight = 84;
constexpr double kPi = 3.14159265358979323846;

unsigned long Sky(double y) {
    return HSBColor(0.58, 0.65 - 0.5 * y, 0.85 + 0.15 * y);
}

unsigned long Hill(double x, double y, double crest, double hue) {
    const double depth = std::clamp((y - crest) * 1.4, 0.0, 0.6);
    return HSBColor(hue + 0.03 * std::sin(9 * x), 0.7, 0.75 - depth);
}

// x and y from 0 to 1, counted from the left top.
unsigned long LandscapeAt(double x, double y) {
    const double nearCrest = 0.80 + 0.07 * std::sin(2 * kPi * (x + 0.1));
    const double farCrest = 0.66 + 0.09 * std::sin(2 * kPi * (1.4 * x + 0.55));
    if (y > nearCrest)
        return Hill(x, y, nearCrest, 0.30);
    if (y > farCrest)
        return Hill(x, y, farCrest, 0.42);
    const double aspect = double(kWidth) / kHeight;
    if (std::hypot((x - 0.20) * aspect, y - 0.24) < 0.13)
        return 0x0050D8FF;
    const double arc = std::hypot((x - 0.62) * aspect, y - 0.86);
    if (arc > 0.48 && arc < 0.66)
        return HSBColor((0.66 - arc) / 0.18 * 0.78, 0.75, 1.0);
    return Sky(y);
}

bool IsFrame(int x, int y) {
    return x < 2 || y < 2 || x >= kWidth - 2 || y >= kHeight - 2;
}

unsigned long RingAt(double x, double y) {
    const double radius = std::hypot(x - 0.5, y - 0.5);
    if (radius > 0.48 || radius < 0.2)
        return kKey;
    const double hue = std::atan2(y - 0.5, x - 0.5) / (2 * kPi);
    const double shine = std::clamp((0.48 - radius) * 12, 0.45, 1.0);
    return HSBColor(hue, 0.85, shine);
}

// A picture of depth 32 whose pixels a function of their places tells.
template <class Colour>
GDIBitmap Painted(int width, int height, Colour colour) {
    GDIBitmap picture;
    if (!picture.CreateBitmap(Size(width, height), 32))
        return picture;
    auto* const pixels = static_cast<unsigned int*>(picture.LockSurfaceModify());
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            pixels[(height - 1 - y) * width + x] = BitmapBase::DibRGB(colour(x, y));
    }
    picture.UnlockSurface();
    return picture;
}

} // namespace

GDIBitmap Landscape() {
    return Painted(kWidth, kHeight, [](int x, int y) {
        return IsFrame(x, y) ? 0x00FFFFFFUL : LandscapeAt((x + 0.5) / kWidth, (y + 0.5) / kHeight);
    });
}

GDIBitmap Ring() {
    return Painted(kHeight, kHeight, [](int x, int y) { return RingAt((x + 0.5) / kHeight, (y + 0.5) / kHeight); });
}
