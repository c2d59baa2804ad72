#pragma once

/// @file
/// Regions: sets of pixels. A region's handle is deleted by whoever made it; contexts copy what they are given.
///
/// Shapes that are bounded by a rectangle take its edges in either order, and do not hold its right and bottom edges.
/// Calls that answer a kind return NULLREGION, SIMPLEREGION (one rectangle) or COMPLEXREGION. Calls that are handed
/// what is no region or no context fail, with ERROR_INVALID_HANDLE; those that make a region answer null, with
/// ERROR_NOT_ENOUGH_MEMORY when memory is short.

#include <kelcore/platform/drawingpaths.h>
#include <kelcore/platform/mappingmodes.h>

/// @name Combinations
/// @{
#define RGN_AND 1
#define RGN_OR 2
#define RGN_XOR 3
#define RGN_DIFF 4 ///< the first without the second
#define RGN_COPY 5 ///< the first
#define RGN_MIN RGN_AND
#define RGN_MAX RGN_COPY
/// @}

#define RDH_RECTANGLES 1

/// Of the rectangles of a region: in bands from top to bottom, each from left to right.
typedef struct _RGNDATAHEADER {
    DWORD dwSize;   ///< 32, of this header
    DWORD iType;    ///< RDH_RECTANGLES
    DWORD nCount;   ///< of rectangles
    DWORD nRgnSize; ///< their bytes
    RECT rcBound;
} RGNDATAHEADER, *PRGNDATAHEADER;

typedef struct _RGNDATA {
    RGNDATAHEADER rdh;
    char Buffer[1]; ///< RECT by RECT
} RGNDATA, *PRGNDATA, *LPRGNDATA;

extern "C" {

/// @name Making regions
/// @{
KELPLATFORM_API HRGN WINAPI CreateRectRgn(int left, int top, int right, int bottom);
KELPLATFORM_API HRGN WINAPI CreateRectRgnIndirect(const RECT* rect);

/// An ellipse that fills the rectangle, but for its last column and row; of 1,048,576 pixels a side at most.
KELPLATFORM_API HRGN WINAPI CreateEllipticRgn(int left, int top, int right, int bottom);
KELPLATFORM_API HRGN WINAPI CreateEllipticRgnIndirect(const RECT* rect);

/// A rectangle, but for its last column and row, with quarters of an ellipse of that size for corners.
KELPLATFORM_API HRGN WINAPI CreateRoundRectRgn(int left, int top, int right, int bottom, int width, int height);

/// A polygon, closed from its last point to its first. A pixel belongs to it if the point of its own coordinates lies
/// inside, or on a left or upper edge.
/// @param mode ALTERNATE or WINDING.
/// @return null with ERROR_INVALID_PARAMETER for a negative count. Fewer than 3 points hold nothing.
KELPLATFORM_API HRGN WINAPI CreatePolygonRgn(const POINT* points, int count, int mode);

/// Several polygons, of @p counts[0], @p counts[1] … points, taken together.
KELPLATFORM_API HRGN WINAPI CreatePolyPolygonRgn(const POINT* points, const INT* counts, int polygons, int mode);

/// A region of the rectangles of @p data, in any order.
/// @param transform maps each rectangle's corners, rounded to whole numbers. Null keeps them; edges that are not in
///        order then hold nothing.
/// @param size of @p data in bytes.
/// @return null with ERROR_INVALID_PARAMETER for null or malformed data, or data cut short.
KELPLATFORM_API HRGN WINAPI ExtCreateRegion(const XFORM* transform, DWORD size, const RGNDATA* data);
/// @}

/// @name Changing and combining
/// @{

/// Stores a combination of two regions, each of which may be the result, too.
/// @param second not looked at by RGN_COPY.
/// @return the kind; ERROR with ERROR_INVALID_PARAMETER for an unknown @p mode, and the result is unchanged.
KELPLATFORM_API int WINAPI CombineRgn(HRGN result, HRGN first, HRGN second, int mode);

/// Moves a region. @return its kind; ERROR with ERROR_INVALID_PARAMETER if it would leave the range of coordinates.
KELPLATFORM_API int WINAPI OffsetRgn(HRGN region, int dx, int dy);

/// Makes the region that rectangle.
KELPLATFORM_API BOOL WINAPI SetRectRgn(HRGN region, int left, int top, int right, int bottom);
/// @}

/// @name Asking
/// @{
KELPLATFORM_API BOOL WINAPI EqualRgn(HRGN a, HRGN b);

/// Stores the smallest rectangle around a region, (0, 0, 0, 0) for an empty one. @return its kind.
KELPLATFORM_API int WINAPI GetRgnBox(HRGN region, LPRECT box);

/// Stores a region's rectangles.
/// @param data null asks for the bytes it takes.
/// @return the bytes stored, or needed; 0 with ERROR_INSUFFICIENT_BUFFER if @p size is too small.
KELPLATFORM_API DWORD WINAPI GetRegionData(HRGN region, DWORD size, LPRGNDATA data);

KELPLATFORM_API BOOL WINAPI PtInRegion(HRGN region, int x, int y);

/// Whether a pixel of the rectangle, whose edges may be in either order, is in the region.
KELPLATFORM_API BOOL WINAPI RectInRegion(HRGN region, const RECT* rect);
/// @}

/// @name Clipping by regions
/// Clip regions are in device units.
/// @{

/// Makes a copy of @p region the clip region; null removes it, so that the whole surface is drawn on.
KELPLATFORM_API int WINAPI SelectClipRgn(HDC dc, HRGN region);

/// Combines the clip region, or the surface's bounds if there is none, with @p region.
/// @param region null for RGN_COPY alone: removes the clip region.
/// @return the kind; ERROR with ERROR_INVALID_PARAMETER for an unknown @p mode.
KELPLATFORM_API int WINAPI ExtSelectClipRgn(HDC dc, HRGN region, int mode);

/// Copies the clip region into @p region. @return 1, 0 if there is none, -1 on failure.
KELPLATFORM_API int WINAPI GetClipRgn(HDC dc, HRGN region);

/// Moves the clip region, if there is one, by logical units.
KELPLATFORM_API int WINAPI OffsetClipRgn(HDC dc, int dx, int dy);

/// Whether a logical point, or a pixel of a logical rectangle, can be drawn on.
/// @{
KELPLATFORM_API BOOL WINAPI PtVisible(HDC dc, int x, int y);
KELPLATFORM_API BOOL WINAPI RectVisible(HDC dc, const RECT* rect);
/// @}
/// @}

/// @name Drawing regions
/// The region is in logical units; brushes are combined with what is there by the mode of SetROP2. FALSE on failure,
/// TRUE also when nothing is visible.
/// @{
KELPLATFORM_API BOOL WINAPI FillRgn(HDC dc, HRGN region, HBRUSH brush);

/// Fills the region with the brush of the context.
KELPLATFORM_API BOOL WINAPI PaintRgn(HDC dc, HRGN region);
KELPLATFORM_API BOOL WINAPI InvertRgn(HDC dc, HRGN region);

/// Draws the border of a region: its pixels that have one outside of it @p width to the left or right of them, or
/// @p height above or below. @return FALSE with ERROR_INVALID_PARAMETER for an empty region.
KELPLATFORM_API BOOL WINAPI FrameRgn(HDC dc, HRGN region, HBRUSH brush, int width, int height);
/// @}

} // extern "C"
