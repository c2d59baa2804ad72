#pragma once

/// @file
/// Paths: lines and curves that are collected and then used as one. Between BeginPath and EndPath the calls of shapes.h
/// that draw lines, curves and shapes add figures instead of drawing; fills of rectangles, blits and text draw as ever.
/// A context has one path, open or closed, which SaveDC puts aside with the rest of its state.

#include <kelcore/platform/devicecontexts.h>

/// @name Modes of filling
/// What lies inside of a figure that crosses itself.
/// @{
#define ALTERNATE 1 ///< what an odd number of edges surrounds
#define WINDING 2   ///< what is gone around more often one way than the other
/// @}

/// @name Kinds of points of a path
/// @{
#define PT_CLOSEFIGURE 0x01 ///< with one of the next two: the figure is closed behind it
#define PT_LINETO 0x02
#define PT_BEZIERTO 0x04 ///< three of them: two control points and the end
#define PT_MOVETO 0x06
/// @}

extern "C" {

/// Opens a path and drops the one that was.
KELPLATFORM_API BOOL WINAPI BeginPath(HDC dc);

/// Closes the path, which is the context's then. @return FALSE with ERROR_CAN_NOT_COMPLETE if none is open.
KELPLATFORM_API BOOL WINAPI EndPath(HDC dc);

/// Drops the path, open or not.
KELPLATFORM_API BOOL WINAPI AbortPath(HDC dc);

/// Ends the open path's figure with a line to its start. @return FALSE with ERROR_CAN_NOT_COMPLETE if none is open.
KELPLATFORM_API BOOL WINAPI CloseFigure(HDC dc);

/// @name Calls that take the closed path
/// Without one they fail, with ERROR_CAN_NOT_COMPLETE. The first four drop it.
/// @{

/// Fills it with the brush by the fill mode; open figures as if they were closed.
KELPLATFORM_API BOOL WINAPI FillPath(HDC dc);

/// Draws its lines with the pen.
KELPLATFORM_API BOOL WINAPI StrokePath(HDC dc);

/// Closes all figures, fills them and draws their lines.
KELPLATFORM_API BOOL WINAPI StrokeAndFillPath(HDC dc);

/// The pixels that FillPath would fill, as a region of device units; the caller deletes it.
/// @return null on failure, and for a path without points.
KELPLATFORM_API HRGN WINAPI PathToRegion(HDC dc);

/// Makes lines of its curves.
KELPLATFORM_API BOOL WINAPI FlattenPath(HDC dc);

/// Stores its points, in logical units, and their kinds.
/// @param count 0 asks for the number of points.
/// @return the number of points; -1 on failure, with ERROR_INVALID_PARAMETER if @p count is too small.
KELPLATFORM_API int WINAPI GetPath(HDC dc, LPPOINT points, BYTE* types, int count);
/// @}

/// The mode of filling polygons and paths, at first ALTERNATE. @return the previous mode, 0 on failure.
KELPLATFORM_API int WINAPI SetPolyFillMode(HDC dc, int mode);
KELPLATFORM_API int WINAPI GetPolyFillMode(HDC dc);

} // extern "C"
