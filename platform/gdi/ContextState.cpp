#include "platform/gdi/DeviceContext.h"
#include "platform/kernel/Faults.h"

#include <kelcore/platform/shapes.h>

#include <utility>

namespace kel::platform {
namespace {

/// Reads a value of a context's state.
template <class Value>
Value Get(const char* name, HDC dc, Value ContextState::*value, Value failure) {
    if (CallFails(name))
        return failure;
    const auto context = FindContext(dc);
    return context ? context->State().*value : failure;
}

/// Replaces one. @return what it was.
template <class Value>
Value Set(const char* name, HDC dc, Value ContextState::*value, Value wanted, Value failure) {
    if (CallFails(name))
        return failure;
    const auto context = FindContext(dc);
    return context ? std::exchange(context->State().*value, wanted) : failure;
}

/// Replaces a mode. @return what it was; 0 if @p wanted is not between the two others.
int SetMode(const char* name, HDC dc, int ContextState::*mode, int wanted, int first, int last) {
    if (CallFails(name))
        return 0;
    const auto context = FindContext(dc);
    if (!context)
        return 0;
    if (wanted < first || wanted > last)
        return Fail(ERROR_INVALID_PARAMETER);
    return std::exchange(context->State().*mode, wanted);
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

COLORREF WINAPI SetTextColor(HDC dc, COLORREF colour) {
    return Set("SetTextColor", dc, &ContextState::textColour, colour, CLR_INVALID);
}

COLORREF WINAPI GetTextColor(HDC dc) {
    return Get("GetTextColor", dc, &ContextState::textColour, CLR_INVALID);
}

COLORREF WINAPI SetBkColor(HDC dc, COLORREF colour) {
    return Set("SetBkColor", dc, &ContextState::backColour, colour, CLR_INVALID);
}

COLORREF WINAPI GetBkColor(HDC dc) {
    return Get("GetBkColor", dc, &ContextState::backColour, CLR_INVALID);
}

COLORREF WINAPI SetDCBrushColor(HDC dc, COLORREF colour) {
    return Set("SetDCBrushColor", dc, &ContextState::brushColour, colour, CLR_INVALID);
}

COLORREF WINAPI SetDCPenColor(HDC dc, COLORREF colour) {
    return Set("SetDCPenColor", dc, &ContextState::penColour, colour, CLR_INVALID);
}

int WINAPI SetBkMode(HDC dc, int mode) {
    return SetMode("SetBkMode", dc, &ContextState::backMode, mode, TRANSPARENT, OPAQUE);
}

int WINAPI GetBkMode(HDC dc) {
    return Get("GetBkMode", dc, &ContextState::backMode, 0);
}

int WINAPI SetROP2(HDC dc, int mode) {
    return SetMode("SetROP2", dc, &ContextState::rasterMode, mode, R2_BLACK, R2_WHITE);
}

int WINAPI GetROP2(HDC dc) {
    return Get("GetROP2", dc, &ContextState::rasterMode, 0);
}

int WINAPI SetPolyFillMode(HDC dc, int mode) {
    return SetMode("SetPolyFillMode", dc, &ContextState::fillMode, mode, ALTERNATE, WINDING);
}

int WINAPI GetPolyFillMode(HDC dc) {
    return Get("GetPolyFillMode", dc, &ContextState::fillMode, 0);
}

int WINAPI SetStretchBltMode(HDC dc, int mode) {
    return SetMode("SetStretchBltMode", dc, &ContextState::stretchMode, mode, BLACKONWHITE, HALFTONE);
}

int WINAPI GetStretchBltMode(HDC dc) {
    return Get("GetStretchBltMode", dc, &ContextState::stretchMode, 0);
}
