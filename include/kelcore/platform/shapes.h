#pragma once

/// @file
/// Lines, curves and shapes. All coordinates are logical units, edges of rectangles in either order.
///
/// Lines and outlines are drawn with the context's pen, insides with its brush, both combined with what is there by the
/// mode of SetROP2. Gaps of styled pens and hatches are drawn in the background colour, or not at all where the
/// background mode is TRANSPARENT. While a path is open (drawingpaths.h) the calls up to PolyPolygon add to it.
/// FALSE is returned with ERROR_INVALID_HANDLE for what is no context, ERROR_INVALID_PARAMETER for too few points.

#include <kelcore/platform/drawingpaths.h>
#include <kelcore/platform/pens.h>

/// @name Borders of DrawEdge
/// An outer and an inner line, each raised or sunken.
/// @{
#define BDR_RAISEDOUTER 0x0001
#define BDR_SUNKENOUTER 0x0002
#define BDR_RAISEDINNER 0x0004
#define BDR_SUNKENINNER 0x0008
#define BDR_OUTER 0x0003
#define BDR_INNER 0x000C
#define BDR_RAISED 0x0005
#define BDR_SUNKEN 0x000A
#define EDGE_RAISED (BDR_RAISEDOUTER | BDR_RAISEDINNER)
#define EDGE_SUNKEN (BDR_SUNKENOUTER | BDR_SUNKENINNER)
#define EDGE_ETCHED (BDR_SUNKENOUTER | BDR_RAISEDINNER)
#define EDGE_BUMP (BDR_RAISEDOUTER | BDR_SUNKENINNER)
#define BF_LEFT 0x0001
#define BF_TOP 0x0002
#define BF_RIGHT 0x0004
#define BF_BOTTOM 0x0008
#define BF_TOPLEFT (BF_TOP | BF_LEFT)
#define BF_TOPRIGHT (BF_TOP | BF_RIGHT)
#define BF_BOTTOMLEFT (BF_BOTTOM | BF_LEFT)
#define BF_BOTTOMRIGHT (BF_BOTTOM | BF_RIGHT)
#define BF_RECT (BF_LEFT | BF_TOP | BF_RIGHT | BF_BOTTOM)
#define BF_MIDDLE 0x0800 ///< fill what the border surrounds
#define BF_SOFT 0x1000   ///< as buttons
#define BF_ADJUST 0x2000 ///< store what the border surrounds
#define BF_FLAT 0x4000
#define BF_MONO 0x8000
/// @}

extern "C" {

/// @name Lines
/// LineTo and those that end in To begin at the current position and leave it at their end.
/// @{
KELPLATFORM_API BOOL WINAPI LineTo(HDC dc, int x, int y);

/// @param count at least 2.
KELPLATFORM_API BOOL WINAPI Polyline(HDC dc, const POINT* points, int count);
KELPLATFORM_API BOOL WINAPI PolylineTo(HDC dc, const POINT* points, DWORD count);

/// @param counts of the points of each line, at least 2 each.
KELPLATFORM_API BOOL WINAPI PolyPolyline(HDC dc, const POINT* points, const DWORD* counts, DWORD lines);

/// Cubic curves: a start and for each curve two control points and its end, where the next one starts.
/// @param count 1 more than a multiple of 3; of PolyBezierTo a multiple of 3.
KELPLATFORM_API BOOL WINAPI PolyBezier(HDC dc, const POINT* points, DWORD count);
KELPLATFORM_API BOOL WINAPI PolyBezierTo(HDC dc, const POINT* points, DWORD count);
/// @}

/// @name Shapes
/// Filled and outlined. The pixels of the right and bottom edges are outside, for outlines, too.
/// @{
KELPLATFORM_API BOOL WINAPI Rectangle(HDC dc, int left, int top, int right, int bottom);
KELPLATFORM_API BOOL WINAPI Ellipse(HDC dc, int left, int top, int right, int bottom);

/// @param width, height of the ellipse whose quarters are the corners.
KELPLATFORM_API BOOL WINAPI RoundRect(HDC dc, int left, int top, int right, int bottom, int width, int height);

/// Closed by a line from the last point to the first. @param count at least 2.
KELPLATFORM_API BOOL WINAPI Polygon(HDC dc, const POINT* points, int count);

/// Several polygons, filled as one by the fill mode. @param counts of the points of each, at least 2 each.
KELPLATFORM_API BOOL WINAPI PolyPolygon(HDC dc, const POINT* points, const int* counts, int polygons);
/// @}

/// @name Fills and frames
/// They take no notice of the pen, the mode of SetROP2 and open paths.
/// @{

/// Fills a rectangle with a brush. @return 0 on failure.
KELPLATFORM_API int WINAPI FillRect(HDC dc, const RECT* rect, HBRUSH brush);

/// Draws the edge of a rectangle, one unit wide, with a brush. @return 0 on failure and for an empty rectangle.
KELPLATFORM_API int WINAPI FrameRect(HDC dc, const RECT* rect, HBRUSH brush);

/// Inverts the pixels of a rectangle. @return FALSE on failure.
KELPLATFORM_API BOOL WINAPI InvertRect(HDC dc, const RECT* rect);

/// Inverts every other pixel of the edge of a rectangle, so that the same call takes it away. @return FALSE on failure.
KELPLATFORM_API BOOL WINAPI DrawFocusRect(HDC dc, const RECT* rect);

/// Draws sides of a rectangle as borders in the system's colours.
/// @param edge an EDGE_ value, or one BDR_ value for each line.
/// @param flags BF_ values; diagonals are refused with ERROR_INVALID_PARAMETER.
/// @return FALSE on failure.
KELPLATFORM_API BOOL WINAPI DrawEdge(HDC dc, LPRECT rect, UINT edge, UINT flags);
/// @}

} // extern "C"
