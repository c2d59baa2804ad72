#include "toolkit/effects/Effect.h"
#include "toolkit/effects/Resampling.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <doctest/doctest.h>
#include <functional>
#include <limits>
#include <numbers>
#include <random>
#include <string>
#include <vector>

using namespace kel::toolkit;

namespace {

/// Blue, green, red, alpha.
using Pixel = std::array<double, 4>;

/// A picture as the formulas of docs/effects.md see it. The lookup goes on beyond the edges.
struct Plain {
    int width, height;
    std::vector<Pixel> pixels;

    Plain(int w, int h) : width(w), height(h), pixels(static_cast<std::size_t>(w) * static_cast<std::size_t>(h)) {}
    const Pixel& At(int x, int y) const {
        return pixels[static_cast<std::size_t>(std::clamp(y, 0, height - 1)) * static_cast<std::size_t>(width) +
                      static_cast<std::size_t>(std::clamp(x, 0, width - 1))];
    }
    Pixel& At(int x, int y) { return const_cast<Pixel&>(std::as_const(*this).At(x, y)); }
};

/// A random picture. Grey ones have an indexed table of greys in a shuffled order.
PackedDib NewPicture(int width, int height, int depth, bool grey = false, bool topDown = false) {
    std::mt19937 random(static_cast<unsigned>(width * height + depth));
    DibLayout layout = *LayoutOf(width, height, depth);
    layout.topDown = topDown;
    PackedDib picture = PackedDib::Make(layout);
    const DibLock lock(picture);
    for (RGBQUAD& colour : lock.Colours()) {
        const auto blue = static_cast<BYTE>(random());
        colour = {blue, grey ? blue : static_cast<BYTE>(random()), grey ? blue : static_cast<BYTE>(random()), 0};
    }
    for (int y = 0; y < height; ++y)
        for (int i = 0; i < width * depth / 8; ++i)
            lock.Row(y)[i] = static_cast<BYTE>(random());
    return picture;
}

Pixel PixelAt(const DibLock& lock, int x, int y) {
    const auto depth = static_cast<unsigned>(lock.Layout().depth);
    const unsigned bit = static_cast<unsigned>(x) * depth;
    const BYTE* const at = lock.Row(y) + bit / 8;
    if (depth >= 24)
        return {double(at[0]), double(at[1]), double(at[2]), depth == 32 ? double(at[3]) : 0};
    if (depth == 16) {
        const unsigned value = at[0] | at[1] << 8;
        const auto wide = [](unsigned five) { return double((five & 31) << 3 | (five & 31) >> 2); };
        return {wide(value), wide(value >> 5), wide(value >> 10), 0};
    }
    const RGBQUAD colour = lock.Colours()[*at >> (8 - depth - bit % 8) & ((1U << depth) - 1)];
    return {double(colour.rgbBlue), double(colour.rgbGreen), double(colour.rgbRed), 0};
}

Plain Read(const PackedDib& picture) {
    const DibLock lock(picture);
    Plain plain(lock.Layout().width, lock.Layout().height);
    for (int y = 0; y < plain.height; ++y)
        for (int x = 0; x < plain.width; ++x)
            plain.At(x, y) = PixelAt(lock, x, y);
    return plain;
}

double Furthest(const Plain& one, const Plain& other) {
    if (one.width != other.width || one.height != other.height)
        return 999;
    double most = 0;
    for (std::size_t i = 0; i < one.pixels.size(); ++i)
        for (std::size_t channel = 0; channel < 4; ++channel)
            most = std::max(most, std::abs(one.pixels[i][channel] - other.pixels[i][channel]));
    return most;
}

double Rounded(double value) {
    return std::clamp(std::floor(value + 0.5), 0.0, 255.0);
}

using Formula = std::function<Plain(const Plain&)>;
using Change = std::function<HRESULT(PackedDib&)>;

/// `rule(picture, x, y, channel)` for each colour; alpha stays.
template <class Rule>
Formula Each(Rule rule) {
    return [rule](const Plain& from) {
        Plain to = from;
        for (int y = 0; y < from.height; ++y)
            for (int x = 0; x < from.width; ++x)
                for (std::size_t c = 0; c < 3; ++c)
                    to.At(x, y)[c] = Rounded(rule(from, x, y, c));
        return to;
    };
}

template <class Rule>
Formula Tone(Rule rule) {
    return Each([rule](const Plain& from, int x, int y, std::size_t c) { return rule(from.At(x, y)[c]); });
}

/// Sums `rule(dx, dy, value)` over a square of neighbours.
template <class Rule>
double Around(const Plain& from, int x, int y, std::size_t c, int reach, Rule rule) {
    double sum = 0;
    for (int dy = -reach; dy <= reach; ++dy)
        for (int dx = -reach; dx <= reach; ++dx)
            sum += rule(dx, dy, from.At(x + dx, y + dy)[c]);
    return sum;
}

std::pair<double, double> Extremes(const Plain& from, int x, int y, std::size_t c) {
    double least = 255, most = 0;
    Around(from, x, y, c, 1, [&](int, int, double value) {
        least = std::min(least, value);
        most = std::max(most, value);
        return 0.0;
    });
    return {least, most};
}

double Blurred(const Plain& from, int x, int y, std::size_t c) {
    constexpr int kShares[] = {1, 4, 6, 4, 1};
    return Rounded(Around(from, x, y, c, 2,
                          [&](int dx, int dy, double value) { return value * kShares[dx + 2] * kShares[dy + 2]; }) /
                   256);
}

Formula Detail(double percent) {
    return Each([percent](const Plain& from, int x, int y, std::size_t c) {
        const double value = from.At(x, y)[c];
        const double added = (value - Blurred(from, x, y, c)) * percent / 100;
        return value + std::copysign(std::floor(std::abs(added) + 0.5), added);
    });
}

double Lightness(const Pixel& pixel) {
    return std::floor((114 * pixel[0] + 587 * pixel[1] + 299 * pixel[2] + 500) / 1000);
}

Plain Equalized(const Plain& from) {
    const auto upTo = [&](double value) {
        return double(std::ranges::count_if(from.pixels, [&](const Pixel& p) { return Lightness(p) <= value; }));
    };
    double darkest = 0;
    while (upTo(darkest) == 0)
        ++darkest;
    const double least = upTo(darkest);
    const double rest = static_cast<double>(from.pixels.size()) - least;
    return Tone([&](double value) { return 255 * std::max(upTo(value) - least, 0.0) / rest; })(from);
}

double BlockMean(const Plain& from, int x, int y, std::size_t c, int side) {
    double sum = 0;
    int count = 0;
    for (int v = y / side * side; v < std::min(y / side * side + side, from.height); ++v)
        for (int u = x / side * side; u < std::min(x / side * side + side, from.width); ++u, ++count)
            sum += from.At(u, v)[c];
    return sum / count;
}

/// A new picture of that size; `rule(from, x, y)` is each pixel.
template <class Rule>
Formula Sized(int width, int height, Rule rule) {
    return [=](const Plain& from) {
        Plain to(width, height);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                to.At(x, y) = rule(from, x, y);
        return to;
    };
}

/// The share of old n in new @p at: by overlap, or by the distance of the middles.
double ShareOf(int n, int at, int from, int to) {
    const double factor = double(from) / to;
    if (factor <= 1) {
        const double place = std::clamp((at + 0.5) * factor - 0.5, 0.0, from - 1.0);
        return std::max(0.0, 1 - std::abs(place - n));
    }
    return std::max(0.0, std::min(n + 1.0, (at + 1) * factor) - std::max<double>(n, at * factor)) / factor;
}

Formula Resampled(int width, int height) {
    return Sized(width, height, [=](const Plain& from, int x, int y) {
        Pixel pixel = {};
        for (int v = 0; v < from.height; ++v)
            for (int u = 0; u < from.width; ++u)
                for (std::size_t c = 0; c < 4; ++c)
                    pixel[c] +=
                        from.At(u, v)[c] * ShareOf(u, x, from.width, width) * ShareOf(v, y, from.height, height);
        return pixel;
    });
}

Formula Resized(int width, int height) {
    return Sized(width, height, [=](const Plain& from, int x, int y) {
        return from.At(static_cast<int>((x + 0.5) * from.width / width),
                       static_cast<int>((y + 0.5) * from.height / height));
    });
}

/// `rule(x, y)`, both counted from the middle, is the place where a pixel comes from.
template <class Rule>
Formula Looked(int width, int height, Rule rule) {
    return Sized(width, height, [=](const Plain& from, int x, int y) {
        const auto [u, v] = rule(x + 0.5 - width / 2.0, y + 0.5 - height / 2.0);
        Pixel pixel = {};
        if (std::abs(u) > from.width / 2.0 || std::abs(v) > from.height / 2.0)
            return pixel;
        const double left = std::clamp(u + from.width / 2.0 - 0.5, 0.0, from.width - 1.0);
        const double top = std::clamp(v + from.height / 2.0 - 0.5, 0.0, from.height - 1.0);
        for (int dy = 0; dy < 2; ++dy)
            for (int dx = 0; dx < 2; ++dx)
                for (std::size_t c = 0; c < 4; ++c) {
                    const double px = left - std::floor(left), py = top - std::floor(top);
                    pixel[c] += from.At(int(left) + dx, int(top) + dy)[c] * (dx ? px : 1 - px) * (dy ? py : 1 - py);
                }
        return pixel;
    });
}

struct Point {
    double x, y;
};

constexpr int kWidth = 21;
constexpr int kHeight = 15;
constexpr double kRadius = 7.5;
constexpr double kDegree = std::numbers::pi / 180;

Point TurnedBy(double x, double y, double radians) {
    return {x * std::cos(radians) - y * std::sin(radians), x * std::sin(radians) + y * std::cos(radians)};
}

/// Within the circle, pixels come from the distance `rule(r)`, r being 1 on the circle.
template <class Rule>
Formula Lens(Rule rule) {
    return Looked(kWidth, kHeight, [rule](double x, double y) {
        const double r = std::hypot(x, y) / kRadius;
        const double scale = r < 1 && r > 0 ? rule(r) / r : 1;
        return Point{x * scale, y * scale};
    });
}

enum class Keeps { colours, depth, pixels }; // tables change; wide; everything

struct Case {
    std::string name;
    Keeps keeps;
    double tolerance;
    Change change;
    Formula formula;
};

// Bilinear shares are rounded to 256ths on both axes.
constexpr double kBetween = 1.5;

template <class... Arguments, class... Given>
Change Call(HRESULT (*effect)(PackedDib&, Arguments...), Given... given) {
    return [=](PackedDib& picture) { return effect(picture, static_cast<Arguments>(given)...); };
}

std::vector<Case> Cases() {
    const auto brighter = [](double by) { return Tone([by](double v) { return v + by * 2.55; }); };
    const auto steeper = [](double slope) { return Tone([slope](double v) { return 127.5 + slope * (v - 127.5); }); };
    const auto levels = [](int n) { return Tone([n](double v) { return Rounded(v * n / 255) * 255 / n; }); };
    const auto inverse = [](double v) { return 255 - v; };
    const auto same = [](const Plain& from) { return from; };
    std::vector<Case> cases = {
        {"negate", Keeps::colours, 0, Call(effects::Negate), Tone(inverse)},
        {"brightness 30", Keeps::colours, 0, Call(effects::Brightness, 30), brighter(30)},
        {"brightness beyond", Keeps::colours, 0, Call(effects::Brightness, -1000), brighter(-100)},
        {"contrast 50", Keeps::colours, 0, Call(effects::Contrast, 50), steeper(2)},
        {"contrast -40", Keeps::colours, 0, Call(effects::Contrast, -40), steeper(0.6)},
        {"contrast 100", Keeps::colours, 0, Call(effects::Contrast, 100), steeper(1000)},
        {"gamma 2.2", Keeps::colours, 0, Call(effects::Gamma, 2.2F),
         Tone([](double v) { return 255 * std::pow(v / 255, 1 / double(2.2F)); })},
        {"solarize 100", Keeps::colours, 0, Call(effects::Solarize, 100),
         Tone([](double v) { return v < 100 ? v : 255 - v; })},
        {"solarize beyond", Keeps::colours, 0, Call(effects::Solarize, 256), same},
        {"posterize 4", Keeps::colours, 0, Call(effects::Posterize, 4), levels(3)},
        {"posterize beyond", Keeps::colours, 0, Call(effects::Posterize, 0), levels(1)},
        {"equalize", Keeps::colours, 0, Call(effects::Equalize), Equalized},
        {"flip", Keeps::pixels, 0, Call(effects::Flip),
         Sized(kWidth, kHeight, [](const Plain& from, int x, int y) { return from.At(x, kHeight - 1 - y); })},
        {"mirror", Keeps::pixels, 0, Call(effects::Mirror),
         Sized(kWidth, kHeight, [](const Plain& from, int x, int y) { return from.At(kWidth - 1 - x, y); })},
        {"resize down", Keeps::pixels, 0, Call(effects::ResizeTo, 13, 4), Resized(13, 4)},
        {"resize up", Keeps::pixels, 0, Call(effects::ResizeTo, 50, 16), Resized(50, 16)},
        {"resize to nothing", Keeps::pixels, 0, Call(effects::ResizeTo, 0, 0), Resized(1, 1)},
        {"rotate 90", Keeps::pixels, 0, Call(effects::Rotate, 90),
         Sized(kHeight, kWidth, [](const Plain& from, int x, int y) { return from.At(kWidth - 1 - y, x); })},
        {"rotate 180", Keeps::pixels, 0, Call(effects::Rotate, -180),
         Sized(kWidth, kHeight, [](const Plain& f, int x, int y) { return f.At(kWidth - 1 - x, kHeight - 1 - y); })},
        {"rotate 270", Keeps::pixels, 0, Call(effects::Rotate, 630),
         Sized(kHeight, kWidth, [](const Plain& from, int x, int y) { return from.At(y, kHeight - 1 - x); })},
        {"rotate 720", Keeps::pixels, 0, Call(effects::Rotate, 720), same},
        {"rotate 30", Keeps::depth, kBetween, Call(effects::Rotate, 30),
         Looked(26, 24, [](double x, double y) { return TurnedBy(x, y, 30 * kDegree); })},
        {"swirl 200", Keeps::depth, kBetween, Call(effects::Swirl, 200),
         Looked(kWidth, kHeight,
                [](double x, double y) {
                    const double rest = std::max(0.0, 1 - std::hypot(x, y) / kRadius);
                    return TurnedBy(x, y, 200 * kDegree * rest * rest);
                })},
        {"pinch 60", Keeps::depth, kBetween, Call(effects::Pinch, 60), Lens([](double r) { return std::pow(r, 0.7); })},
        {"pinch beyond", Keeps::depth, kBetween, Call(effects::Pinch, -999),
         Lens([](double r) { return std::pow(r, 1.5); })},
        {"concave", Keeps::depth, kBetween, Call(effects::Bulge, 1),
         Lens([](double r) { return std::sin(90 * kDegree * r); })},
        {"convex", Keeps::depth, kBetween, Call(effects::Bulge, 0),
         Lens([](double r) { return std::asin(r) / 90 / kDegree; })},
        {"mosaic 4", Keeps::depth, 0, Call(effects::Mosaic, 4),
         Each([](const Plain& from, int x, int y, std::size_t c) { return BlockMean(from, x, y, c, 4); })},
        {"mosaic beyond", Keeps::depth, 0, Call(effects::Mosaic, -3), same},
        {"mosaic of one", Keeps::depth, 0, Call(effects::Mosaic, 32767),
         Each([](const Plain& from, int x, int y, std::size_t c) { return BlockMean(from, x, y, c, 99); })},
        {"resample to a third", Keeps::depth, 0.55, Call(effects::ResampleTo, 7, 5), Resampled(7, 5)},
        {"resample down", Keeps::depth, 0.55, Call(effects::ResampleTo, 10, 4), Resampled(10, 4)},
        {"resample up and down", Keeps::depth, 0.55, Call(effects::ResampleTo, 40, 2), Resampled(40, 2)},
        {"resample to nothing", Keeps::depth, 0.55, Call(effects::ResampleTo, 0, 0), Resampled(1, 1)},
    };
    PackedDib probe = NewPicture(1, 1, 24);
    if (effects::Erode(probe) == E_NOTIMPL)
        return cases;
    const Case filters[] = {
        {"erode", Keeps::depth, 0, Call(effects::Erode),
         Each([](const Plain& from, int x, int y, std::size_t c) { return Extremes(from, x, y, c).first; })},
        {"outline", Keeps::depth, 0, Call(effects::Outline), Each([](const Plain& from, int x, int y, std::size_t c) {
             const auto [least, most] = Extremes(from, x, y, c);
             return most - least;
         })},
        {"emboss", Keeps::depth, 0, Call(effects::Emboss), Each([](const Plain& from, int x, int y, std::size_t c) {
             return 128 + from.At(x + 1, y + 1)[c] - from.At(x - 1, y - 1)[c];
         })},
        {"sharpen 70", Keeps::depth, 0, Call(effects::Sharpen, 70), Detail(70)},
        {"sharpen beyond", Keeps::depth, 0, Call(effects::Sharpen, -5), same},
        {"soften 35", Keeps::depth, 0, Call(effects::Soften, 35), Detail(-35)},
        {"soften beyond", Keeps::depth, 0, Call(effects::Soften, 1000), Detail(-100)},
    };
    cases.insert(cases.end(), std::begin(filters), std::end(filters));
    return cases;
}

int DepthAfter(Keeps keeps, int depth, bool grey) {
    if (keeps == Keeps::pixels || (keeps == Keeps::colours && depth != 16))
        return depth;
    return depth <= 8 && grey ? 8 : std::max(depth, 24);
}

} // namespace

TEST_CASE("every effect gives what its formula says, at every depth, in both orders of rows") {
    for (const Case& effect : Cases())
        for (const int depth : {1, 4, 8, 16, 24, 32})
            for (const bool variant : {false, true}) {
                CAPTURE(effect.name);
                CAPTURE(depth);
                CAPTURE(variant);
                PackedDib picture = NewPicture(kWidth, kHeight, depth, variant, variant);
                const Plain expected = effect.formula(Read(picture));
                REQUIRE(effect.change(picture) == S_OK);
                CHECK(Furthest(Read(picture), expected) <= effect.tolerance);
                CHECK(picture.Layout().topDown == variant);
                if (effect.name.find("beyond") == std::string::npos)
                    CHECK(picture.Layout().depth == DepthAfter(effect.keeps, depth, variant));
            }
}

TEST_CASE("full turns do not count, however many they are") {
    for (const double angle : {1e18, -1e18, 1e40}) {
        CAPTURE(angle);
        PackedDib turned = NewPicture(5, 4, 24), expected = NewPicture(5, 4, 24);
        REQUIRE(effects::Rotate(turned, angle) == S_OK);
        REQUIRE(effects::Rotate(expected, std::fmod(angle, 360)) == S_OK);
        REQUIRE(turned.Layout() == expected.Layout());
        CHECK(Furthest(Read(turned), Read(expected)) == 0);
    }
}

TEST_CASE("arguments without a meaning are refused, and so is a size beyond memory; the picture stays") {
    const Change refused[] = {
        Call(effects::Gamma, 0.0F), Call(effects::Gamma, -1.0F),    Call(effects::Gamma, std::nanf("")),
        Call(effects::Rotate, NAN), Call(effects::Swirl, INFINITY), Call(effects::Bulge, 2),
        Call(effects::Bulge, -1),
    };
    const PackedDib original = NewPicture(5, 4, 16);
    PackedDib picture = NewPicture(5, 4, 16);
    for (const Change& change : refused)
        CHECK(change(picture) == E_INVALIDARG);
    CHECK(effects::ResizeTo(picture, 65535, 65535) == E_OUTOFMEMORY);
    CHECK(effects::ResampleTo(picture, 65535, 65535) == E_OUTOFMEMORY);
    CHECK(picture.Layout() == original.Layout());
    CHECK(Furthest(Read(picture), Read(original)) == 0);
}

TEST_CASE("all roads of resampling give the same bytes, and write no others") {
    const effects::resampling::Road* const wide = effects::resampling::Avx2Road();
    if (wide == nullptr)
        return;
    struct Size {
        int width, height;
    };
    for (const int depth : {8, 24, 32})
        for (const Size& from : {Size{1, 1}, {33, 2}, {97, 41}, {600, 9}})
            for (const Size& to : {Size{1, 1}, {7, 5}, {32, 3}, {301, 77}}) {
                PackedDib results[2];
                for (const int road : {0, 1}) {
                    effects::resampling::TakeRoad(road ? wide : &effects::resampling::kPortableRoad);
                    results[road] = NewPicture(from.width, from.height, depth);
                    REQUIRE(effects::ResampleTo(results[road], static_cast<WORD>(to.width),
                                                static_cast<WORD>(to.height)) == S_OK);
                }
                effects::resampling::TakeRoad(nullptr);
                const DibLock one(results[0]), other(results[1]);
                CHECK(std::ranges::equal(one.Memory(), other.Memory()));
            }
}
