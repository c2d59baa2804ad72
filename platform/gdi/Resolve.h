#pragma once

/// @file
/// From calls to jobs: handles, mapping, brushes and colours looked up.

#include "platform/gdi/DeviceContext.h"
#include "platform/gdi/RasterJob.h"

namespace kel::platform {

/// A rectangle as callers give it, in logical units; a negative size mirrors.
struct LogicalBox {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

/// A job without a source on all of @p box. It refers to the context's surface and clip region, and is to be run before
/// these change. @throws std::bad_alloc
RasterJob JobOn(DeviceContext& target, const LogicalBox& box);

/// Gives the job the rectangle @p from of @p source to draw from.
void DrawFrom(RasterJob& job, const DeviceContext& target, const DeviceContext& source, const LogicalBox& from);

/// Gives the job a surface to draw from. @p from is in pixels.
void DrawFrom(RasterJob& job, const DeviceContext& target, const Surface& source, const LogicalBox& from);

/// Sets the ternary operation, and the brush of @p target if the operation needs one.
/// @return false for the brush that draws nothing.
bool Operate(RasterJob& job, const DeviceContext& target, DWORD operation);

/// What @p brush leaves on @p target.
Pattern PatternOf(const DeviceContext& target, const BrushObject& brush, const Surface& surface);

/// The stored pixel of a colour that the caller named.
std::uint32_t PixelFor(const Surface& surface, COLORREF colour);

} // namespace kel::platform
