#include "platform/gdi/EllipseRows.h"
#include "platform/gdi/ScanConversion.h"
#include "platform/kernel/Faults.h"

#include <kelcore/platform/regions.h>

#include <algorithm>

namespace kel::platform {
namespace {

// Unlike what is drawn, a region of a round shape ends a pixel before the edges of its rectangle.
RECT WithoutLast(const RECT& rect) {
    const auto before = [](LONG a, LONG b) { return a == b ? a : std::max(a, b) - 1; };
    return {std::min(rect.left, rect.right), std::min(rect.top, rect.bottom), before(rect.left, rect.right),
            before(rect.top, rect.bottom)};
}

Region RoundRegion(const RECT& rect, int width, int height) {
    const RECT box = WithoutLast(rect);
    const bool hasPixels = box.left < box.right && box.top < box.bottom;
    return hasPixels ? RoundRectRegion(box, width, height) : Region();
}

HRGN MakeRectangle(const char* call, const RECT& rect) {
    return CallFails(call) ? nullptr : MakeRegion([&] { return Region(rect); });
}

HRGN MakeRound(const char* call, const RECT& rect, int width, int height) {
    return CallFails(call) ? nullptr : MakeRegion([&] { return RoundRegion(rect, width, height); });
}

HRGN MakeEllipse(const char* call, const RECT& rect) {
    return MakeRound(call, rect, kLargestEllipse + 1, kLargestEllipse + 1);
}

HRGN MakePolygons(const POINT* points, const INT* counts, int polygons, int mode) {
    return MakeRegion([&] {
        Polygons all;
        for (int i = 0; i < polygons; points += counts[i++])
            all.Add(points, counts[i]);
        return PolygonRegion(all, mode);
    });
}

bool AreCounts(const INT* counts, int polygons) {
    return polygons >= 0 && std::all_of(counts, counts + polygons, [](INT count) { return count >= 0; });
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

HRGN WINAPI CreateRectRgn(int left, int top, int right, int bottom) {
    return MakeRectangle("CreateRectRgn", {left, top, right, bottom});
}

HRGN WINAPI CreateRectRgnIndirect(const RECT* rect) {
    return MakeRectangle("CreateRectRgnIndirect", *rect);
}

HRGN WINAPI CreateEllipticRgn(int left, int top, int right, int bottom) {
    return MakeEllipse("CreateEllipticRgn", {left, top, right, bottom});
}

HRGN WINAPI CreateEllipticRgnIndirect(const RECT* rect) {
    return MakeEllipse("CreateEllipticRgnIndirect", *rect);
}

HRGN WINAPI CreateRoundRectRgn(int left, int top, int right, int bottom, int width, int height) {
    return MakeRound("CreateRoundRectRgn", {left, top, right, bottom}, width, height);
}

HRGN WINAPI CreatePolygonRgn(const POINT* points, int count, int mode) {
    if (CallFails("CreatePolygonRgn"))
        return nullptr;
    if (count < 0)
        return Fail(ERROR_INVALID_PARAMETER), nullptr;
    return MakePolygons(points, &count, 1, mode);
}

HRGN WINAPI CreatePolyPolygonRgn(const POINT* points, const INT* counts, int polygons, int mode) {
    if (CallFails("CreatePolyPolygonRgn"))
        return nullptr;
    if (!AreCounts(counts, polygons))
        return Fail(ERROR_INVALID_PARAMETER), nullptr;
    return MakePolygons(points, counts, polygons, mode);
}
