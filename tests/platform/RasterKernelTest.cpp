// The kernels against the definition, on random jobs. They are not exported: this test brings the sources along.
#include "platform/gdi/RowKernel.h"
#include "tests/compare/Canvas.h"

#include <doctest/doctest.h>

#include <string>

using namespace kel::platform;
using kel::compare::Random;

namespace {

constexpr int kSide = 40;

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

PixelFormat AnyFormat(Random& random) {
    constexpr PixelFormat kFormats[] = {PixelFormat::Rgb555, PixelFormat::Rgb565, PixelFormat::Bgr24,
                                        PixelFormat::Bgrx32};
    return kFormats[random.Below(4)];
}

Axis AnyAxis(Random& random, bool mirrors) {
    const int size = random.Between(1, kSide);
    const int from = random.Below(3) == 0 ? size : random.Between(1, kSide);
    const bool turned = mirrors && random.Below(4) == 0;
    return MakeAxis(random.Between(-5, 20), turned ? -size : size, random.Between(-5, 20), from);
}

void Choose(RasterJob& job, Random& random) {
    constexpr std::uint8_t kNamed[] = {0xCC, 0x55, 0x88, 0xEE, 0x66, 0x33, 0x5A, 0xF0};
    job.rop = random.Below(2) == 0 ? kNamed[random.Below(8)] : static_cast<std::uint8_t>(random.Next());
    job.pattern.solid = random.Next();
    const bool alike = job.source.format == job.target.format;
    if (alike && random.Below(3) == 0)
        job.operation = RasterJob::Operation::Key;
    if (random.Below(3) == 0) {
        job.operation = RasterJob::Operation::Blend;
        job.blend = {AC_SRC_OVER, 0, static_cast<BYTE>(random.Next()), static_cast<BYTE>(random.Below(2))};
    }
    job.key = random.Below(2) * 0xFFFFFF;
}

} // namespace

TEST_CASE("kernels draw what the definition draws") {
    int byRows = 0;
    for (std::uint32_t seed = 1; seed <= 4000; ++seed) {
        Random random(seed);
        Picture target(random, AnyFormat(random));
        Picture source(random, random.Below(2) == 0 ? target.surface.format : AnyFormat(random));
        const Picture before = target;
        pixman_region32_t clip;
        pixman_region32_init_rect(&clip, 0, 0, static_cast<unsigned>(target.surface.width),
                                  static_cast<unsigned>(target.surface.height));
        RasterJob job;
        job.target = target.surface;
        job.source = source.surface;
        job.hasSource = true;
        job.clip = &clip;
        job.x = AnyAxis(random, true);
        job.y = AnyAxis(random, true);
        job.colours = ColourMap(job.target, job.source, {});
        Choose(job, random);
        if (IsForRows(job)) {
            ++byRows;
            RunRows(job);
            const std::vector<std::uint8_t> drawn = target.pixels;
            target.pixels.assign(before.pixels.begin(), before.pixels.end());
            RunGeneric(job);
            CAPTURE(seed);
            CHECK(drawn == target.pixels);
        }
        pixman_region32_fini(&clip);
    }
    CHECK(byRows > 2500);
}

TEST_CASE("source columns of target columns, as measured") {
    const struct {
        int to, from;
        const char* last; // the last source pixel of each target pixel
    } kRows[] = {{3, 10, "2 6 9 "},
                 {7, 10, "0 2 3 5 6 8 9 "},
                 {10, 4, "0 0 0 1 1 2 2 2 3 3 "},
                 {-3, 10, "9 6 2 "},
                 {-10, 4, "3 3 2 2 2 1 1 0 0 0 "},
                 {3, -10, "7 3 0 "},
                 {1, 5, "3 "},
                 {-1, 5, "4 "},
                 {-10, -7, "3 4 4 5 6 6 7 8 8 9 "}};
    for (const auto& row : kRows) {
        const Axis axis = MakeAxis(row.to < 0 ? -row.to - 1 : 0, row.to, row.from < 0 ? 9 : 0, row.from);
        std::string last;
        for (int i = 0; i < std::abs(row.to); ++i)
            last += std::to_string(axis.At(i, 20).last) + " ";
        CHECK(last == row.last);
    }
}
