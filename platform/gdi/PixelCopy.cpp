#include "platform/gdi/PixelCopy.h"

#include "platform/gdi/Clip.h"
#include "platform/gdi/RasterJob.h"

#include <algorithm>

namespace kel::platform {

Surface RowsOf(const Surface& surface, int y, int count) {
    Surface rows = surface;
    rows.top = surface.Row(y);
    rows.height = count;
    return rows;
}

void CopyPixels(const Surface& to, const Surface& from) {
    const int width = std::min(to.width, from.width);
    const int height = std::min(to.height, from.height);
    const Region all(RECT{0, 0, width, height});
    RasterJob job;
    job.target = to;
    job.source = from;
    job.hasSource = true;
    job.clip = all.Get();
    job.x = MakeAxis(0, width, 0, width);
    job.y = MakeAxis(0, height, 0, height);
    job.colours = ColourMap(to, from, kNearestOfTwo);
    Run(job);
}

} // namespace kel::platform
