#pragma once

/// @file
/// Drawing of pictures and rectangles. Rectangles are in logical units of their context; a negative width or height
/// mirrors. What lies outside the clip region of the target is left alone.

#include <kelcore/platform/bitmaps.h>

/// @name Raster operations
/// The ternary code of pattern, source and target is in bits 16 to 23.
/// @{
#define SRCCOPY 0x00CC0020
#define SRCPAINT 0x00EE0086
#define SRCAND 0x008800C6
#define SRCINVERT 0x00660046
#define SRCERASE 0x00440328
#define NOTSRCCOPY 0x00330008
#define NOTSRCERASE 0x001100A6
#define MERGECOPY 0x00C000CA
#define MERGEPAINT 0x00BB0226
#define PATCOPY 0x00F00021
#define PATPAINT 0x00FB0A09
#define PATINVERT 0x005A0049
#define DSTINVERT 0x00550009
#define BLACKNESS 0x00000042
#define WHITENESS 0x00FF0062
/// @}

/// @name Blending
/// @{
#define AC_SRC_OVER 0x00
#define AC_SRC_ALPHA 0x01
/// @}

typedef struct _BLENDFUNCTION {
    BYTE BlendOp;             ///< AC_SRC_OVER
    BYTE BlendFlags;          ///< 0
    BYTE SourceConstantAlpha; ///< 0 (transparent) to 255 (opaque)
    BYTE AlphaFormat;         ///< AC_SRC_ALPHA: the source has premultiplied alpha
} BLENDFUNCTION, *PBLENDFUNCTION;

extern "C" {

/// Combines a rectangle of @p source with one of @p target of the same size.
/// @param source null for operations without a source.
/// @return FALSE on failure; TRUE also when nothing is visible.
KELPLATFORM_API BOOL WINAPI BitBlt(HDC target, int x, int y, int width, int height, HDC source, int sourceX,
                                   int sourceY, DWORD operation);

/// The same with rectangles of two sizes, by the stretch mode of @p target.
KELPLATFORM_API BOOL WINAPI StretchBlt(HDC target, int x, int y, int width, int height, HDC source, int sourceX,
                                       int sourceY, int sourceWidth, int sourceHeight, DWORD operation);

/// Combines the brush of @p target with a rectangle of it.
KELPLATFORM_API BOOL WINAPI PatBlt(HDC target, int x, int y, int width, int height, DWORD operation);

/// Draws a rectangle of a DIB; @p sourceY counts its rows from the bottom for a bottom-up DIB, from the top for a
/// top-down one.
/// @return the number of the DIB's rows, negative for a top-down DIB with another operation than SRCCOPY; 0 when the
///         rectangle lies outside the DIB; 0 or GDI_ERROR on failure.
KELPLATFORM_API int WINAPI StretchDIBits(HDC target, int x, int y, int width, int height, int sourceX, int sourceY,
                                         int sourceWidth, int sourceHeight, const void* bits, const BITMAPINFO* info,
                                         UINT usage, DWORD operation);

/// Draws rows of a DIB pixel for pixel, whatever the mapping, from a logical point on. @return the number of rows, 0 on
/// failure.
KELPLATFORM_API int WINAPI SetDIBitsToDevice(HDC target, int x, int y, DWORD width, DWORD height, int sourceX,
                                             int sourceY, UINT start, UINT lines, const void* bits,
                                             const BITMAPINFO* info, UINT usage);

/// Draws a rectangle of @p source but for the pixels of the colour @p transparent. Mirroring is refused with
/// ERROR_INVALID_PARAMETER.
KELPLATFORM_API BOOL WINAPI TransparentBlt(HDC target, int x, int y, int width, int height, HDC source, int sourceX,
                                           int sourceY, int sourceWidth, int sourceHeight, UINT transparent);

/// Blends a rectangle of @p source over one of @p target. Mirroring, rectangles that leave the source and rectangles of
/// one surface that overlap are refused with ERROR_INVALID_PARAMETER.
KELPLATFORM_API BOOL WINAPI AlphaBlend(HDC target, int x, int y, int width, int height, HDC source, int sourceX,
                                       int sourceY, int sourceWidth, int sourceHeight, BLENDFUNCTION function);

/// Sets one pixel. @return the colour it has then, CLR_INVALID if it is not visible.
KELPLATFORM_API COLORREF WINAPI SetPixel(HDC dc, int x, int y, COLORREF colour);

/// @return the colour of one pixel, CLR_INVALID if it is not visible.
KELPLATFORM_API COLORREF WINAPI GetPixel(HDC dc, int x, int y);

/// Ends all drawing that is under way, so that the pixels of a DIB section can be looked at. Here every call has drawn
/// when it returns. @return TRUE.
KELPLATFORM_API BOOL WINAPI GdiFlush();

} // extern "C"
