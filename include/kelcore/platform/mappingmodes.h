#pragma once

/// @file
/// From the units of drawing calls (logical) to pixels (device), and back.
///
/// Each context maps x and y by
///
///     device = (logical - window origin) * viewport extent / window extent + viewport origin
///
/// and the other way round. Results are rounded to the nearest whole number, a half to the greater one; sums wrap on
/// overflow. Rectangles are mapped by both corners, so that neighbours stay neighbours, and lie between them whichever
/// way the axes run. At first the mode is MM_TEXT, with origins (0, 0).
///
/// Calls that are handed what is no context fail, with ERROR_INVALID_HANDLE. Those that store a previous value take
/// null for it. The state is put aside by SaveDC and comes back by RestoreDC.

#include <kelcore/platform/devicecontexts.h>

/// @name Mapping modes
/// A mode sets the extents and leaves the origins alone. All but MM_TEXT let y grow upwards.
/// @{
#define MM_TEXT 1        ///< a unit is a pixel: both extents are (1, 1)
#define MM_LOMETRIC 2    ///< 0.1 mm
#define MM_HIMETRIC 3    ///< 0.01 mm
#define MM_LOENGLISH 4   ///< 0.01 inch
#define MM_HIENGLISH 5   ///< 0.001 inch
#define MM_TWIPS 6       ///< 1/1440 inch
#define MM_ISOTROPIC 7   ///< extents of the caller's, as long on both axes; those of MM_LOMETRIC at first
#define MM_ANISOTROPIC 8 ///< extents of the caller's; those of the mode before at first
#define MM_MIN MM_TEXT
#define MM_MAX MM_ANISOTROPIC
#define MM_MAX_FIXEDSCALE MM_TWIPS
/// @}

/// A linear map of the plane: x' = x * eM11 + y * eM21 + eDx, y' = x * eM12 + y * eM22 + eDy.
typedef struct tagXFORM {
    float eM11;
    float eM12;
    float eM21;
    float eM22;
    float eDx;
    float eDy;
} XFORM, *PXFORM, *LPXFORM;

typedef float FLOAT;
typedef float* PFLOAT;

extern "C" {

/// @p number * @p numerator / @p denominator with 64 bits between, rounded to the nearest, halves away from zero.
/// @return -1 if @p denominator is 0 or the result exceeds 2147483647 in either direction.
KELPLATFORM_API int WINAPI MulDiv(int number, int numerator, int denominator);

/// Sets the mapping mode. In the modes of fixed scale the viewport's extent is the screen in pixels (its height
/// negative) and the window's the screen in units, as GetDeviceCaps tells its millimetres.
/// @return the previous mode; 0 with ERROR_INVALID_PARAMETER for what is no mode.
KELPLATFORM_API int WINAPI SetMapMode(HDC dc, int mode);
KELPLATFORM_API int WINAPI GetMapMode(HDC dc);

/// @name Extents
/// They change in MM_ISOTROPIC and MM_ANISOTROPIC; in the other modes the calls succeed and change nothing. An extent
/// of 0 is refused with ERROR_INVALID_PARAMETER. Scaling multiplies and divides with what comes after the point
/// dropped, or 1 in place of 0; a factor of 0 is refused in the same way.
///
/// In MM_ISOTROPIC each change makes the viewport's extent smaller on the axis whose unit is longer on the screen, so
/// that the units are as long on both; set the window's extent first.
/// @param previous receives the value that was, also when the new one is refused.
/// @{
KELPLATFORM_API BOOL WINAPI GetWindowExtEx(HDC dc, LPSIZE extent);
KELPLATFORM_API BOOL WINAPI GetViewportExtEx(HDC dc, LPSIZE extent);
KELPLATFORM_API BOOL WINAPI SetWindowExtEx(HDC dc, int x, int y, LPSIZE previous);
KELPLATFORM_API BOOL WINAPI SetViewportExtEx(HDC dc, int x, int y, LPSIZE previous);
KELPLATFORM_API BOOL WINAPI ScaleWindowExtEx(HDC dc, int xMultiplier, int xDivisor, int yMultiplier, int yDivisor,
                                             LPSIZE previous);
KELPLATFORM_API BOOL WINAPI ScaleViewportExtEx(HDC dc, int xMultiplier, int xDivisor, int yMultiplier, int yDivisor,
                                               LPSIZE previous);
/// @}

/// @name Origins
/// The window's is in logical, the viewport's in device units. Those of Set and Offset take null for @p previous.
/// @{
KELPLATFORM_API BOOL WINAPI GetWindowOrgEx(HDC dc, LPPOINT origin);
KELPLATFORM_API BOOL WINAPI GetViewportOrgEx(HDC dc, LPPOINT origin);
KELPLATFORM_API BOOL WINAPI SetWindowOrgEx(HDC dc, int x, int y, LPPOINT previous);
KELPLATFORM_API BOOL WINAPI SetViewportOrgEx(HDC dc, int x, int y, LPPOINT previous);
KELPLATFORM_API BOOL WINAPI OffsetWindowOrgEx(HDC dc, int dx, int dy, LPPOINT previous);
KELPLATFORM_API BOOL WINAPI OffsetViewportOrgEx(HDC dc, int dx, int dy, LPPOINT previous);
/// @}

/// Maps @p count points in place. @return FALSE for what is no context.
/// @{
KELPLATFORM_API BOOL WINAPI DPtoLP(HDC dc, LPPOINT points, int count);
KELPLATFORM_API BOOL WINAPI LPtoDP(HDC dc, LPPOINT points, int count);
/// @}

/// Where patterns of brushes begin, in device units.
/// @{
KELPLATFORM_API BOOL WINAPI GetBrushOrgEx(HDC dc, LPPOINT origin);
KELPLATFORM_API BOOL WINAPI SetBrushOrgEx(HDC dc, int x, int y, LPPOINT previous);
/// @}

/// Where the next line begins, in logical units. It keeps its numbers when the mapping changes.
/// @{
KELPLATFORM_API BOOL WINAPI GetCurrentPositionEx(HDC dc, LPPOINT position);
KELPLATFORM_API BOOL WINAPI MoveToEx(HDC dc, int x, int y, LPPOINT previous);
/// @}

/// Stores (0, 0): fonts are not filtered by aspect ratio.
KELPLATFORM_API BOOL WINAPI GetAspectRatioFilterEx(HDC dc, LPSIZE filter);

/// How many times its pen's width the tip of a mitred join may be away; 10 at first.
/// @{
KELPLATFORM_API BOOL WINAPI GetMiterLimit(HDC dc, PFLOAT limit);
KELPLATFORM_API BOOL WINAPI SetMiterLimit(HDC dc, FLOAT limit, PFLOAT previous);
/// @}

} // extern "C"
