#include <kelcore/platform/rectangles.h>

#include <algorithm>

namespace kel::platform {
namespace {

constexpr RECT kNothing{0, 0, 0, 0};

bool IsEmpty(const RECT& rect) {
    return rect.left >= rect.right || rect.top >= rect.bottom;
}

/// What is stored, or (0, 0, 0, 0) if that is empty. @return whether it is not.
BOOL Store(LPRECT to, const RECT& rect) {
    *to = IsEmpty(rect) ? kNothing : rect;
    return !IsEmpty(rect);
}

RECT Intersection(const RECT& a, const RECT& b) {
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right), std::min(a.bottom, b.bottom)};
}

RECT Union(const RECT& a, const RECT& b) {
    if (IsEmpty(a))
        return b;
    if (IsEmpty(b))
        return a;
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right), std::max(a.bottom, b.bottom)};
}

/// @p a less @p common, which lies in it, if that is a rectangle.
RECT Difference(const RECT& a, const RECT& common) {
    RECT rest = a;
    if (common.top == a.top && common.bottom == a.bottom) {
        if (common.left == a.left)
            rest.left = common.right;
        else if (common.right == a.right)
            rest.right = common.left;
    } else if (common.left == a.left && common.right == a.right) {
        if (common.top == a.top)
            rest.top = common.bottom;
        else if (common.bottom == a.bottom)
            rest.bottom = common.top;
    }
    return rest;
}

// Coordinates wrap rather than overflow.
LONG Sum(LONG a, LONG b) {
    return static_cast<LONG>(static_cast<ULONG>(a) + static_cast<ULONG>(b));
}

LONG Negative(LONG value) {
    return static_cast<LONG>(0 - static_cast<ULONG>(value));
}

void Move(RECT& rect, LONG left, LONG top, LONG right, LONG bottom) {
    rect = {Sum(rect.left, left), Sum(rect.top, top), Sum(rect.right, right), Sum(rect.bottom, bottom)};
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

BOOL WINAPI SetRect(LPRECT rect, int left, int top, int right, int bottom) {
    if (rect)
        *rect = {left, top, right, bottom};
    return rect != nullptr;
}

BOOL WINAPI SetRectEmpty(LPRECT rect) {
    return SetRect(rect, 0, 0, 0, 0);
}

BOOL WINAPI CopyRect(LPRECT to, const RECT* from) {
    if (!to || !from)
        return FALSE;
    *to = *from;
    return TRUE;
}

BOOL WINAPI InflateRect(LPRECT rect, int dx, int dy) {
    if (rect)
        Move(*rect, Negative(dx), Negative(dy), dx, dy);
    return rect != nullptr;
}

BOOL WINAPI OffsetRect(LPRECT rect, int dx, int dy) {
    if (rect)
        Move(*rect, dx, dy, dx, dy);
    return rect != nullptr;
}

BOOL WINAPI IntersectRect(LPRECT to, const RECT* a, const RECT* b) {
    if (!to || !a || !b)
        return FALSE;
    return Store(to, IsEmpty(*a) || IsEmpty(*b) ? kNothing : Intersection(*a, *b));
}

BOOL WINAPI UnionRect(LPRECT to, const RECT* a, const RECT* b) {
    if (!to)
        return FALSE;
    return Store(to, Union(a ? *a : kNothing, b ? *b : kNothing));
}

BOOL WINAPI SubtractRect(LPRECT to, const RECT* a, const RECT* b) {
    if (!to)
        return FALSE;
    RECT common;
    if (!a || !IntersectRect(&common, a, b))
        return Store(to, a ? *a : kNothing);
    return Store(to, Difference(*a, common));
}

BOOL WINAPI IsRectEmpty(const RECT* rect) {
    return !rect || IsEmpty(*rect);
}

BOOL WINAPI EqualRect(const RECT* a, const RECT* b) {
    return a && b && a->left == b->left && a->top == b->top && a->right == b->right && a->bottom == b->bottom;
}

BOOL WINAPI PtInRect(const RECT* rect, POINT point) {
    return rect && point.x >= rect->left && point.x < rect->right && point.y >= rect->top && point.y < rect->bottom;
}
