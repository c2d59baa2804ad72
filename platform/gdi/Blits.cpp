#include "platform/gdi/Painting.h"
#include "platform/kernel/Faults.h"

namespace kel::platform {
namespace {

// Drawing over a source that is missing fails only where the operation asks for it.
bool Draw(HDC target, const LogicalBox& to, HDC source, const LogicalBox& from, DWORD operation) {
    const auto context = FindContext(target);
    if (!context)
        return false;
    const bool needsSource = NeedsSource(operation >> 16 & 0xFF);
    const auto origin = needsSource ? FindContext(source) : nullptr;
    if (needsSource && !origin)
        return false;
    return WithMemory(false, [&] {
        RasterJob job = JobOn(*context, to);
        if (!origin && NeedsPattern(operation >> 16 & 0xFF)) {
            job.rop = static_cast<std::uint8_t>(operation >> 16);
            RunWith(job, *context, *context->State().brush);
            return true;
        }
        if (origin)
            DrawFrom(job, *context, *origin, from);
        if (Operate(job, *context, operation))
            Run(job);
        return true;
    });
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

BOOL WINAPI BitBlt(HDC target, int x, int y, int width, int height, HDC source, int sourceX, int sourceY,
                   DWORD operation) {
    if (CallFails("BitBlt"))
        return FALSE;
    return Draw(target, {x, y, width, height}, source, {sourceX, sourceY, width, height}, operation);
}

BOOL WINAPI StretchBlt(HDC target, int x, int y, int width, int height, HDC source, int sourceX, int sourceY,
                       int sourceWidth, int sourceHeight, DWORD operation) {
    if (CallFails("StretchBlt"))
        return FALSE;
    return Draw(target, {x, y, width, height}, source, {sourceX, sourceY, sourceWidth, sourceHeight}, operation);
}

BOOL WINAPI PatBlt(HDC target, int x, int y, int width, int height, DWORD operation) {
    if (CallFails("PatBlt"))
        return FALSE;
    if (NeedsSource(operation >> 16 & 0xFF))
        return Fail(ERROR_INVALID_PARAMETER);
    return Draw(target, {x, y, width, height}, /*source*/ nullptr, {}, operation);
}

BOOL WINAPI GdiFlush() {
    return TRUE;
}
