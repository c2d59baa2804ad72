#include "platform/gdi/Resolve.h"

#include "platform/gdi/Colours.h"
#include "platform/gdi/PixelAccess.h"
#include "platform/gdi/StockObjects.h"

namespace kel::platform {
namespace {

int Sum(int a, int b) {
    return static_cast<int>(static_cast<unsigned>(a) + static_cast<unsigned>(b));
}

int Difference(int a, int b) {
    return static_cast<int>(static_cast<unsigned>(a) - static_cast<unsigned>(b));
}

LogicalBox ToDevice(const DeviceContext& context, const LogicalBox& box) {
    const POINT start = context.ToDevice(POINT{box.x, box.y});
    const POINT end = context.ToDevice(POINT{Sum(box.x, box.width), Sum(box.y, box.height)});
    return {start.x, start.y, Difference(end.x, start.x), Difference(end.y, start.y)};
}

void PlaceSource(RasterJob& job, const LogicalBox& from) {
    const Axis x = MakeAxis(0, 0, from.x, from.width);
    const Axis y = MakeAxis(0, 0, from.y, from.height);
    job.hasSource = true;
    job.x = {job.x.to, job.x.toSize, x.from, x.fromSize, job.x.toMirrored, x.fromMirrored, Single::NotLast};
    job.y = {job.y.to, job.y.toSize, y.from, y.fromSize, job.y.toMirrored, y.fromMirrored, Single::NotLast};
}

Pattern HatchPattern(const DeviceContext& target, const BrushObject& brush, const Surface& surface) {
    Pattern pattern;
    pattern.width = pattern.height = 8;
    const std::uint32_t line = PixelFor(surface, target.ColourOf(brush));
    const std::uint32_t back = PixelFor(surface, target.State().backColour);
    const std::uint8_t* rows = HatchRows(brush.Hatch());
    for (int i = 0; i < 64; ++i)
        pattern.pixels.push_back(rows[i / 8] >> (7 - i % 8) & 1 ? line : back);
    return pattern;
}

Pattern BitmapPattern(const DeviceContext& target, const BitmapObject& bitmap, const Surface& surface) {
    const ContextState& state = target.State();
    const Surface source = bitmap.Pixels();
    const ColourMap colours(surface, source, {state.textColour, state.backColour, state.backColour, false});
    Pattern pattern;
    pattern.width = source.width;
    pattern.height = source.height;
    pattern.pixels.reserve(static_cast<std::size_t>(source.width) * static_cast<std::size_t>(source.height));
    for (int y = 0; y < source.height; ++y)
        for (int x = 0; x < source.width; ++x)
            pattern.pixels.push_back(colours(ReadPixel(source, x, y)));
    return pattern;
}

} // namespace

RasterJob JobOn(DeviceContext& target, const LogicalBox& box) {
    const LogicalBox to = ToDevice(target, box);
    RasterJob job;
    job.target = target.Target();
    job.clip = target.Visible().Get();
    job.stretchMode = target.State().stretchMode;
    job.x = MakeAxis(to.x, to.width, 0, 0);
    job.y = MakeAxis(to.y, to.height, 0, 0);
    return job;
}

void DrawFrom(RasterJob& job, const DeviceContext& target, const DeviceContext& source, const LogicalBox& from) {
    const ContextState& state = target.State();
    const AreaView view = source.Source();
    job.source = view.whole;
    LogicalBox part = ToDevice(source, from);
    part.x = Sum(part.x, view.origin.x);
    part.y = Sum(part.y, view.origin.y);
    PlaceSource(job, part);
    job.colours =
        ColourMap(job.target, job.source,
                  {Resolved(state.textColour), Resolved(state.backColour), Resolved(source.State().backColour), false});
}

void DrawFrom(RasterJob& job, const DeviceContext& target, const Surface& source, const LogicalBox& from) {
    const ContextState& state = target.State();
    job.source = source;
    PlaceSource(job, from);
    job.colours = ColourMap(job.target, source,
                            {Resolved(state.textColour), Resolved(state.backColour), RGB(255, 255, 255), false});
}

bool Operate(RasterJob& job, const DeviceContext& target, DWORD operation) {
    job.rop = static_cast<std::uint8_t>(operation >> 16);
    if (!NeedsPattern(job.rop))
        return true;
    const BrushObject& brush = *target.State().brush;
    if (brush.Style() == BS_NULL)
        return false;
    job.pattern = PatternOf(target, brush, job.target);
    return true;
}

Pattern PatternOf(const DeviceContext& target, const BrushObject& brush, const Surface& surface) {
    Pattern pattern;
    if (brush.Style() == BS_HATCHED)
        pattern = HatchPattern(target, brush, surface);
    else if (brush.Pattern())
        pattern = BitmapPattern(target, *brush.Pattern(), surface);
    else
        pattern.solid = PixelFor(surface, target.ColourOf(brush));
    pattern.origin = target.State().brushOrigin;
    return pattern;
}

std::uint32_t PixelFor(const Surface& surface, COLORREF colour) {
    return PixelOfColour(surface, Resolved(colour));
}

} // namespace kel::platform
