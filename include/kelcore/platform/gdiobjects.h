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
/// @}

/// @name Styles of brushes and pens
/// @{
#define BS_SOLID 0
#define BS_NULL 1
#define BS_HOLLOW BS_NULL
#define BS_HATCHED 2
#define BS_PATTERN 3
#define BS_DIBPATTERNPT 6
#define HS_HORIZONTAL 0
#define HS_VERTICAL 1
#define HS_FDIAGONAL 2
#define HS_BDIAGONAL 3
#define HS_CROSS 4
#define HS_DIAGCROSS 5
#define PS_SOLID 0
#define PS_NULL 5
/// @}

typedef struct tagLOGBRUSH {
    UINT lbStyle;
    COLORREF lbColor;
    ULONG_PTR lbHatch; ///< BS_HATCHED: an HS_ value; BS_PATTERN: an HBITMAP; BS_DIBPATTERNPT: a packed DIB
} LOGBRUSH, *PLOGBRUSH, *LPLOGBRUSH;

typedef struct tagLOGPEN {
    UINT lopnStyle;
    POINT lopnWidth;
    COLORREF lopnColor;
} LOGPEN, *PLOGPEN, *LPLOGPEN;

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
/// brush by a LOGBRUSH, a pen by a LOGPEN, a palette by the WORD number of its entries.
/// @param buffer null asks for the size of the description.
/// @param size of the buffer. A brush's description is cut to it; the others need room for all of theirs.
/// @return the bytes stored, or needed; 0 on failure.
KELPLATFORM_API int WINAPI GetObjectA(HANDLE object, int size, LPVOID buffer);

/// A brush of one colour. The caller deletes it. @return null with ERROR_NOT_ENOUGH_MEMORY.
KELPLATFORM_API HBRUSH WINAPI CreateSolidBrush(COLORREF colour);

/// A brush of one of the six 8 x 8 hatches: lines in @p colour on the background of the context it is used in.
KELPLATFORM_API HBRUSH WINAPI CreateHatchBrush(int hatch, COLORREF colour);

/// A brush that repeats a copy of @p bitmap from the context's brush origin. A device-dependent bitmap of one bit a
/// pixel takes the context's colours: 0 the text colour, 1 the background colour.
KELPLATFORM_API HBRUSH WINAPI CreatePatternBrush(HBITMAP bitmap);

/// The brush that @p brush describes: BS_SOLID, BS_NULL, BS_HATCHED or BS_PATTERN. @return null for another style.
KELPLATFORM_API HBRUSH WINAPI CreateBrushIndirect(const LOGBRUSH* brush);

/// A pen. The caller deletes it. @return null with ERROR_NOT_ENOUGH_MEMORY; all null pens are the stock pen.
/// @{
KELPLATFORM_API HPEN WINAPI CreatePen(int style, int width, COLORREF colour);
KELPLATFORM_API HPEN WINAPI CreatePenIndirect(const LOGPEN* pen);
/// @}

} // extern "C"
