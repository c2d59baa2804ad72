#include "platform/gdi/Painting.h"

#include "platform/gdi/Colours.h"
#include "platform/gdi/StockObjects.h"

#include <algorithm>
#include <cstdlib>

namespace kel::platform {
namespace {

static_assert(TernaryOf(R2_COPYPEN) == PATCOPY >> 16 && TernaryOf(R2_XORPEN) == PATINVERT >> 16 &&
              TernaryOf(R2_NOT) == DSTINVERT >> 16 && TernaryOf(R2_BLACK) == BLACKNESS >> 16);

constexpr std::uint8_t kAnd = 0xA0; // of pattern and target
constexpr std::uint8_t kXor = 0x5A;

/// A pattern of the lines alone, which become @p line; the rest is @p rest.
Pattern HatchLines(const BrushObject& brush, std::uint32_t line, std::uint32_t rest, POINT origin) {
    Pattern pattern;
    pattern.width = pattern.height = 8;
    pattern.origin = origin;
    const std::uint8_t* rows = HatchRows(brush.Hatch());
    for (int i = 0; i < 64; ++i)
        pattern.pixels.push_back(rows[i / 8] >> (7 - i % 8) & 1 ? line : rest);
    return pattern;
}

// Bit by bit every operation leaves, inverts, clears or sets the target, which an and followed by an exclusive or can
// do as well; and both have an operand that leaves the rest alone.
void RunBetween(RasterJob& job, const DeviceContext& context, const BrushObject& brush) {
    const std::uint32_t colour = PixelFor(job.target, context.ColourOf(brush));
    const std::uint32_t onZeros = Combine(job.rop, colour, /*source*/ 0, /*target*/ 0);
    const std::uint32_t onOnes = Combine(job.rop, colour, /*source*/ 0, /*target*/ 0xFFFFFFFF);
    const POINT origin = context.State().brushOrigin;
    job.rop = kAnd;
    job.pattern = HatchLines(brush, onZeros ^ onOnes, /*rest*/ 0xFFFFFFFF, origin);
    Run(job);
    job.rop = kXor;
    job.pattern = HatchLines(brush, onZeros, /*rest*/ 0, origin);
    Run(job);
}

/// A job on all of a region, which must stay.
RasterJob JobOn(const DeviceContext& context, const Region& area) {
    const RECT box = area.Box();
    RasterJob job;
    job.target = context.Target();
    job.clip = area.Get();
    job.x = MakeAxis(box.left, box.right - box.left, 0, 0);
    job.y = MakeAxis(box.top, box.bottom - box.top, 0, 0);
    job.rop = TernaryOf(context.State().rasterMode);
    return job;
}

} // namespace

void RunWith(RasterJob& job, const DeviceContext& context, const BrushObject& brush, int backMode) {
    if (brush.Style() == BS_NULL)
        return;
    if (brush.Style() == BS_HATCHED && backMode == TRANSPARENT)
        return RunBetween(job, context, brush);
    job.pattern = PatternOf(context, brush, job.target);
    Run(job);
}

void PaintArea(DeviceContext& context, Region area, const BrushObject& brush) {
    area.Intersect(context.Visible());
    RasterJob job = JobOn(context, area);
    RunWith(job, context, brush);
}

void PaintArea(DeviceContext& context, Region area, COLORREF colour) {
    area.Intersect(context.Visible());
    RasterJob job = JobOn(context, area);
    job.pattern.solid = PixelFor(job.target, colour);
    Run(job);
}

void InvertArea(DeviceContext& context, Region area) {
    area.Intersect(context.Visible());
    RasterJob job = JobOn(context, area);
    job.rop = DSTINVERT >> 16;
    Run(job);
}

void FillReachable(const DeviceContext& context, Region area, const Region& reachable, COLORREF colour) {
    area.Intersect(reachable);
    RasterJob job = JobOn(context, area);
    job.rop = PATCOPY >> 16;
    job.pattern.solid = PixelFor(job.target, colour);
    Run(job);
}

// The background mode has no effect on pens of ExtCreatePen.
void PaintOutline(DeviceContext& context, Region area, const Region& inside) {
    const PenObject& pen = *context.State().pen;
    area.Subtract(inside);
    if (!pen.IsExtended())
        return PaintArea(context, std::move(area), context.ColourOf(pen));
    area.Intersect(context.Visible());
    RasterJob job = JobOn(context, area);
    RunWith(job, context, pen.Brush(), TRANSPARENT);
}

int PenWidth(const DeviceContext& context) {
    const PenObject& pen = *context.State().pen;
    if (pen.Style() == PS_NULL)
        return 0;
    if (pen.IsCosmetic())
        return 1;
    const Mapping& mapping = context.State().mapping;
    const int width = mapping.ToDevice(POINT{pen.Width(), 0}).x - mapping.ToDevice(POINT{0, 0}).x;
    return std::max(std::abs(width), 1);
}

} // namespace kel::platform
