#include "platform/gdi/RowKernel.h"

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

void Draw(const RasterJob& job) {
    if (IsForRows(job))
        RunRows(job);
    else
        RunGeneric(job);
}

/// Whether a copy within a surface can be made row by row, in one direction, without meeting what it wrote.
bool CanMove(const RasterJob& job) {
    return job.operation == RasterJob::Operation::Raster && job.rop == SRCCOPY >> 16 && job.IsOneToOne() &&
           job.colours.IsSame() && job.source.top == job.target.top && job.source.stride == job.target.stride &&
           pixman_region32_n_rects(const_cast<pixman_region32_t*>(job.clip)) == 1 && IsForRows(job);
}

} // namespace

void Run(const RasterJob& job) {
    if (!job.hasSource || !SharesMemory(job.target, job.source))
        return Draw(job);
    if (CanMove(job))
        return RunRows(job, job.y.to > job.y.from ? RowOrder::Upwards : RowOrder::Downwards);
    // What is drawn must not be drawn from.
    RasterJob apart = job;
    std::vector<std::uint8_t> memory(Lowest(job.source), Highest(job.source));
    apart.source.top = memory.data() + (job.source.top - Lowest(job.source));
    Draw(apart);
}

} // namespace kel::platform
