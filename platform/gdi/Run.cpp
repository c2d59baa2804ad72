#include "platform/gdi/PixelAccess.h"
#include "platform/gdi/RasterJob.h"

#include <algorithm>
#include <cstdlib>
#include <functional>

namespace kel::platform {
namespace {

const std::uint8_t* Lowest(const Surface& surface) {
    return surface.stride < 0 ? surface.Row(surface.height - 1) : surface.top;
}

const std::uint8_t* Highest(const Surface& surface) {
    return Lowest(surface) + std::abs(surface.stride) * surface.height;
}

bool SharesMemory(const Surface& a, const Surface& b) {
    const std::less<> before;
    return before(Lowest(a), Highest(b)) && before(Lowest(b), Highest(a));
}

} // namespace

void Run(const RasterJob& job) {
    if (!job.hasSource || !SharesMemory(job.target, job.source))
        return RunGeneric(job);
    // What is drawn must not be drawn from.
    RasterJob apart = job;
    std::vector<std::uint8_t> memory(Lowest(job.source), Highest(job.source));
    apart.source.top = memory.data() + (job.source.top - Lowest(job.source));
    RunGeneric(apart);
}

} // namespace kel::platform
