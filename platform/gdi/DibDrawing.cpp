#include "platform/gdi/DibFormat.h"
#include "platform/gdi/Resolve.h"
#include "platform/kernel/Faults.h"

#include <algorithm>
#include <cstdint>

namespace kel::platform {
namespace {

/// A rectangle of a DIB as callers give it: rows counted from its bottom if that comes first.
struct DibBox {
    int x;
    int y;
    int width;
    int height;
};

// From the top, as everything else counts.
int TopOf(const DibFormat& format, const DibBox& from) {
    return static_cast<int>(format.topDown ? from.y : std::int64_t{format.height} - from.y - from.height);
}

bool IsInside(const DibFormat& format, const DibBox& from) {
    const Axis x = MakeAxis(0, 0, from.x, from.width);
    const Axis y = MakeAxis(0, 0, TopOf(format, from), from.height);
    return x.from < format.width && x.from + x.fromSize > std::max<std::int64_t>(x.from, 0) && y.from < format.height &&
           y.from + y.fromSize > std::max<std::int64_t>(y.from, 0);
}

// Wine counts all rows of the DIB, those of a top-down one below 0 unless it is copied; the documentation has negative
// numbers for mirrored content.
int Stretch(DeviceContext& context, const LogicalBox& to, const DibFormat& format, const DibBox& from, const void* bits,
            DWORD operation) {
    if (!IsInside(format, from))
        return 0;
    RasterJob job = JobOn(context, to);
    // What the DIB does not reach stays as it is, whatever the operation.
    DrawFrom(job, context, format.At(bits), {from.x, TopOf(format, from), from.width, from.height});
    if (operation == SRCCOPY)
        job.x.single = job.y.single = Single::All;
    else if (!format.topDown)
        job.y.single = Single::NotFirst;
    if (Operate(job, context, operation))
        Run(job);
    return format.topDown && operation != SRCCOPY ? -format.height : format.height;
}

/// The rows of a DIB that a caller holds, counted from the bottom.
struct HeldRows {
    UINT start;
    UINT lines;
};

// The mapping has a say in where the rows begin, not in their size.
int DrawRows(DeviceContext& context, const LogicalBox& to, DibFormat format, int fromX, int fromY, const HeldRows& held,
             const void* bits) {
    const auto top = static_cast<int>(std::int64_t{held.start} + held.lines - fromY - to.height);
    format.height = static_cast<int>(held.lines);
    const POINT start = context.ToDevice(POINT{to.x, to.y});
    RasterJob job = JobOn(context, to);
    job.x = MakeAxis(start.x, to.width, 0, 0);
    job.y = MakeAxis(start.y, to.height, 0, 0);
    DrawFrom(job, context, format.At(bits), {fromX, top, to.width, to.height});
    job.colours = ColourMap(job.target, job.source, kNearestOfTwo);
    Run(job);
    return format.topDown ? format.height
                          : static_cast<int>(std::min<std::int64_t>(format.height, std::int64_t{fromY} + to.height));
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

int WINAPI StretchDIBits(HDC target, int x, int y, int width, int height, int sourceX, int sourceY, int sourceWidth,
                         int sourceHeight, const void* bits, const BITMAPINFO* info, UINT usage, DWORD operation) {
    if (CallFails("StretchDIBits"))
        return 0;
    const auto context = FindContext(target);
    if (!context)
        return 0;
    if (!bits || !info)
        return Fail(ERROR_INVALID_PARAMETER);
    return WithMemory(0, [&] {
        DibFormat format;
        return ReadDibFormat(*info, usage, context.get(), format)
                   ? Stretch(*context, {x, y, width, height}, format, {sourceX, sourceY, sourceWidth, sourceHeight},
                             bits, operation)
                   : 0;
    });
}

int WINAPI SetDIBitsToDevice(HDC target, int x, int y, DWORD width, DWORD height, int sourceX, int sourceY, UINT start,
                             UINT lines, const void* bits, const BITMAPINFO* info, UINT usage) {
    if (CallFails("SetDIBitsToDevice"))
        return 0;
    const auto context = FindContext(target);
    if (!context)
        return 0;
    if (!bits || !info)
        return Fail(ERROR_INVALID_PARAMETER);
    return WithMemory(0, [&] {
        DibFormat format;
        return ReadDibFormat(*info, usage, context.get(), format)
                   ? DrawRows(*context, {x, y, static_cast<int>(width), static_cast<int>(height)}, format, sourceX,
                              sourceY, {start, lines}, bits)
                   : 0;
    });
}
