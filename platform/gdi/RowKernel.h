#pragma once

#include "platform/gdi/RasterJob.h"
#include "platform/gdi/kernels/Rows.h"

#include <algorithm>

namespace kel::platform {

/// Whether RunRows draws the job: a target of whole bytes, and one source pixel for each of its pixels.
bool IsForRows(const RasterJob& job);

/// Which rows come first. Copies within a surface have to mind it; otherwise the order of the memory is the quickest.
enum class RowOrder : std::uint8_t { AsInMemory, Downwards, Upwards };

/// Draws the job by rows.
void RunRows(const RasterJob& job, RowOrder order = RowOrder::AsInMemory, const RowRoad& road = FastRows());

/// Calls draw(box) for the parts of the job's rectangle within its clip region, in the region's order.
template <class Draw>
void ForEachBox(const RasterJob& job, Draw draw) {
    int count = 0;
    const pixman_box32_t* boxes = pixman_region32_rectangles(const_cast<pixman_region32_t*>(job.clip), &count);
    const auto inside = [](std::int64_t value, int low, int high) {
        return static_cast<int>(std::clamp<std::int64_t>(value, low, high));
    };
    for (int i = 0; i < count; ++i) {
        const pixman_box32_t& box = boxes[i];
        const pixman_box32_t part{inside(job.x.to, box.x1, box.x2), inside(job.y.to, box.y1, box.y2),
                                  inside(job.x.to + job.x.toSize, box.x1, box.x2),
                                  inside(job.y.to + job.y.toSize, box.y1, box.y2)};
        if (part.x1 < part.x2 && part.y1 < part.y2)
            draw(part);
    }
}

} // namespace kel::platform
