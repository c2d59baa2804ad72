// The kernels against the definition, on random jobs. They are not exported: this test brings the sources along.
#include "platform/gdi/RowKernel.h"
#include "tests/compare/Cases.h"

#include <doctest/doctest.h>

#include <string>
#include <tuple>

using namespace kel::platform;
using kel::compare::Random;

namespace {

constexpr int kSide = 80; // rows longer than the vectors' largest step

/// A surface with pixels of its own, in either order of rows.
struct Picture {
    std::vector<std::uint8_t> pixels;
    Surface surface;

    Picture(Random& random, PixelFormat format) : pixels(kSide * kSide * 4) {
        const bool few = random.Below(2) == 0;
        for (auto& byte : pixels)
            byte = static_cast<std::uint8_t>(few ? random.Below(2) * 255 : random.Next());
        surface.width = random.Between(1, kSide);
        surface.height = random.Between(1, kSide);
        surface.format = format;
        const bool topDown = random.Below(2) == 0;
        surface.stride = topDown ? kSide * 4 : -kSide * 4;
        surface.top = pixels.data() + (topDown ? 0 : (surface.height - 1) * kSide * 4);
    }
};

constexpr PixelFormat kFormats[] = {PixelFormat::Rgb555, PixelFormat::Rgb565, PixelFormat::Bgr24, PixelFormat::Bgrx32,
                                    PixelFormat::Indexed8};

PixelFormat AnyFormat(Random& random) {
    return kFormats[random.Below(5)];
}

// Indices have no table here, so they are nothing to other formats.
PixelFormat AnyFormatFor(PixelFormat target, Random& random) {
    return target == PixelFormat::Indexed8 || random.Below(2) == 0 ? target : kFormats[random.Below(4)];
}

Pattern AnyPattern(Random& random) {
    Pattern pattern;
    pattern.solid = random.Next();
    if (random.Below(2) == 0)
        return pattern;
    pattern.width = random.Between(1, kSide);
    pattern.height = random.Between(1, 3);
    pattern.origin = {random.Between(-kSide, kSide), random.Between(-kSide, kSide)};
    for (int i = 0; i < pattern.width * pattern.height; ++i)
        pattern.pixels.push_back(random.Next());
    return pattern;
}

// Of two rectangles, which begin and end anywhere.
struct AnyClip {
    pixman_region32_t region;

    AnyClip(Random& random, const Surface& surface) {
        pixman_region32_init(&region);
        for (int i = 0; i < 2; ++i) {
            const int x = random.Between(0, surface.width - 1);
            const int y = random.Between(0, surface.height - 1);
            pixman_region32_union_rect(&region, &region, x, y, static_cast<unsigned>(surface.width - x),
                                       static_cast<unsigned>(random.Between(1, surface.height - y)));
        }
    }
    AnyClip(const AnyClip&) = delete;
    ~AnyClip() { pixman_region32_fini(&region); }
};

Axis AnyAxis(Random& random, bool mirrors) {
    const int size = random.Between(1, kSide);
    const int from = random.Below(3) == 0 ? size : random.Between(1, kSide);
    const bool turned = mirrors && random.Below(4) == 0;
    return MakeAxis(random.Between(-5, 20), turned ? -size : size, random.Between(-5, 20), from);
}

void Choose(RasterJob& job, Random& random) {
    constexpr std::uint8_t kNamed[] = {0xCC, 0x55, 0x88, 0xEE, 0x66, 0x33, 0x5A, 0xF0};
    job.rop = random.Below(2) == 0 ? kNamed[random.Below(8)] : static_cast<std::uint8_t>(random.Next());
    job.pattern = AnyPattern(random);
    const bool alike = job.source.format == job.target.format;
    if (alike && random.Below(3) == 0)
        job.operation = RasterJob::Operation::Key;
    if (random.Below(3) == 0) {
        job.operation = RasterJob::Operation::Blend;
        const BYTE opacity = static_cast<BYTE>(random.Below(3) == 0 ? 255 : random.Next());
        job.blend = {AC_SRC_OVER, 0, opacity, static_cast<BYTE>(random.Below(2))};
    }
    job.key = random.Below(2) * 0xFFFFFF;
}

} // namespace

TEST_CASE("kernels draw what the definition draws") {
    int byRows = 0;
    for (std::uint32_t seed = 1; seed <= 4000; ++seed) {
        Random random(seed);
        Picture target(random, AnyFormat(random));
        Picture source(random, AnyFormatFor(target.surface.format, random));
        const std::vector<std::uint8_t> before = target.pixels;
        const AnyClip clip(random, target.surface);
        RasterJob job;
        job.target = target.surface;
        job.source = source.surface;
        job.hasSource = true;
        job.clip = &clip.region;
        job.x = AnyAxis(random, true);
        job.y = AnyAxis(random, true);
        job.colours = ColourMap(job.target, job.source, {});
        Choose(job, random);
        if (!IsForRows(job))
            continue;
        ++byRows;
        const auto drawn = [&](const auto& draw) {
            std::copy(before.begin(), before.end(), target.pixels.begin());
            draw();
            return target.pixels;
        };
        const auto expected = drawn([&] { RunGeneric(job); });
        CAPTURE(seed);
        CHECK(drawn([&] { RunRows(job, RowOrder::AsInMemory, kPlainRows); }) == expected);
        CHECK(drawn([&] { RunRows(job); }) == expected);
    }
    CHECK(byRows > 2500);
}

// All pairs of a channel's values, for each opacity.
TEST_CASE("vectors weigh and lay as the plain loops do") {
    std::vector<std::uint8_t> from(0x10000);
    std::vector<std::uint8_t> to(from.size());
    for (std::size_t i = 0; i < from.size(); ++i) {
        from[i] = static_cast<std::uint8_t>(i >> 8);
        to[i] = static_cast<std::uint8_t>(i);
    }
    const auto drawn = [&](auto work, std::size_t count, unsigned opacity) {
        std::vector<std::uint8_t> result = to;
        work(result.data(), from.data(), count, opacity);
        return result;
    };
    for (unsigned opacity = 0; opacity < 256; ++opacity) {
        CAPTURE(opacity);
        CHECK(drawn(FastRows().weigh, from.size(), opacity) == drawn(kPlainRows.weigh, from.size(), opacity));
        CHECK(drawn(FastRows().lay, from.size() / 4, opacity) == drawn(kPlainRows.lay, from.size() / 4, opacity));
    }
}

TEST_CASE("a key is found wherever its pixel lies, and so is the only other pixel") {
    constexpr std::size_t kPixels = 70;
    for (unsigned i = 0; i < 4 * kPixels; ++i) {
        const std::size_t bytes = i % 2 == 0 ? 3 : 4;
        const int single = i / 2 % 2 == 0 ? 9 : 2;
        std::vector<std::uint8_t> source(bytes * kPixels, static_cast<std::uint8_t>(11 - single));
        std::fill_n(source.begin() + static_cast<std::ptrdiff_t>(bytes * (i / 4)), bytes, single);
        std::vector<std::uint8_t> expected = source;
        std::replace(expected.begin(), expected.end(), 9, 1);
        std::vector<std::uint8_t> drawn(source.size(), 1);
        (bytes == 3 ? FastRows().copyUnless24 : FastRows().copyUnless32)(drawn.data(), source.data(), kPixels,
                                                                         0x090909);
        CAPTURE(i);
        CHECK(drawn == expected);
    }
}

TEST_CASE("source columns of target columns, as measured") {
    const std::tuple<int, int, const char*> kRows[] = {{3, 10, "2 6 9 "},
                                                       {7, 10, "0 2 3 5 6 8 9 "},
                                                       {10, 4, "0 0 0 1 1 2 2 2 3 3 "},
                                                       {-3, 10, "9 6 2 "},
                                                       {-10, 4, "3 3 2 2 2 1 1 0 0 0 "},
                                                       {3, -10, "7 3 0 "},
                                                       {1, 5, "3 "},
                                                       {-1, 5, "4 "},
                                                       {-10, -7, "3 4 4 5 6 6 7 8 8 9 "}};
    for (const auto& [to, from, lastOfEach] : kRows) {
        const Axis axis = MakeAxis(to < 0 ? -to - 1 : 0, to, from < 0 ? 9 : 0, from);
        std::string last;
        for (int i = 0; i < std::abs(to); ++i)
            last += std::to_string(axis.At(i, 20).last) + " ";
        CHECK(last == lastOfEach);
    }
}
