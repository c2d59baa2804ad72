#pragma once

/// @file
/// Points, sizes and rectangles, and the arithmetic of rectangles. The left and top edges of a rectangle belong to it,
/// the right and bottom edges do not. Coordinates are 32 bits and wrap on overflow.
///
/// Calls that are handed a null pointer where they store a rectangle answer FALSE.

#include <kelcore/platform/base.h>

typedef struct tagPOINT {
    LONG x;
    LONG y;
} POINT, *PPOINT, *LPPOINT;

typedef struct tagSIZE {
    LONG cx;
    LONG cy;
} SIZE, *PSIZE, *LPSIZE;

typedef struct tagRECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
} RECT, *PRECT, *LPRECT;
typedef const RECT* LPCRECT;

extern "C" {

/// Stores the four edges.
KELPLATFORM_API BOOL WINAPI SetRect(LPRECT rect, int left, int top, int right, int bottom);

/// Stores (0, 0, 0, 0).
KELPLATFORM_API BOOL WINAPI SetRectEmpty(LPRECT rect);

KELPLATFORM_API BOOL WINAPI CopyRect(LPRECT to, const RECT* from);

/// Moves the left and right edges outwards by @p dx and the top and bottom edges by @p dy; negative values shrink.
KELPLATFORM_API BOOL WINAPI InflateRect(LPRECT rect, int dx, int dy);

KELPLATFORM_API BOOL WINAPI OffsetRect(LPRECT rect, int dx, int dy);

/// Stores what @p a and @p b have in common.
/// @param to may be one of the others.
/// @return FALSE, with (0, 0, 0, 0) stored, if that is nothing; an empty rectangle has nothing in common with any
/// other.
KELPLATFORM_API BOOL WINAPI IntersectRect(LPRECT to, const RECT* a, const RECT* b);

/// Stores the smallest rectangle around both; an empty one does not count.
/// @return FALSE, with (0, 0, 0, 0) stored, if both are empty.
KELPLATFORM_API BOOL WINAPI UnionRect(LPRECT to, const RECT* a, const RECT* b);

/// Stores what is left of @p a when @p b is taken away, as far as that is a rectangle: @p a itself unless @p b covers
/// it from edge to edge in one direction.
/// @return FALSE if nothing is left; (0, 0, 0, 0) is stored then.
KELPLATFORM_API BOOL WINAPI SubtractRect(LPRECT to, const RECT* a, const RECT* b);

/// Whether the width or height is 0 or less; TRUE for null.
KELPLATFORM_API BOOL WINAPI IsRectEmpty(const RECT* rect);

/// Whether all four edges are the same.
KELPLATFORM_API BOOL WINAPI EqualRect(const RECT* a, const RECT* b);

KELPLATFORM_API BOOL WINAPI PtInRect(const RECT* rect, POINT point);

} // extern "C"
