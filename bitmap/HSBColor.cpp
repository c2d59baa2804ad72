#include <kelcore/bitmap/hsb.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace {

constexpr double kPerChannelStep = 0.00392156862745098; // 1/255
constexpr double kPerSector = 0.16666666666666666;      // 1/6

// A channel: truncated, its low 8 bits. What no channel could ever mean is 0.
unsigned long Channel(double value) {
    constexpr double kBeyond = 1e18;
    const double scaled = value * 255.0;
    if (!(std::fabs(scaled) < kBeyond))
        return 0;
    return static_cast<unsigned long>(static_cast<std::int64_t>(scaled) & 0xFF);
}

unsigned long Color(double red, double green, double blue) {
    return Channel(red) | Channel(green) << 8 | Channel(blue) << 16;
}

// In sectors of the colour circle, -1 to 5. Red goes before green before blue where channels are equal.
double Sector(int r, int g, int b, int max, double delta) {
    if (r == max)
        return (g - b) / delta;
    if (g == max)
        return (b - r) / delta + 2.0;
    return (r - g) / delta + 4.0;
}

} // namespace

HSBColor::HSBColor() : hue(0.0), saturation(0.0), brightness(0.0) {}

HSBColor::HSBColor(double h, double s, double b) : hue(h), saturation(s), brightness(b) {}

HSBColor::HSBColor(unsigned long color) : HSBColor(RGBtoHSB(color)) {}

HSBColor& HSBColor::operator=(const HSBColor& other) {
    hue = other.hue;
    saturation = other.saturation;
    brightness = other.brightness;
    return *this;
}

HSBColor::operator unsigned long() const {
    return HSBtoRGB(*this);
}

HSBColor HSBColor::RGBtoHSB(unsigned long color) {
    const int r = static_cast<int>(color & 0xFF);
    const int g = static_cast<int>(color >> 8 & 0xFF);
    const int b = static_cast<int>(color >> 16 & 0xFF);
    const int max = std::max({r, g, b});
    const double delta = max - std::min({r, g, b});
    HSBColor result(0.0, 0.0, max * kPerChannelStep);
    if (delta == 0.0)
        return result;
    result.saturation = delta / max;
    result.hue = Sector(r, g, b, max, delta) * kPerSector;
    if (result.hue < 0.0)
        result.hue += 1.0;
    return result;
}

unsigned long HSBColor::HSBtoRGB(const HSBColor& color) {
    return HSBtoRGB(color.hue, color.saturation, color.brightness);
}

unsigned long HSBColor::HSBtoRGB(const double& hue, const double& saturation, const double& brightness) {
    if (saturation == 0.0)
        return Color(brightness, brightness, brightness);
    const double turn = (hue - std::floor(hue)) * 6.0;
    const double fraction = turn - std::floor(turn);
    const double p = (1.0 - saturation) * brightness;
    const double q = (1.0 - fraction * saturation) * brightness;
    const double t = (1.0 - (1.0 - fraction) * saturation) * brightness;
    switch (turn < 6.0 ? static_cast<int>(turn) : 0) {
    case 1:
        return Color(q, brightness, p);
    case 2:
        return Color(p, brightness, t);
    case 3:
        return Color(p, q, brightness);
    case 4:
        return Color(t, p, brightness);
    case 5:
        return Color(brightness, p, q);
    default: // 0, and the full turn that a hue just below 0 rounds to
        return Color(brightness, t, p);
    }
}
