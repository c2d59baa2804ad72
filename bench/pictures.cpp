#include "bench/pictures/Resizer.h"
#include "bench/support/Areas.h"
#include "bench/support/Random.h"
#include "toolkit/effects/Effect.h"

#include <cstring>
#include <map>
#include <memory>
#include <stdexcept>

namespace kel::bench {
namespace {

constexpr int kWidth = 4000;
constexpr int kHeight = 3000;

// Random pixels; kept for good.
const toolkit::PackedDib& Photograph(int channels) {
    static std::map<int, toolkit::PackedDib> pictures;
    toolkit::PackedDib& picture = pictures[channels];
    if (picture)
        return picture;
    picture = toolkit::PackedDib::Make(kWidth, kHeight, 8 * channels);
    const toolkit::DibLock lock(picture);
    Random random(61);
    for (BYTE& byte : lock.Pixels())
        byte = static_cast<BYTE>(random.Below(0xFF));
    return picture;
}

struct Work {
    const char* name;
    int channels, width, height;

    bool IsWholeFactor() const { return kWidth % width == 0 && kHeight % height == 0; }
};

const Work kWorks[] = {
    {"Resample 12 MP to 800x600, 24", 3, 800, 600},
    {"Resample 12 MP to 800x600, 32", 4, 800, 600},
    {"Resample 12 MP to 1024x768, 24", 3, 1024, 768},
    {"Resample 12 MP to 1024x768, 32", 4, 1024, 768},
};

// The effect takes the place of the picture it is given, so each run has a copy, made untimed.
Call OwnCall(const Work& work) {
    const toolkit::PackedDib& photograph = Photograph(work.channels);
    const auto picture = std::make_shared<toolkit::PackedDib>(photograph.Copy());
    const auto run = [=, &work] {
        const auto width = static_cast<WORD>(work.width);
        if (FAILED(toolkit::effects::ResampleTo(*picture, width, static_cast<WORD>(work.height))))
            throw std::runtime_error("the effect has failed");
    };
    return {run, nullptr, [=, &photograph] { *picture = photograph.Copy(); }};
}

const BYTE* PixelsOf(const Work& work) {
    return toolkit::DibLock(Photograph(work.channels)).Pixels().data();
}

Call PeerCall(const Resizer& resizer, const Work& work) {
    return {resizer.prepare({PixelsOf(work), kWidth, kHeight, work.channels, work.width, work.height})};
}

// What every road must do: read the picture once.
Call LimitCall(const Work& work) {
    const BYTE* const pixels = PixelsOf(work);
    const std::size_t bytes = Photograph(work.channels).Layout().PixelBytes();
    return {[=] { benchmark::DoNotOptimize(std::memchr(pixels, 0xFF, bytes)); }};
}

} // namespace

void AddPictureJobs() {
    for (const Work& work : kWorks) {
        AddJob("pictures", "kelcore", work.name, [&work] { return OwnCall(work); });
        for (const Resizer& resizer : Contenders<Resizer>())
            if (!resizer.wholeFactors || work.IsWholeFactor())
                AddJob("pictures", resizer.who, work.name, [=, &work] { return PeerCall(resizer, work); });
        AddJob("pictures", "limit-memchr", work.name, [&work] { return LimitCall(work); });
    }
}

} // namespace kel::bench
