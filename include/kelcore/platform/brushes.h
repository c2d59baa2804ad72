#pragma once

/// @file
/// Brushes: what areas are filled with. The caller deletes what these calls make; the stock brush that draws nothing
/// may be deleted, without effect.

#include <kelcore/platform/gdiobjects.h>

/// @name Styles of brushes
/// @{
#define BS_SOLID 0
#define BS_NULL 1
#define BS_HOLLOW BS_NULL
#define BS_HATCHED 2
#define BS_PATTERN 3
#define BS_DIBPATTERN 5
#define BS_DIBPATTERNPT 6
#define HS_HORIZONTAL 0
#define HS_VERTICAL 1
#define HS_FDIAGONAL 2
#define HS_BDIAGONAL 3
#define HS_CROSS 4
#define HS_DIAGCROSS 5
/// @}

typedef struct tagLOGBRUSH {
    UINT lbStyle;
    COLORREF lbColor;  ///< BS_DIBPATTERN, BS_DIBPATTERNPT: the usage of the DIB's colour table
    ULONG_PTR lbHatch; ///< BS_HATCHED: an HS_ value; BS_PATTERN: an HBITMAP; BS_DIBPATTERN: an HGLOBAL with a packed
                       ///< DIB; BS_DIBPATTERNPT: a packed DIB
} LOGBRUSH, *PLOGBRUSH, *LPLOGBRUSH;

extern "C" {

/// A brush of one colour. @return null with ERROR_NOT_ENOUGH_MEMORY.
KELPLATFORM_API HBRUSH WINAPI CreateSolidBrush(COLORREF colour);

/// A brush of one of the six 8 x 8 hatches: lines in @p colour; between them the background colour of the context it is
/// used in, or nothing where its background mode is TRANSPARENT.
/// @return null with ERROR_INVALID_PARAMETER for another hatch.
KELPLATFORM_API HBRUSH WINAPI CreateHatchBrush(int hatch, COLORREF colour);

/// A brush that repeats a copy of @p bitmap from the context's brush origin. A device-dependent bitmap of one bit a
/// pixel takes the context's colours: 0 the text colour, 1 the background colour.
KELPLATFORM_API HBRUSH WINAPI CreatePatternBrush(HBITMAP bitmap);

/// A brush that repeats a copy of a packed DIB: a BITMAPINFO with the rows right behind it.
/// @param usage DIB_RGB_COLORS. @return null with ERROR_INVALID_PARAMETER for another, and for what is no DIB.
KELPLATFORM_API HBRUSH WINAPI CreateDIBPatternBrushPt(const void* dib, UINT usage);

/// The brush that @p brush describes, of any style above; those that draw nothing are the stock brush NULL_BRUSH.
/// @return null with ERROR_INVALID_PARAMETER for another style.
KELPLATFORM_API HBRUSH WINAPI CreateBrushIndirect(const LOGBRUSH* brush);

} // extern "C"
