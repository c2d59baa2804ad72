#include "platform/gdi/Colours.h"

#include <climits>

namespace kel::platform {
namespace {

// From a channel's few bits to eight: the high bits fill the low ones, so that all ones stay all ones.
constexpr std::uint32_t From5(std::uint32_t value) {
    return (value & 31) << 3 | (value & 31) >> 2;
}
constexpr std::uint32_t From6(std::uint32_t value) {
    return (value & 63) << 2 | (value & 63) >> 4;
}

constexpr int Square(int value) {
    return value * value;
}

int Distance(const RGBQUAD& entry, COLORREF colour) {
    return Square(entry.rgbRed - GetRValue(colour)) + Square(entry.rgbGreen - GetGValue(colour)) +
           Square(entry.rgbBlue - GetBValue(colour));
}

constexpr RGBQUAD kMono[2] = {EntryOf(RGB(0, 0, 0)), EntryOf(RGB(255, 255, 255))};

constexpr RGBQUAD k16[16] = {
    EntryOf(RGB(0, 0, 0)),       EntryOf(RGB(128, 0, 0)),   EntryOf(RGB(0, 128, 0)),   EntryOf(RGB(128, 128, 0)),
    EntryOf(RGB(0, 0, 128)),     EntryOf(RGB(128, 0, 128)), EntryOf(RGB(0, 128, 128)), EntryOf(RGB(128, 128, 128)),
    EntryOf(RGB(192, 192, 192)), EntryOf(RGB(255, 0, 0)),   EntryOf(RGB(0, 255, 0)),   EntryOf(RGB(255, 255, 0)),
    EntryOf(RGB(0, 0, 255)),     EntryOf(RGB(255, 0, 255)), EntryOf(RGB(0, 255, 255)), EntryOf(RGB(255, 255, 255)),
};

constexpr std::array<RGBQUAD, 20> kStatic = {
    EntryOf(RGB(0, 0, 0)),       EntryOf(RGB(128, 0, 0)),     EntryOf(RGB(0, 128, 0)),     EntryOf(RGB(128, 128, 0)),
    EntryOf(RGB(0, 0, 128)),     EntryOf(RGB(128, 0, 128)),   EntryOf(RGB(0, 128, 128)),   EntryOf(RGB(192, 192, 192)),
    EntryOf(RGB(192, 220, 192)), EntryOf(RGB(166, 202, 240)), EntryOf(RGB(255, 251, 240)), EntryOf(RGB(160, 160, 164)),
    EntryOf(RGB(128, 128, 128)), EntryOf(RGB(255, 0, 0)),     EntryOf(RGB(0, 255, 0)),     EntryOf(RGB(255, 255, 0)),
    EntryOf(RGB(0, 0, 255)),     EntryOf(RGB(255, 0, 255)),   EntryOf(RGB(0, 255, 255)),   EntryOf(RGB(255, 255, 255)),
};

// Eight reds by eight greens by four blues, with the static colours in place of the first and last ten.
constexpr std::array<RGBQUAD, 256> Cube() {
    std::array<RGBQUAD, 256> cube{};
    for (int i = 0; i < 256; ++i)
        cube[i] = i < 10     ? kStatic[i]
                  : i >= 246 ? kStatic[i - 236]
                             : EntryOf(RGB((i & 7) << 5, (i >> 3 & 7) << 5, i >> 6 << 6));
    return cube;
}

constexpr std::array<RGBQUAD, 256> k256 = Cube();

} // namespace

COLORREF ColourOfPixel(const Surface& surface, std::uint32_t value) {
    switch (surface.format) {
    case PixelFormat::Rgb555:
        return RGB(From5(value >> 10), From5(value >> 5), From5(value));
    case PixelFormat::Rgb565:
        return RGB(From5(value >> 11), From6(value >> 5), From5(value));
    case PixelFormat::Bgr24:
    case PixelFormat::Bgrx32:
        return Swapped(value);
    default:
        if (!surface.table)
            return value != 0 ? RGB(255, 255, 255) : RGB(0, 0, 0);
        return value < static_cast<std::uint32_t>(surface.tableSize) ? ColourOf(surface.table[value]) : RGB(0, 0, 0);
    }
}

std::uint32_t PixelOfColour(const Surface& surface, COLORREF colour) {
    const std::uint32_t red = GetRValue(colour);
    const std::uint32_t green = GetGValue(colour);
    const std::uint32_t blue = GetBValue(colour);
    switch (surface.format) {
    case PixelFormat::Rgb555:
        return red >> 3 << 10 | green >> 3 << 5 | blue >> 3;
    case PixelFormat::Rgb565:
        return red >> 3 << 11 | green >> 2 << 5 | blue >> 3;
    case PixelFormat::Bgr24:
    case PixelFormat::Bgrx32:
        return Swapped(colour);
    default:
        return static_cast<std::uint32_t>(surface.table ? NearestEntry(surface.table, surface.tableSize, colour)
                                                        : NearestEntry(kMono, 2, colour));
    }
}

int NearestEntry(const RGBQUAD* table, int size, COLORREF colour) {
    int nearest = 0;
    int smallest = INT_MAX;
    for (int i = 0; i < size && smallest != 0; ++i) {
        const int distance = Distance(table[i], colour);
        if (distance < smallest) {
            smallest = distance;
            nearest = i;
        }
    }
    return nearest;
}

const RGBQUAD* DefaultTable(int bits) {
    return bits == 1 ? kMono : bits == 4 ? k16 : k256.data();
}

const std::array<RGBQUAD, 20>& DefaultPalette() {
    return kStatic;
}

COLORREF Resolved(COLORREF colour) {
    constexpr COLORREF kPaletteIndex = 0x01000000;
    if ((colour & 0xFF000000) == kPaletteIndex)
        return ColourOf(kStatic[(colour & 0xFFFF) < kStatic.size() ? colour & 0xFFFF : 0]);
    return colour & 0xFFFFFF;
}

} // namespace kel::platform
