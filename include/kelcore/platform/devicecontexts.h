#pragma once

/// @file
/// Device contexts: where drawing goes and the state it goes by.
///
/// The screen is an off-screen surface of 32 bits a pixel, 1024 x 768 at 96 dots an inch, or what the environment
/// variable KELCORE_SCREEN says ("800x600"). A memory context draws into the bitmap that is selected in it, at first a
/// black monochrome bitmap of one pixel. Calls that are handed what is no context fail, with ERROR_INVALID_HANDLE.

#include <kelcore/platform/gdiobjects.h>

typedef struct HWND__* HWND;

/// @name Background and drawing modes
/// @{
#define TRANSPARENT 1
#define OPAQUE 2
#define R2_BLACK 1
#define R2_NOTMERGEPEN 2
#define R2_MASKNOTPEN 3
#define R2_NOTCOPYPEN 4
#define R2_MASKPENNOT 5
#define R2_NOT 6
#define R2_XORPEN 7
#define R2_NOTMASKPEN 8
#define R2_MASKPEN 9
#define R2_NOTXORPEN 10
#define R2_NOP 11
#define R2_MERGENOTPEN 12
#define R2_COPYPEN 13
#define R2_MERGEPENNOT 14
#define R2_MERGEPEN 15
#define R2_WHITE 16
/// @}

/// @name Stretch modes
/// @{
#define BLACKONWHITE 1
#define WHITEONBLACK 2
#define COLORONCOLOR 3
#define HALFTONE 4
#define STRETCH_ANDSCANS BLACKONWHITE
#define STRETCH_ORSCANS WHITEONBLACK
#define STRETCH_DELETESCANS COLORONCOLOR
#define STRETCH_HALFTONE HALFTONE
/// @}

/// @name What GetDeviceCaps tells
/// @{
#define DRIVERVERSION 0
#define TECHNOLOGY 2 ///< DT_RASDISPLAY
#define HORZSIZE 4   ///< millimetres
#define VERTSIZE 6
#define HORZRES 8
#define VERTRES 10
#define BITSPIXEL 12
#define PLANES 14
#define NUMBRUSHES 16
#define NUMPENS 18
#define NUMFONTS 22
#define NUMCOLORS 24
#define CURVECAPS 28
#define LINECAPS 30
#define POLYGONALCAPS 32
#define TEXTCAPS 34
#define CLIPCAPS 36
#define RASTERCAPS 38
#define ASPECTX 40
#define ASPECTY 42
#define ASPECTXY 44
#define LOGPIXELSX 88
#define LOGPIXELSY 90
#define SIZEPALETTE 104
#define NUMRESERVED 106
#define COLORRES 108
#define DESKTOPVERTRES 117
#define DESKTOPHORZRES 118
#define SHADEBLENDCAPS 120
#define DT_RASDISPLAY 1
#define RC_BITBLT 0x0001
#define RC_BITMAP64 0x0008
#define RC_GDI20_OUTPUT 0x0010
#define RC_DI_BITMAP 0x0080
#define RC_PALETTE 0x0100
#define RC_DIBTODEV 0x0200
#define RC_STRETCHBLT 0x0800
#define RC_FLOODFILL 0x1000
#define RC_STRETCHDIB 0x2000
#define RC_OP_DX_OUTPUT 0x4000
#define SB_CONST_ALPHA 0x0001
#define SB_PIXEL_ALPHA 0x0002
#define SB_PREMULT_ALPHA 0x0004
/// @}

/// @name Kinds of regions
/// @{
#define ERROR 0
#define NULLREGION 1
#define SIMPLEREGION 2
#define COMPLEXREGION 3
#define RGN_ERROR ERROR
/// @}

extern "C" {

/// A context that draws on the client area of @p window, or null, on the screen; to be given back with ReleaseDC.
/// @return null with ERROR_INVALID_WINDOW_HANDLE, ERROR_ACCESS_DENIED for a window of another thread, or
///         ERROR_NOT_ENOUGH_MEMORY.
KELPLATFORM_API HDC WINAPI GetDC(HWND window);

/// Gives a context of GetDC, GetWindowDC or BeginPaint back. @param window not looked at.
/// @return 1, 0 for what is no such context.
KELPLATFORM_API int WINAPI ReleaseDC(HWND window, HDC dc);

/// A memory context, to be deleted with DeleteDC.
/// @param dc a context to be compatible with, null for the screen's.
/// @return null with ERROR_NOT_ENOUGH_MEMORY, or when @p dc is no context.
KELPLATFORM_API HDC WINAPI CreateCompatibleDC(HDC dc);

/// Deletes a memory context and lets go of what is selected in it. @return FALSE for what is no context.
KELPLATFORM_API BOOL WINAPI DeleteDC(HDC dc);

/// Puts the state aside: selected objects, clip region, colours, modes, origins.
/// @return the number of states put aside, 0 on failure.
KELPLATFORM_API int WINAPI SaveDC(HDC dc);

/// Brings a state of SaveDC back and drops it and those put aside later.
/// @param level what SaveDC returned, or counted from the last one: -1 is the last.
/// @return FALSE if there is no such state.
KELPLATFORM_API BOOL WINAPI RestoreDC(HDC dc, int level);

/// What the device can do; @p index as listed above. @return 0 for another.
KELPLATFORM_API int WINAPI GetDeviceCaps(HDC dc, int index);

/// @name Colours and modes
/// The setters return the previous value; CLR_INVALID (colours) or 0 (modes) on failure.
/// @{
KELPLATFORM_API COLORREF WINAPI SetTextColor(HDC dc, COLORREF colour);
KELPLATFORM_API COLORREF WINAPI GetTextColor(HDC dc);
KELPLATFORM_API COLORREF WINAPI SetBkColor(HDC dc, COLORREF colour);
KELPLATFORM_API COLORREF WINAPI GetBkColor(HDC dc);
KELPLATFORM_API COLORREF WINAPI SetDCBrushColor(HDC dc, COLORREF colour);
KELPLATFORM_API COLORREF WINAPI SetDCPenColor(HDC dc, COLORREF colour);
KELPLATFORM_API int WINAPI SetBkMode(HDC dc, int mode);
KELPLATFORM_API int WINAPI GetBkMode(HDC dc);
KELPLATFORM_API int WINAPI SetROP2(HDC dc, int mode);
KELPLATFORM_API int WINAPI GetROP2(HDC dc);
KELPLATFORM_API int WINAPI SetStretchBltMode(HDC dc, int mode);
KELPLATFORM_API int WINAPI GetStretchBltMode(HDC dc);
/// @}

/// @name Palettes
/// The screen has true colours, so a palette that is selected changes nothing that is drawn.
/// @{

/// Selects a palette. @param background not looked at.
/// @return the previous one; null on failure.
KELPLATFORM_API HPALETTE WINAPI SelectPalette(HDC dc, HPALETTE palette, BOOL background);

/// Puts the selected palette into the device. @return the entries that changed: 0. GDI_ERROR for what is no context.
KELPLATFORM_API UINT WINAPI RealizePalette(HDC dc);
/// @}

/// @name Clipping
/// Rectangles are in logical units. All return the kind of the resulting region: NULLREGION, SIMPLEREGION,
/// COMPLEXREGION; ERROR on failure.
/// @{

/// Narrows the clip region to the rectangle.
KELPLATFORM_API int WINAPI IntersectClipRect(HDC dc, int left, int top, int right, int bottom);

/// Takes the rectangle out of the clip region.
KELPLATFORM_API int WINAPI ExcludeClipRect(HDC dc, int left, int top, int right, int bottom);

/// Stores the smallest rectangle around what drawing can reach: the surface within the clip region.
KELPLATFORM_API int WINAPI GetClipBox(HDC dc, LPRECT box);
/// @}

} // extern "C"
