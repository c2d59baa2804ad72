#pragma once

/// @file
/// Pens: what lines and outlines are drawn with. The caller deletes what these calls make; the stock pen that draws
/// nothing may be deleted, without effect.
///
/// A cosmetic pen is one pixel wide whatever the mapping, and runs along all pixels whose diamond the line leaves: the
/// last one, where the line ends, is not drawn. Pens of CreatePen that come out at most one pixel wide are cosmetic. A
/// geometric pen's width is in logical units; lines are areas with ends and joins then, without style gaps unless made
/// by ExtCreatePen.

#include <kelcore/platform/brushes.h>

/// @name Styles of pens
/// @{
#define PS_SOLID 0
#define PS_DASH 1       ///< 18 pixels and a gap of 6
#define PS_DOT 2        ///< 3 and 3
#define PS_DASHDOT 3    ///< 9, 6, 3, 6
#define PS_DASHDOTDOT 4 ///< 9, 3, 3, 3, 3, 3
#define PS_NULL 5
#define PS_INSIDEFRAME 6 ///< solid; wide outlines of shapes with a bounding rectangle stay within it
#define PS_USERSTYLE 7   ///< lengths of dashes and gaps, of ExtCreatePen
#define PS_ALTERNATE 8   ///< every other pixel, of cosmetic pens of ExtCreatePen
#define PS_STYLE_MASK 0x0000000F
#define PS_ENDCAP_ROUND 0x00000000
#define PS_ENDCAP_SQUARE 0x00000100
#define PS_ENDCAP_FLAT 0x00000200
#define PS_ENDCAP_MASK 0x00000F00
#define PS_JOIN_ROUND 0x00000000
#define PS_JOIN_BEVEL 0x00001000
#define PS_JOIN_MITER 0x00002000
#define PS_JOIN_MASK 0x0000F000
#define PS_COSMETIC 0x00000000
#define PS_GEOMETRIC 0x00010000
#define PS_TYPE_MASK 0x000F0000
/// @}

typedef struct tagLOGPEN {
    UINT lopnStyle;
    POINT lopnWidth; ///< x alone counts; 0 is one pixel
    COLORREF lopnColor;
} LOGPEN, *PLOGPEN, *LPLOGPEN;

/// What GetObjectA tells of a pen of ExtCreatePen, up to the last style entry that there is.
typedef struct tagEXTLOGPEN {
    DWORD elpPenStyle;
    DWORD elpWidth;
    UINT elpBrushStyle;
    COLORREF elpColor;
    ULONG_PTR elpHatch;
    DWORD elpNumEntries;
    DWORD elpStyleEntry[1];
} EXTLOGPEN, *PEXTLOGPEN, *LPEXTLOGPEN;

extern "C" {

/// A pen. All null pens are the stock pen NULL_PEN.
/// @param style PS_SOLID to PS_INSIDEFRAME; others are taken as PS_SOLID.
/// @param width in logical units, its absolute value counts; pens wider than one pixel are solid.
/// @return null with ERROR_NOT_ENOUGH_MEMORY.
KELPLATFORM_API HPEN WINAPI CreatePen(int style, int width, COLORREF colour);
KELPLATFORM_API HPEN WINAPI CreatePenIndirect(const LOGPEN* pen);

/// A cosmetic or geometric pen.
/// @param style a style, for geometric pens with a cap and a join, and the type.
/// @param width 1 for cosmetic pens.
/// @param brush its colour, for geometric pens its style and hatch; BS_SOLID for cosmetic ones.
/// @param count of @p dashes, 0 unless PS_USERSTYLE, then 1 to 16.
/// @param dashes the lengths of dashes and gaps in turn: pixels for cosmetic pens, logical units for geometric ones.
/// @return null with ERROR_INVALID_PARAMETER for what does not go together.
KELPLATFORM_API HPEN WINAPI ExtCreatePen(DWORD style, DWORD width, const LOGBRUSH* brush, DWORD count,
                                         const DWORD* dashes);

} // extern "C"
