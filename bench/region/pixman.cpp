#include "bench/region/Combiner.h"

#include <pixman.h>

namespace {

using namespace kel::bench;

struct Region : pixman_region32_t {
    Region() { pixman_region32_init(this); }
    Region(const Region&) = delete;
    Region& operator=(const Region&) = delete;
    ~Region() { pixman_region32_fini(this); }
};

std::shared_ptr<Region> RegionOf(const std::vector<Edges>& rects) {
    auto region = std::make_shared<Region>();
    for (const auto& [left, top, right, bottom] : rects)
        pixman_region32_union_rect(region.get(), region.get(), left, top, static_cast<unsigned>(right - left),
                                   static_cast<unsigned>(bottom - top));
    return region;
}

std::string Describe(Region& region) {
    const pixman_box32_t box = *pixman_region32_extents(&region);
    return std::to_string(pixman_region32_n_rects(&region)) + " in " + std::to_string(box.x2 - box.x1) + "x" +
           std::to_string(box.y2 - box.y1);
}

Call Combine(const std::vector<Edges>& first, const std::vector<Edges>& second, int mode) {
    const auto combine = mode == 1   ? pixman_region32_intersect
                         : mode == 2 ? pixman_region32_union
                                     : pixman_region32_subtract;
    const auto result = RegionOf({}), one = RegionOf(first), other = RegionOf(second);
    const auto run = [=] { combine(result.get(), one.get(), other.get()); };
    return {run, [=] { return run(), Describe(*result); }};
}

const Enter<Combiner> entered{{"pixman", Combine}};

} // namespace
