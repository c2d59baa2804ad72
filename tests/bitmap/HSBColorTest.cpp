#include <doctest/doctest.h>
#include <kelcore/bitmap/hsb.h>

#include <cstddef>
#include <tuple>

static_assert(offsetof(HSBColor, hue) == 0 && offsetof(HSBColor, saturation) == 8 &&
              offsetof(HSBColor, brightness) == 16 && sizeof(HSBColor) == 24);

TEST_CASE("colours become hue, saturation and brightness") {
    const std::tuple<unsigned long, double, double, double> cases[] = {
        {0x000000FF, 0, 1, 1},
        {0x0000FF00, 0.3333333333333333, 1, 1},
        {0x00FF0000, 4 * 0.16666666666666666, 1, 1},
        {0x00FFFF00, 0.5, 1, 1},
        {0x0000FFFF, 0.16666666666666666, 1, 1},
        {0x00FF00FF, -1 * 0.16666666666666666 + 1, 1, 1},
        {0x00000000, 0, 0, 0},
        {0x00FFFFFF, 0, 0, 255 * 0.00392156862745098},
        {0xFF808080, 0, 0, 0.5019607843137255},
        {0x00402080, (0x20 - 0x40) / 96.0 * 0.16666666666666666 + 1, 0.75, 128 * 0.00392156862745098}};
    for (const auto& [color, hue, saturation, brightness] : cases) {
        CAPTURE(color);
        const HSBColor made = HSBColor::RGBtoHSB(color);
        CHECK((made.hue == hue && made.saturation == saturation && made.brightness == brightness));
        CHECK(static_cast<unsigned long>(HSBColor(color)) == (color & 0xFFFFFF));
    }
}

TEST_CASE("hue, saturation and brightness become colours, truncated and wrapped") {
    const std::tuple<double, double, double, unsigned long> cases[] = {
        {0.5, 0.5, 0.5, 0x007F7F3F}, {1.0, 1, 1, 0x000000FF},  {2.0, 1, 1, 0x000000FF},    {-1.0, 1, 1, 0x000000FF},
        {1.25, 1, 1, 0x0000FF7F},    {0.25, 1, 1, 0x0000FF7F}, {0.6, 1, 0.5, 0x007F3300},  {0.75, 1, 1, 0x00FF007F},
        {0.9, 0.5, 1, 0x00CB7FFF},   {0, 0, 2.0, 0x00FEFEFE},  {-1e-17, 1, 1, 0x000000FF}, {0, 0, 1e300, 0},
        {0, 0, -0.01, 0x00FEFEFE}};
    for (const auto& [hue, saturation, brightness, color] : cases) {
        CAPTURE(hue);
        CAPTURE(brightness);
        CHECK(HSBColor::HSBtoRGB(hue, saturation, brightness) == color);
    }
    int darker = 0;
    for (unsigned long grey = 0; grey < 256; ++grey) {
        const unsigned long back = HSBColor(grey * 0x010101);
        CHECK((back == grey * 0x010101 || back == (grey - 1) * 0x010101));
        darker += back != grey * 0x010101;
    }
    CHECK(darker == 24);
}
