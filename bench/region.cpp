#include "bench/region/Combiner.h"
#include "bench/support/Areas.h"
#include "bench/support/Random.h"

#include <kelcore/gdi.h>

namespace kel::bench {
namespace {

std::vector<Edges> Scattered(std::uint64_t seed, int count) {
    Random random(seed);
    std::vector<Edges> rects;
    for (int i = 0; i != count; ++i) {
        const int left = static_cast<int>(random.Below(1900)), top = static_cast<int>(random.Below(1060));
        const int right = left + 1 + static_cast<int>(random.Below(40));
        rects.push_back({left, top, right, top + 1 + static_cast<int>(random.Below(40))});
    }
    return rects;
}

std::shared_ptr<Rgn> RegionOf(const std::vector<Edges>& rects) {
    auto region = std::make_shared<Rgn>(CreateRectRgn(0, 0, 0, 0));
    for (const auto& [left, top, right, bottom] : rects) {
        const Rgn rect(CreateRectRgn(left, top, right, bottom));
        region->CombineRgn(*region, rect, RGN_OR);
    }
    return region;
}

std::string Describe(const Rgn& region) {
    RECT box = {};
    region.GetRgnBox(box);
    const DWORD rects = (GetRegionData(region, 0, nullptr) - sizeof(RGNDATAHEADER)) / sizeof(RECT);
    return std::to_string(rects) + " in " + std::to_string(box.right - box.left) + "x" +
           std::to_string(box.bottom - box.top);
}

Call Combine(const std::vector<Edges>& first, const std::vector<Edges>& second, int mode) {
    const auto result = RegionOf({}), one = RegionOf(first), other = RegionOf(second);
    const auto run = [=] { result->CombineRgn(*one, *other, mode); };
    return {run, [=] { return run(), Describe(*result); }};
}

const Enter<Combiner> entered{{"kelcore", Combine}};

} // namespace

void AddRegionJobs() {
    const std::pair<const char*, int> works[] = {{"and", RGN_AND}, {"or", RGN_OR}, {"diff", RGN_DIFF}};
    for (const int count : {4, 1000})
        for (const auto& work : works)
            for (const Combiner& combiner : Contenders<Combiner>())
                AddJob("region", combiner.who, std::string(work.first) + " " + std::to_string(count) + " rectangles",
                       [make = combiner.make, mode = work.second, count] {
                           return make(Scattered(1, count), Scattered(2, count), mode);
                       });
}

} // namespace kel::bench
