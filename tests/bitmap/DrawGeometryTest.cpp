#include "tests/bitmap/Canvas.h"

#include <array>
#include <cmath>

namespace {

using Edges = std::array<long, 4>;
using Blit = std::array<Edges, 2>; // source, target

// Notes what it is asked to draw; refuses from a given blit on.
struct RecordingSource : BitmapBase::IBltSrc {
    bool Blt(HDC, const Rect& source, const Rect& target) const override {
        blits.push_back({Edges{source.left, source.top, source.right, source.bottom},
                         Edges{target.left, target.top, target.right, target.bottom}});
        return blits.size() < refusesAt;
    }
    mutable std::vector<Blit> blits;
    std::size_t refusesAt = 1U << 30;
};

// The blits of a drawing that succeeds.
std::vector<Blit> Draw(const Size& size, int mode, XSize<double> scale, const Rect& target, HDC dc = nullptr) {
    RecordingSource recorder;
    CHECK(MemoryPicture(size, 1).InternalDraw(recorder, dc, target, IBitmap::BM_Mode(mode), scale));
    return recorder.blits;
}

} // namespace

TEST_CASE("each mode but tiling is one blit") {
    const std::tuple<Size, int, XSize<double>, Rect, Blit> cases[] = {
        {{200, 100}, 0, {1, 1}, {0, 0, 100, 100}, {{{0, 0, 200, 100}, {0, 0, 100, 100}}}},
        {{200, 100}, 1, {1, 1}, {0, 0, 100, 100}, {{{0, 0, 200, 100}, {0, 25, 100, 75}}}},
        {{200, 100}, 2, {1, 1}, {0, 0, 100, 100}, {{{50, 0, 150, 100}, {0, 0, 100, 100}}}},
        {{200, 100}, 3, {1, 1}, {0, 0, 100, 100}, {{{50, 0, 150, 100}, {0, 0, 100, 100}}}},
        {{200, 100}, 9, {7, 3}, {5, 6, 7, 8}, {{{0, 0, 200, 100}, {5, 6, 7, 8}}}},
        {{100, 200}, 1, {1, 1}, {0, 0, 100, 100}, {{{0, 0, 100, 200}, {25, 0, 75, 100}}}},
        {{100, 200}, 2, {1, 1}, {0, 0, 100, 100}, {{{0, 50, 100, 150}, {0, 0, 100, 100}}}},
        {{100, 100}, 1, {2, 1}, {0, 0, 100, 100}, {{{0, 0, 100, 100}, {0, 25, 100, 75}}}},
        {{100, 100}, 2, {2, 1}, {0, 0, 100, 100}, {{{25, 0, 75, 100}, {0, 0, 100, 100}}}},
        {{50, 40}, 3, {1, 1}, {10, 10, 110, 110}, {{{0, 0, 50, 40}, {35, 40, 85, 80}}}},
        {{50, 40}, 3, {2, 2}, {0, 0, 100, 100}, {{{0, 0, 50, 40}, {0, 10, 100, 90}}}},
        {{51, 41}, 3, {1, 1}, {0, 0, 100, 100}, {{{0, 0, 51, 41}, {25, 30, 76, 71}}}},
        {{3, 2}, 1, {1, 1}, {0, 0, 10, 10}, {{{0, 0, 3, 2}, {0, 2, 10, 8}}}},
        {{9, 9}, 0, {1, 1}, {kLeast, 0, kMost, 1}, {{{0, 0, 9, 9}, {kLeast, 0, kMost, 1}}}}};
    for (const auto& row : cases) {
        CAPTURE(&row - cases);
        const auto& [picture, mode, scale, target, blit] = row;
        CHECK((Draw(picture, mode, scale, target) == std::vector<Blit>{blit}));
    }
}

TEST_CASE("tiles are aligned to the target and cut at its edges") {
    const Rect target(5, 5, 70, 50);
    const std::vector<Blit> all = Draw({30, 20}, IBitmap::BM_Tile, {1, 1}, target);
    REQUIRE(all.size() == 9);
    CHECK((all[2] == Blit{{{0, 0, 5, 20}, {65, 5, 70, 25}}}));
    CHECK((all[7] == Blit{{{0, 0, 30, 5}, {35, 45, 65, 50}}}));
    const std::vector<Blit> halved = Draw({30, 20}, IBitmap::BM_Tile, {0.5, 0.5}, {0, 0, 100, 100});
    REQUIRE(halved.size() == 70);
    CHECK((halved[8] == Blit{{{0, 0, 30, 20}, {15, 10, 30, 20}}}));

    const Canvas canvas(Painted({100, 100}, 32));
    IntersectClipRect(canvas.dc, 40, 30, 100, 100);
    const std::vector<Blit> seen = Draw({30, 20}, IBitmap::BM_Tile, {1, 1}, target, canvas.dc);
    REQUIRE(seen.size() == 4);
    CHECK((seen[0] == Blit{{{0, 0, 30, 20}, {35, 25, 65, 45}}}));
    CHECK(Draw({30, 20}, IBitmap::BM_Tile, {1, 1}, {110, 5, 150, 50}, canvas.dc).empty());

    RecordingSource refusing;
    refusing.refusesAt = 3;
    CHECK_FALSE(MemoryPicture({30, 20}, 1).InternalDraw(refusing, nullptr, target, IBitmap::BM_Tile, {1, 1}));
    CHECK(refusing.blits.size() == 3);
}

TEST_CASE("drawing nothing succeeds without a blit, and tiling always ends") {
    const Rect small(0, 0, 9, 9);
    const std::tuple<int, double, Rect, std::size_t> cases[] = {
        {0, 0.0, small, 0},  {0, 1.0, {3, 0, 3, 9}, 0}, {0, 1.0, {4, 0, 3, 9}, 0}, {4, 0.04, small, 0},
        {4, -1.0, small, 0}, {4, 1.0, kEverything, 0},  {4, 1e9, kEverything, 9},  {4, std::nan(""), small, 0}};
    for (const auto& [mode, scale, target, blits] : cases) {
        CAPTURE(scale);
        CHECK(Draw({10, 10}, mode, {scale, scale}, target).size() == blits);
    }
    const RecordingSource unused;
    CHECK(MemoryPicture().InternalDraw(unused, nullptr, {0, 0, 9, 9}, IBitmap::BM_Fit, {1, 1}));
    CHECK(unused.blits.empty());
}
