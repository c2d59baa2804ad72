#pragma once

/// @file
/// Drawing objects: what they are named by, selecting, describing and deleting them.
///
/// A handle is a 32-bit value that carries its object's kind and is not given out again soon, so that a handle used
/// after its deletion is refused rather than mistaken. Objects may be used from any thread; a device context and the
/// bitmap in it belong to one thread at a time.

#include <kelcore/platform/base.h>
#include <kelcore/platform/rectangles.h>

typedef void* HGDIOBJ;
typedef struct HDC__* HDC;
typedef struct HBITMAP__* HBITMAP;
typedef struct HBRUSH__* HBRUSH;
typedef struct HPEN__* HPEN;
typedef struct HFONT__* HFONT;
typedef struct HRGN__* HRGN;
typedef struct HPALETTE__* HPALETTE;

/// A colour: red in bits 0 to 7, green in 8 to 15, blue in 16 to 23. The top byte is 0, or 2 (nearest palette colour,
/// the same as 0 here); 1 makes the low 16 bits an index into the palette.
typedef DWORD COLORREF;
#define CLR_INVALID 0xFFFFFFFFu
#define RGB(r, g, b)                                                                                                   \
    (static_cast<COLORREF>(static_cast<BYTE>(r) | static_cast<WORD>(static_cast<BYTE>(g)) << 8 |                       \
                           static_cast<DWORD>(static_cast<BYTE>(b)) << 16))
#define PALETTEINDEX(i) (static_cast<COLORREF>(0x01000000u | static_cast<DWORD>(static_cast<WORD>(i))))
#define PALETTERGB(r, g, b) (0x02000000u | RGB(r, g, b))
#define GetRValue(colour) (static_cast<BYTE>(colour))
#define GetGValue(colour) (static_cast<BYTE>((colour) >> 8))
#define GetBValue(colour) (static_cast<BYTE>((colour) >> 16))

/// The result of calls that failed.
#define GDI_ERROR 0xFFFFFFFFu

/// @name Kinds of objects, of GetObjectType and GetCurrentObject
/// @{
#define OBJ_PEN 1
#define OBJ_BRUSH 2
#define OBJ_DC 3
#define OBJ_PAL 5
#define OBJ_FONT 6
#define OBJ_BITMAP 7
#define OBJ_REGION 8
#define OBJ_MEMDC 10
#define OBJ_EXTPEN 11
/// @}

/// @name Stock objects
/// @{
#define WHITE_BRUSH 0
#define LTGRAY_BRUSH 1
#define GRAY_BRUSH 2
#define DKGRAY_BRUSH 3
#define BLACK_BRUSH 4
#define NULL_BRUSH 5
#define HOLLOW_BRUSH NULL_BRUSH
#define WHITE_PEN 6
#define BLACK_PEN 7
#define NULL_PEN 8
#define DEFAULT_PALETTE 15
#define DC_BRUSH 18
#define DC_PEN 19
/// @}

extern "C" {

/// Selects @p object into @p dc in place of the object of its kind.
///
/// A bitmap goes into a memory context only, into one at a time, and only with one plane and a depth of 1 or that of
/// the screen unless it is a DIB section. A region is copied into the clip region, as by SelectClipRgn.
/// @return the object selected before, never null; for a region NULLREGION, SIMPLEREGION or COMPLEXREGION. Null with
///         ERROR_INVALID_HANDLE on failure.
KELPLATFORM_API HGDIOBJ WINAPI SelectObject(HDC dc, HGDIOBJ object);

/// Deletes an object of any kind, a device context as DeleteDC. An object that is selected somewhere goes, and its
/// handle with it, when it is deselected; the call succeeds then, too. Stock objects are left alone, with TRUE.
/// @return FALSE with ERROR_INVALID_HANDLE for what is no object, or no more.
KELPLATFORM_API BOOL WINAPI DeleteObject(HGDIOBJ object);

/// One of the objects that are always there. @return null for another @p index.
KELPLATFORM_API HGDIOBJ WINAPI GetStockObject(int index);

/// The object of the kind @p type (an OBJ_ value) selected in @p dc. @return null on failure.
KELPLATFORM_API HGDIOBJ WINAPI GetCurrentObject(HDC dc, UINT type);

/// @return an OBJ_ value, 0 with ERROR_INVALID_HANDLE for what is no object.
KELPLATFORM_API DWORD WINAPI GetObjectType(HGDIOBJ object);

/// Describes an object: a bitmap by a BITMAP, a DIB section also by a DIBSECTION (whoever has room for one gets one), a
/// brush by a LOGBRUSH, a pen by a LOGPEN, one of ExtCreatePen by an EXTLOGPEN, a palette by the WORD number of its
/// entries.
/// @param buffer null asks for the size of the description.
/// @param size of the buffer. A brush's description is cut to it; the others need room for all of theirs.
/// @return the bytes stored, or needed; 0 on failure.
KELPLATFORM_API int WINAPI GetObjectA(HANDLE object, int size, LPVOID buffer);

} // extern "C"
