// Effects that give every channel another value by a curve. Pictures with a colour table have its colours changed.

#include "toolkit/effects/Effect.h"
#include "toolkit/effects/Rework.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kel::toolkit::effects {
namespace {

/// The new value of each value of a channel.
using Curve = std::array<BYTE, 256>;

BYTE ToByte(double value) {
    return static_cast<BYTE>(std::clamp(std::floor(value + 0.5), 0.0, 255.0));
}

template <class Rule>
Curve CurveOf(Rule rule) {
    Curve curve;
    for (std::size_t value = 0; value < curve.size(); ++value)
        curve[value] = ToByte(rule(static_cast<double>(value)));
    return curve;
}

void BendColours(std::span<RGBQUAD> colours, const Curve& curve) {
    for (RGBQUAD& colour : colours)
        colour = {curve[colour.rgbBlue], curve[colour.rgbGreen], curve[colour.rgbRed], colour.rgbReserved};
}

template <int Bytes>
void BendRow(BYTE* row, int width, const Curve& curve) {
    for (BYTE* const end = row + std::size_t{Bytes} * static_cast<std::size_t>(width); row != end; row += Bytes)
        for (int channel = 0; channel < 3; ++channel)
            row[channel] = curve[row[channel]];
}

void BendPixels(const DibLock& picture, const Curve& curve) {
    const auto bend = picture.Layout().depth == 24 ? BendRow<3> : BendRow<4>;
    for (int y = 0; y < picture.Layout().height; ++y)
        bend(picture.Row(y), picture.Layout().width, curve);
}

/// Has @p work change a picture whose values can be bent where they are: pixels of 16 bits are widened first.
template <class Work>
HRESULT Change(PackedDib& picture, Work work) {
    const bool packed = picture.Layout().depth == 16;
    PackedDib wide = packed ? Widened(picture) : PackedDib();
    {
        const DibLock lock(packed ? wide : picture);
        if (!lock)
            return E_OUTOFMEMORY;
        work(lock);
    }
    if (packed)
        picture = std::move(wide);
    return S_OK;
}

void Bend(const DibLock& picture, const Curve& curve) {
    if (picture.Layout().depth <= 8)
        BendColours(picture.Colours(), curve);
    else
        BendPixels(picture, curve);
}

HRESULT Bend(PackedDib& picture, const Curve& curve) {
    return Change(picture, [&curve](const DibLock& lock) { Bend(lock, curve); });
}

/// How many pixels have each luminance.
using Histogram = std::array<std::uint64_t, 256>;

std::size_t LuminanceOf(std::uint32_t colour) {
    return ((colour & 0xFF) * 114 + (colour >> 8 & 0xFF) * 587 + (colour >> 16 & 0xFF) * 299 + 500) / 1000;
}

/// The luminance of each value of an indexed pixel; those without a colour are black.
std::array<std::size_t, 256> LuminancesOf(std::span<const RGBQUAD> colours) {
    std::array<std::size_t, 256> luminances = {};
    for (std::size_t n = 0; n < std::min(colours.size(), luminances.size()); ++n)
        luminances[n] = LuminanceOf(
            static_cast<std::uint32_t>(colours[n].rgbBlue | colours[n].rgbGreen << 8 | colours[n].rgbRed << 16));
    return luminances;
}

template <class Luminance>
Histogram CountPixels(const DibLock& picture, Luminance luminance) {
    Histogram counts = {};
    WithPixels(picture.Layout().depth, [&](auto pixels) {
        for (int y = 0; y < picture.Layout().height; ++y)
            for (int x = 0; x < picture.Layout().width; ++x)
                ++counts[luminance(pixels.Load(picture.Row(y), x))];
    });
    return counts;
}

Histogram HistogramOf(const DibLock& picture) {
    if (picture.Layout().depth > 8)
        return CountPixels(picture, LuminanceOf);
    const auto luminances = LuminancesOf(picture.Colours());
    return CountPixels(picture, [&luminances](std::uint32_t pixel) { return luminances[pixel]; });
}

// Rounded to the nearest in whole numbers. A picture of a single luminance stays as it is.
Curve EqualizingCurve(const Histogram& counts) {
    const std::uint64_t darkest = *std::ranges::find_if(counts, [](std::uint64_t count) { return count != 0; });
    std::uint64_t all = 0;
    for (const std::uint64_t count : counts)
        all += count;
    const std::uint64_t rest = all - darkest;
    Curve curve = {};
    std::uint64_t upTo = 0;
    for (std::size_t value = 0; value < curve.size(); ++value) {
        upTo += counts[value];
        const std::uint64_t above = std::max(upTo, darkest) - darkest;
        curve[value] = static_cast<BYTE>(rest == 0 ? value : (above * 510 + rest) / (2 * rest));
    }
    return curve;
}

} // namespace

HRESULT Negate(PackedDib& picture) {
    return Bend(picture, CurveOf([](double value) { return 255 - value; }));
}

HRESULT Brightness(PackedDib& picture, SHORT amount) {
    const double shift = std::clamp<int>(amount, -100, 100) * 2.55;
    return Bend(picture, CurveOf([shift](double value) { return value + shift; }));
}

HRESULT Contrast(PackedDib& picture, SHORT amount) {
    const double percent = std::clamp<int>(amount, -100, 100);
    // At 100 percent any value that differs from the middle goes all the way.
    const double slope = percent < 0 ? (100 + percent) / 100 : 100 / std::max(100 - percent, 0.1);
    return Bend(picture, CurveOf([slope](double value) { return 127.5 + slope * (value - 127.5); }));
}

HRESULT Gamma(PackedDib& picture, float gamma) {
    if (!(gamma > 0) || !std::isfinite(gamma))
        return E_INVALIDARG;
    const double power = 1 / static_cast<double>(gamma);
    return Bend(picture, CurveOf([power](double value) { return 255 * std::pow(value / 255, power); }));
}

HRESULT Solarize(PackedDib& picture, SHORT threshold) {
    return Bend(picture, CurveOf([threshold](double value) { return value < threshold ? value : 255 - value; }));
}

HRESULT Posterize(PackedDib& picture, SHORT levels) {
    const int steps = std::clamp<int>(levels, 2, 256) - 1;
    return Bend(picture,
                CurveOf([steps](double value) { return std::floor(value * steps / 255 + 0.5) * 255 / steps; }));
}

HRESULT Equalize(PackedDib& picture) {
    return Change(picture, [](const DibLock& lock) { Bend(lock, EqualizingCurve(HistogramOf(lock))); });
}

} // namespace kel::toolkit::effects
