#include "platform/gdi/Clip.h"
#include "platform/kernel/Faults.h"

#include <kelcore/platform/regions.h>

#include <cstdint>
#include <limits>

namespace kel::platform {
namespace {

std::shared_ptr<RegionObject> FindRegion(HRGN handle) {
    return FindObject<RegionObject>(handle);
}

using Combination = void (Region::*)(const Region&, const Region&);

Combination CombinationOf(int mode) {
    switch (mode) {
    case RGN_AND:
        return &Region::SetIntersection;
    case RGN_OR:
        return &Region::SetUnion;
    case RGN_XOR:
        return &Region::SetEither;
    default:
        return &Region::SetDifference;
    }
}

int Copy(RegionObject& result, HRGN source) {
    const auto region = FindRegion(source);
    if (!region)
        return ERROR;
    return WithMemory(ERROR, [&] {
        result.Pixels() = region->Pixels();
        return result.Pixels().Kind();
    });
}

int Combine(RegionObject& result, HRGN first, HRGN second, Combination combination) {
    const auto a = FindRegion(first);
    const auto b = a ? FindRegion(second) : nullptr;
    if (!b)
        return ERROR;
    return WithMemory(ERROR, [&] {
        (result.Pixels().*combination)(a->Pixels(), b->Pixels());
        return result.Pixels().Kind();
    });
}

bool FitsOffset(LONG low, LONG high, int by) {
    using Limits = std::numeric_limits<LONG>;
    return std::int64_t{low} + by >= Limits::min() && std::int64_t{high} + by <= Limits::max();
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

int WINAPI CombineRgn(HRGN result, HRGN first, HRGN second, int mode) {
    if (CallFails("CombineRgn"))
        return ERROR;
    const auto region = FindRegion(result);
    if (!region)
        return ERROR;
    if (mode < RGN_MIN || mode > RGN_MAX)
        return Fail(ERROR_INVALID_PARAMETER);
    return mode == RGN_COPY ? Copy(*region, first) : Combine(*region, first, second, CombinationOf(mode));
}

int WINAPI OffsetRgn(HRGN handle, int dx, int dy) {
    if (CallFails("OffsetRgn"))
        return ERROR;
    const auto region = FindRegion(handle);
    if (!region)
        return ERROR;
    const RECT box = region->Pixels().Box();
    if (region->Pixels().Kind() == NULLREGION)
        return NULLREGION;
    if (!FitsOffset(box.left, box.right, dx) || !FitsOffset(box.top, box.bottom, dy))
        return Fail(ERROR_INVALID_PARAMETER);
    region->Pixels().Offset(dx, dy);
    return region->Pixels().Kind();
}

BOOL WINAPI SetRectRgn(HRGN handle, int left, int top, int right, int bottom) {
    if (CallFails("SetRectRgn"))
        return FALSE;
    const auto region = FindRegion(handle);
    if (!region)
        return FALSE;
    region->Pixels() = Region(RECT{left, top, right, bottom});
    return TRUE;
}

BOOL WINAPI EqualRgn(HRGN a, HRGN b) {
    if (CallFails("EqualRgn"))
        return FALSE;
    const auto first = FindRegion(a);
    const auto second = first ? FindRegion(b) : nullptr;
    return second && first->Pixels() == second->Pixels();
}

int WINAPI GetRgnBox(HRGN handle, LPRECT box) {
    if (CallFails("GetRgnBox"))
        return ERROR;
    const auto region = FindRegion(handle);
    if (!region)
        return ERROR;
    if (!box)
        return Fail(ERROR_INVALID_PARAMETER);
    *box = region->Pixels().Box();
    return region->Pixels().Kind();
}

BOOL WINAPI PtInRegion(HRGN handle, int x, int y) {
    if (CallFails("PtInRegion"))
        return FALSE;
    const auto region = FindRegion(handle);
    return region && region->Pixels().Holds({x, y});
}

BOOL WINAPI RectInRegion(HRGN handle, const RECT* rect) {
    if (CallFails("RectInRegion"))
        return FALSE;
    const auto region = FindRegion(handle);
    if (!region)
        return FALSE;
    return rect ? region->Pixels().Meets(*rect) : Fail(ERROR_INVALID_PARAMETER);
}
