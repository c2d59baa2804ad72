// Effects that look each pixel up at another place of the picture, between its pixels.

#include "toolkit/effects/Effect.h"
#include "toolkit/effects/Rework.h"
#include "toolkit/effects/Turns.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kel::toolkit::effects {
namespace {

/// A place, counted from the middle of the picture, in pixels; y goes down.
struct Place {
    double x, y;
};

/// A place between pixels: the one to the left or above, and how far the next one is taken, of 256.
struct Between {
    int first, second;
    unsigned share;
};

/// @param at where the middle of the first of @p count pixels is 0. Beyond the ends, the pixels there go on.
Between Split(double at, int count) {
    constexpr int kParts = 256;
    const double last = count - 1;
    const auto parts = static_cast<std::int64_t>(std::floor(std::clamp(at, 0.0, last) * kParts + 0.5));
    const int first = static_cast<int>(parts / kParts);
    return {first, std::min(first + 1, count - 1), static_cast<unsigned>(parts % kParts)};
}

/// The weighed mean of the four pixels around a place, channel by channel.
template <class Pixels>
std::uint32_t Sample(Pixels pixels, const DibLock& from, const Between& x, const Between& y) {
    const std::uint32_t corners[4] = {pixels.Load(from.Row(y.first), x.first), pixels.Load(from.Row(y.first), x.second),
                                      pixels.Load(from.Row(y.second), x.first),
                                      pixels.Load(from.Row(y.second), x.second)};
    const unsigned weights[4] = {(256 - x.share) * (256 - y.share), x.share * (256 - y.share),
                                 (256 - x.share) * y.share, x.share * y.share};
    std::uint32_t pixel = 0;
    for (int shift = 0; shift < 32; shift += 8) {
        unsigned sum = 1U << 15;
        for (int corner = 0; corner < 4; ++corner)
            sum += (corners[corner] >> shift & 0xFF) * weights[corner];
        pixel |= (sum >> 16) << shift;
    }
    return pixel;
}

bool IsInside(const Place& place, const DibLayout& layout) {
    return std::abs(place.x) <= layout.width / 2.0 && std::abs(place.y) <= layout.height / 2.0;
}

/// Fills each pixel with what is at `map(place)`; those that come from outside stay 0.
template <class Pixels, class Map>
void LookUp(Pixels pixels, const DibLock& from, const DibLock& to, Map map) {
    const DibLayout& old = from.Layout();
    const DibLayout& fresh = to.Layout();
    for (int y = 0; y < fresh.height; ++y)
        for (int x = 0; x < fresh.width; ++x) {
            const Place place = map(Place{x + 0.5 - fresh.width / 2.0, y + 0.5 - fresh.height / 2.0});
            if (IsInside(place, old))
                pixels.Store(to.Row(y), x,
                             Sample(pixels, from, Split(place.x + old.width / 2.0 - 0.5, old.width),
                                    Split(place.y + old.height / 2.0 - 0.5, old.height)));
        }
}

template <class Map>
HRESULT Warp(PackedDib& picture, std::int64_t width, std::int64_t height, Map map) {
    return Remake(picture, width, height, [map](const DibLock& from, const DibLock& to) {
        WithPixels(from.Layout().depth, [&](auto pixels) { LookUp(pixels, from, to, map); });
    });
}

/// Turns places around the middle.
struct Turn {
    double cosine, sine;

    explicit Turn(double radians) : cosine(std::cos(radians)), sine(std::sin(radians)) {}
    Place operator()(const Place& place) const {
        return {place.x * cosine - place.y * sine, place.x * sine + place.y * cosine};
    }
};

/// Warps what lies within the largest circle around the middle: `map(place, distance)`, the distance being 1 on the
/// circle.
template <class Map>
HRESULT WarpCircle(PackedDib& picture, Map map) {
    const double radius = std::min(picture.Layout().width, picture.Layout().height) / 2.0;
    return Warp(picture, picture.Layout().width, picture.Layout().height, [=](const Place& place) {
        const double distance = std::hypot(place.x, place.y) / radius;
        return distance < 1 ? map(place, distance) : place;
    });
}

/// Moves what lies within that circle to and from the middle: pixels come from the distance `rule(distance)`.
template <class Rule>
HRESULT WarpDistances(PackedDib& picture, Rule rule) {
    return WarpCircle(picture, [rule](const Place& place, double distance) {
        const double scale = distance > 0 ? rule(distance) / distance : 1;
        return Place{place.x * scale, place.y * scale};
    });
}

/// The side that a turned picture takes. What is no more than rounding does not add a pixel.
std::int64_t TurnedSide(int along, int across, const Turn& turn) {
    return static_cast<std::int64_t>(std::ceil(along * std::abs(turn.cosine) + across * std::abs(turn.sine) - 1e-6));
}

HRESULT TurnFreely(PackedDib& picture, double radians) {
    const Turn turn(radians);
    const int width = picture.Layout().width;
    const int height = picture.Layout().height;
    return Warp(picture, TurnedSide(width, height, turn), TurnedSide(height, width, turn), turn);
}

} // namespace

HRESULT Rotate(PackedDib& picture, double angle) {
    if (!std::isfinite(angle))
        return E_INVALIDARG;
    const double rest = std::fmod(angle, 360); // exact for every angle
    const double degrees = rest < 0 ? rest + 360 : rest;
    const double quarters = degrees / 90;
    if (quarters == std::floor(quarters))
        return TurnQuarters(picture, static_cast<int>(quarters) % 4);
    return TurnFreely(picture, degrees * std::numbers::pi / 180);
}

HRESULT Swirl(PackedDib& picture, double angle) {
    if (!std::isfinite(angle))
        return E_INVALIDARG;
    const double radians = angle * std::numbers::pi / 180;
    return WarpCircle(picture, [radians](const Place& place, double distance) {
        return Turn(radians * (1 - distance) * (1 - distance))(place);
    });
}

HRESULT Pinch(PackedDib& picture, SHORT amount) {
    const double power = 1 - std::clamp<int>(amount, -100, 100) / 200.0;
    return WarpDistances(picture, [power](double distance) { return std::pow(distance, power); });
}

HRESULT Bulge(PackedDib& picture, LONG concave) {
    constexpr double kQuarter = std::numbers::pi / 2;
    if (concave == 1)
        return WarpDistances(picture, [](double distance) { return std::sin(kQuarter * distance); });
    if (concave == 0)
        return WarpDistances(picture, [](double distance) { return std::asin(distance) / kQuarter; });
    return E_INVALIDARG;
}

} // namespace kel::toolkit::effects
