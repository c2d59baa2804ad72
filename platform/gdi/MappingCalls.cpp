#include "platform/gdi/DeviceContext.h"
#include "platform/kernel/Faults.h"

#include <cstdint>
#include <utility>

namespace kel::platform {
namespace {

/// The place of a value in the state.
template <class Value>
using Place = Value& (*)(ContextState&);

POINT& BrushOrigin(ContextState& state) {
    return state.brushOrigin;
}
POINT& Position(ContextState& state) {
    return state.position;
}
POINT& ViewportOrigin(ContextState& state) {
    return state.mapping.viewportOrigin;
}
POINT& WindowOrigin(ContextState& state) {
    return state.mapping.windowOrigin;
}
SIZE& ViewportExtent(ContextState& state) {
    return state.mapping.viewportExtent;
}
SIZE& WindowExtent(ContextState& state) {
    return state.mapping.windowExtent;
}
FLOAT& MiterLimit(ContextState& state) {
    return state.miterLimit;
}

template <class Value>
BOOL Get(const char* name, HDC dc, Place<Value> place, Value* value) {
    if (CallFails(name))
        return FALSE;
    const auto context = FindContext(dc);
    if (!context)
        return FALSE;
    if (!value)
        return Fail(ERROR_INVALID_PARAMETER);
    *value = place(context->State());
    return TRUE;
}

template <class Value>
BOOL Set(const char* name, HDC dc, Place<Value> place, Value wanted, Value* previous) {
    if (CallFails(name))
        return FALSE;
    const auto context = FindContext(dc);
    if (!context)
        return FALSE;
    const Value old = std::exchange(place(context->State()), wanted);
    if (previous)
        *previous = old;
    return TRUE;
}

// Wraps rather than overflows.
LONG Sum(LONG a, LONG b) {
    return static_cast<LONG>(static_cast<ULONG>(a) + static_cast<ULONG>(b));
}

BOOL Offset(const char* name, HDC dc, Place<POINT> place, POINT by, LPPOINT previous) {
    if (CallFails(name))
        return FALSE;
    const auto context = FindContext(dc);
    if (!context)
        return FALSE;
    POINT& origin = place(context->State());
    const POINT old = origin;
    origin = {Sum(old.x, by.x), Sum(old.y, by.y)};
    if (previous)
        *previous = old;
    return TRUE;
}

/// Stores what an extent was, and lets @p change make it another. @p change fails for factors and extents of 0.
template <class Change>
BOOL ChangeExtent(const char* name, HDC dc, Place<SIZE> place, LPSIZE previous, Change change) {
    if (CallFails(name))
        return FALSE;
    const auto context = FindContext(dc);
    if (!context)
        return FALSE;
    SIZE& extent = place(context->State());
    if (previous)
        *previous = extent;
    Mapping& mapping = context->State().mapping;
    if (!mapping.IsScalable())
        return TRUE;
    if (!change(extent))
        return Fail(ERROR_INVALID_PARAMETER);
    mapping.Even();
    return TRUE;
}

BOOL SetExtent(const char* name, HDC dc, Place<SIZE> place, SIZE wanted, LPSIZE previous) {
    return ChangeExtent(name, dc, place, previous, [&](SIZE& extent) {
        if (wanted.cx == 0 || wanted.cy == 0)
            return false;
        extent = wanted;
        return true;
    });
}

struct Factor {
    int multiplier;
    int divisor;

    bool IsZero() const { return multiplier == 0 || divisor == 0; }
    LONG Of(LONG extent) const {
        const auto product = static_cast<LONG>(std::int64_t{extent} * multiplier / divisor);
        return product != 0 ? product : 1;
    }
};

BOOL ScaleExtent(const char* name, HDC dc, Place<SIZE> place, Factor x, Factor y, LPSIZE previous) {
    return ChangeExtent(name, dc, place, previous, [&](SIZE& extent) {
        if (x.IsZero() || y.IsZero())
            return false;
        extent = {x.Of(extent.cx), y.Of(extent.cy)};
        return true;
    });
}

BOOL MapPoints(const char* name, HDC dc, LPPOINT points, int count, POINT (Mapping::*map)(POINT) const) {
    if (CallFails(name))
        return FALSE;
    const auto context = FindContext(dc);
    if (!context)
        return FALSE;
    const Mapping& mapping = context->State().mapping;
    for (int i = 0; points && i < count; ++i)
        points[i] = (mapping.*map)(points[i]);
    return TRUE;
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

int WINAPI SetMapMode(HDC dc, int mode) {
    if (CallFails("SetMapMode"))
        return 0;
    const auto context = FindContext(dc);
    if (!context)
        return 0;
    Mapping& mapping = context->State().mapping;
    const int previous = mapping.mode;
    return mapping.SetMode(mode) ? previous : Fail(ERROR_INVALID_PARAMETER);
}

int WINAPI GetMapMode(HDC dc) {
    if (CallFails("GetMapMode"))
        return 0;
    const auto context = FindContext(dc);
    return context ? context->State().mapping.mode : 0;
}

BOOL WINAPI GetWindowExtEx(HDC dc, LPSIZE extent) {
    return Get("GetWindowExtEx", dc, WindowExtent, extent);
}

BOOL WINAPI GetViewportExtEx(HDC dc, LPSIZE extent) {
    return Get("GetViewportExtEx", dc, ViewportExtent, extent);
}

BOOL WINAPI SetWindowExtEx(HDC dc, int x, int y, LPSIZE previous) {
    return SetExtent("SetWindowExtEx", dc, WindowExtent, {x, y}, previous);
}

BOOL WINAPI SetViewportExtEx(HDC dc, int x, int y, LPSIZE previous) {
    return SetExtent("SetViewportExtEx", dc, ViewportExtent, {x, y}, previous);
}

BOOL WINAPI ScaleWindowExtEx(HDC dc, int xMultiplier, int xDivisor, int yMultiplier, int yDivisor, LPSIZE previous) {
    return ScaleExtent("ScaleWindowExtEx", dc, WindowExtent, {xMultiplier, xDivisor}, {yMultiplier, yDivisor},
                       previous);
}

BOOL WINAPI ScaleViewportExtEx(HDC dc, int xMultiplier, int xDivisor, int yMultiplier, int yDivisor, LPSIZE previous) {
    return ScaleExtent("ScaleViewportExtEx", dc, ViewportExtent, {xMultiplier, xDivisor}, {yMultiplier, yDivisor},
                       previous);
}

BOOL WINAPI GetWindowOrgEx(HDC dc, LPPOINT origin) {
    return Get("GetWindowOrgEx", dc, WindowOrigin, origin);
}

BOOL WINAPI GetViewportOrgEx(HDC dc, LPPOINT origin) {
    return Get("GetViewportOrgEx", dc, ViewportOrigin, origin);
}

BOOL WINAPI SetWindowOrgEx(HDC dc, int x, int y, LPPOINT previous) {
    return Set("SetWindowOrgEx", dc, WindowOrigin, {x, y}, previous);
}

BOOL WINAPI SetViewportOrgEx(HDC dc, int x, int y, LPPOINT previous) {
    return Set("SetViewportOrgEx", dc, ViewportOrigin, {x, y}, previous);
}

BOOL WINAPI OffsetWindowOrgEx(HDC dc, int dx, int dy, LPPOINT previous) {
    return Offset("OffsetWindowOrgEx", dc, WindowOrigin, {dx, dy}, previous);
}

BOOL WINAPI OffsetViewportOrgEx(HDC dc, int dx, int dy, LPPOINT previous) {
    return Offset("OffsetViewportOrgEx", dc, ViewportOrigin, {dx, dy}, previous);
}

BOOL WINAPI DPtoLP(HDC dc, LPPOINT points, int count) {
    return MapPoints("DPtoLP", dc, points, count, &Mapping::ToLogical);
}

BOOL WINAPI LPtoDP(HDC dc, LPPOINT points, int count) {
    return MapPoints("LPtoDP", dc, points, count, &Mapping::ToDevice);
}

BOOL WINAPI GetBrushOrgEx(HDC dc, LPPOINT origin) {
    return Get("GetBrushOrgEx", dc, BrushOrigin, origin);
}

BOOL WINAPI SetBrushOrgEx(HDC dc, int x, int y, LPPOINT previous) {
    return Set("SetBrushOrgEx", dc, BrushOrigin, {x, y}, previous);
}

BOOL WINAPI GetCurrentPositionEx(HDC dc, LPPOINT position) {
    return Get("GetCurrentPositionEx", dc, Position, position);
}

BOOL WINAPI MoveToEx(HDC dc, int x, int y, LPPOINT previous) {
    return Set("MoveToEx", dc, Position, {x, y}, previous);
}

BOOL WINAPI GetAspectRatioFilterEx(HDC dc, LPSIZE filter) {
    if (CallFails("GetAspectRatioFilterEx") || !FindContext(dc))
        return FALSE;
    if (!filter)
        return Fail(ERROR_INVALID_PARAMETER);
    *filter = {0, 0};
    return TRUE;
}

BOOL WINAPI GetMiterLimit(HDC dc, PFLOAT limit) {
    return Get("GetMiterLimit", dc, MiterLimit, limit);
}

BOOL WINAPI SetMiterLimit(HDC dc, FLOAT limit, PFLOAT previous) {
    return Set("SetMiterLimit", dc, MiterLimit, limit, previous);
}
