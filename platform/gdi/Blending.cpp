#include "platform/gdi/Colours.h"
#include "platform/gdi/Resolve.h"
#include "platform/kernel/Faults.h"

namespace kel::platform {
namespace {

bool IsInside(const Axis& axis, int bound) {
    return axis.from >= 0 && axis.from + axis.fromSize <= bound;
}

// What is refused is a negative size; a mapping may mirror.
bool IsMirrored(const LogicalBox& box) {
    return box.width < 0 || box.height < 0;
}

bool Overlap(const Axis& axis) {
    return axis.from < axis.to + axis.toSize && axis.to < axis.from + axis.fromSize;
}

bool OverlapsItself(const RasterJob& job) {
    return job.source.top == job.target.top && Overlap(job.x) && Overlap(job.y);
}

// A caller's alpha needs a source that has some.
bool CanBlend(const RasterJob& job, const BLENDFUNCTION& function) {
    const bool perPixel = function.AlphaFormat == AC_SRC_ALPHA;
    return !OverlapsItself(job) && IsInside(job.x, job.source.width) && IsInside(job.y, job.source.height) &&
           (!perPixel || job.source.format == PixelFormat::Bgrx32);
}

bool Blend(DeviceContext& target, const LogicalBox& to, const DeviceContext& source, const LogicalBox& from,
           const BLENDFUNCTION& function) {
    RasterJob job = JobOn(target, to);
    DrawFrom(job, target, source, from);
    if (IsMirrored(to) || IsMirrored(from) || !CanBlend(job, function))
        return Fail(ERROR_INVALID_PARAMETER);
    job.operation = RasterJob::Operation::Blend;
    job.blend = function;
    job.x.single = job.y.single = Single::All;
    job.stretchMode = COLORONCOLOR;
    Run(job);
    return true;
}

bool DrawKeyed(DeviceContext& target, const LogicalBox& to, const DeviceContext& source, const LogicalBox& from,
               COLORREF transparent) {
    if (IsMirrored(to) || IsMirrored(from))
        return Fail(ERROR_INVALID_PARAMETER);
    RasterJob job = JobOn(target, to);
    DrawFrom(job, target, source, from);
    job.operation = RasterJob::Operation::Key;
    job.key = Resolved(transparent);
    // The zeros and ones of a monochrome source are black and white here, whatever the target's colours are.
    if (job.source.format == PixelFormat::Mono && !job.source.table)
        job.colours = ColourMap(job.target, job.source, {});
    Run(job);
    return true;
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

BOOL WINAPI AlphaBlend(HDC target, int x, int y, int width, int height, HDC source, int sourceX, int sourceY,
                       int sourceWidth, int sourceHeight, BLENDFUNCTION function) {
    if (CallFails("AlphaBlend"))
        return FALSE;
    const auto to = FindContext(target);
    const auto from = FindContext(source);
    if (!to || !from)
        return FALSE;
    return WithMemory(false, [&] {
        return Blend(*to, {x, y, width, height}, *from, {sourceX, sourceY, sourceWidth, sourceHeight}, function);
    });
}

BOOL WINAPI TransparentBlt(HDC target, int x, int y, int width, int height, HDC source, int sourceX, int sourceY,
                           int sourceWidth, int sourceHeight, UINT transparent) {
    if (CallFails("TransparentBlt"))
        return FALSE;
    const auto to = FindContext(target);
    const auto from = FindContext(source);
    if (!to || !from)
        return FALSE;
    return WithMemory(false, [&] {
        return DrawKeyed(*to, {x, y, width, height}, *from, {sourceX, sourceY, sourceWidth, sourceHeight}, transparent);
    });
}
