#pragma once

/// @file
/// Painting of regions, and of lines with pens.

#include "platform/gdi/Resolve.h"

namespace kel::platform {

/// The ternary operation, with pen or brush as the pattern, of a mode of SetROP2.
constexpr std::uint8_t TernaryOf(int rasterMode) {
    // A mode has a result for each pen and target bit, a ternary operation has them with and without the source.
    const int results = rasterMode - 1;
    return static_cast<std::uint8_t>((results & 3) * 5 | (results >> 2) * 0x50);
}

/// Runs a job without a source with a brush. @param backMode TRANSPARENT leaves the space between the lines of a hatch
/// alone. @throws std::bad_alloc
void RunWith(RasterJob& job, const DeviceContext& context, const BrushObject& brush, int backMode);
inline void RunWith(RasterJob& job, const DeviceContext& context, const BrushObject& brush) {
    RunWith(job, context, brush, context.State().backMode);
}

/// Paints what is visible of @p area, in device units, by the context's raster mode. @throws std::bad_alloc
/// @{
void PaintArea(DeviceContext& context, Region area, const BrushObject& brush);
void PaintArea(DeviceContext& context, Region area, COLORREF colour);
/// @}

/// Inverts what is visible of an area, whatever the raster mode.
void InvertArea(DeviceContext& context, Region area);

/// Fills what can be reached of an area with a colour, whatever the raster mode. @throws std::bad_alloc
void FillReachable(const DeviceContext& context, Region area, const Region& reachable, COLORREF colour);

/// Fills an area with the context's brush.
inline void FillArea(DeviceContext& context, Region area) {
    PaintArea(context, std::move(area), *context.State().brush);
}

/// How wide the context's pen is on the device: 1 for cosmetic pens, 0 for one that draws nothing.
int PenWidth(const DeviceContext& context);

/// Draws lines with the context's pen. @throws std::bad_alloc
void DrawLines(DeviceContext& context, const std::vector<Figure>& figures);

/// Paints the outline of a shape, which is @p area without @p inside, as a solid pen leaves it.
void PaintOutline(DeviceContext& context, Region area, const Region& inside);

} // namespace kel::platform
