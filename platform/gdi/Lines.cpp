#include "platform/gdi/ShapeDrawing.h"

namespace kel::platform {
namespace {

std::vector<POINT> ToDevice(const DeviceContext& context, const POINT* points, std::size_t count) {
    std::vector<POINT> device;
    device.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
        device.push_back(context.ToDevice(points[i]));
    return device;
}

/// Adds a line through points.
void AddLine(DrawingPath& path, const std::vector<POINT>& points) {
    path.MoveTo(points.front());
    for (std::size_t i = 1; i < points.size(); ++i)
        path.LineTo(points[i]);
}

/// Lines, or polygons, of so many points each. @param least points that each must have.
template <class Count>
bool DrawPolylines(DeviceContext& context, const POINT* points, const Count* counts, std::size_t lines, bool closed) {
    DrawingPath path;
    for (std::size_t i = 0; i < lines; points += counts[i++]) {
        if (static_cast<int>(counts[i]) < 2)
            return Fail(ERROR_INVALID_PARAMETER);
        AddLine(path, ToDevice(context, points, static_cast<std::size_t>(counts[i])));
        if (closed)
            path.Close();
    }
    DrawPath(context, path, /*filled*/ closed);
    return true;
}

/// Draws on from the current position, which goes to the last point.
bool DrawOn(DeviceContext& context, const POINT* points, std::size_t count, bool curved) {
    const POINT start = context.ToDevice(context.State().position);
    const std::vector<POINT> device = ToDevice(context, points, count);
    DrawingPath* const open = OpenPath(context);
    DrawingPath drawn;
    DrawingPath& path = open ? *open : drawn;
    if (!path.EndsAt(start))
        path.MoveTo(start);
    if (curved)
        path.CurveTo(device.data(), count);
    else
        for (const POINT& point : device)
            path.LineTo(point);
    if (!open)
        DrawLines(context, path.Figures());
    if (count > 0)
        context.State().position = points[count - 1];
    return true;
}

bool HasPoints(const POINT* points, std::size_t count, std::size_t least) {
    return (points && count >= least) || Fail(ERROR_INVALID_PARAMETER);
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

BOOL WINAPI LineTo(HDC dc, int x, int y) {
    return OnContext("LineTo", dc, [point = POINT{x, y}](DeviceContext& context) {
        return DrawOn(context, &point, 1, /*curved*/ false);
    });
}

BOOL WINAPI PolylineTo(HDC dc, const POINT* points, DWORD count) {
    return OnContext("PolylineTo", dc, [&](DeviceContext& context) {
        return HasPoints(points, count, 1) && DrawOn(context, points, count, /*curved*/ false);
    });
}

BOOL WINAPI Polyline(HDC dc, const POINT* points, int count) {
    return OnContext("Polyline", dc, [&](DeviceContext& context) {
        return DrawPolylines(context, points, &count, 1, /*closed*/ false);
    });
}

BOOL WINAPI PolyPolyline(HDC dc, const POINT* points, const DWORD* counts, DWORD lines) {
    return OnContext("PolyPolyline", dc, [&](DeviceContext& context) {
        return DrawPolylines(context, points, counts, lines, /*closed*/ false);
    });
}

BOOL WINAPI Polygon(HDC dc, const POINT* points, int count) {
    return OnContext("Polygon", dc, [&](DeviceContext& context) {
        return DrawPolylines(context, points, &count, 1, /*closed*/ true);
    });
}

BOOL WINAPI PolyPolygon(HDC dc, const POINT* points, const int* counts, int polygons) {
    return OnContext("PolyPolygon", dc, [&](DeviceContext& context) {
        return (polygons > 0 || Fail(ERROR_INVALID_PARAMETER)) &&
               DrawPolylines(context, points, counts, static_cast<std::size_t>(polygons), /*closed*/ true);
    });
}

BOOL WINAPI PolyBezier(HDC dc, const POINT* points, DWORD count) {
    return OnContext("PolyBezier", dc, [&](DeviceContext& context) {
        if (!HasPoints(points, count, 4) || (count % 3 != 1 && !Fail(ERROR_INVALID_PARAMETER)))
            return false;
        const std::vector<POINT> device = ToDevice(context, points, count);
        DrawingPath path;
        path.MoveTo(device.front());
        path.CurveTo(device.data() + 1, count - 1);
        DrawPath(context, path, /*filled*/ false);
        return true;
    });
}

BOOL WINAPI PolyBezierTo(HDC dc, const POINT* points, DWORD count) {
    return OnContext("PolyBezierTo", dc, [&](DeviceContext& context) {
        return HasPoints(points, count, 3) && (count % 3 == 0 || Fail(ERROR_INVALID_PARAMETER)) &&
               DrawOn(context, points, count, /*curved*/ true);
    });
}
