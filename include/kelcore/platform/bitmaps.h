#pragma once

/// @file
/// Bitmaps: device-dependent ones and DIB sections, and the transfer of their pixels.
///
/// Depths are 1, 4, 8, 16, 24 and 32 bits a pixel in one plane; other depths are raised to the next of these. Rows of
/// device-dependent bitmaps are padded to 2 bytes where a caller sees them, rows of DIBs to 4. A DIB has its bottom row
/// first, or its top row where its height is negative. Compression is BI_RGB or BI_BITFIELDS with the masks of 5-5-5 or
/// 5-6-5 (16 bits) or 8-8-8 blue first (32 bits). A picture whose rows or pixels do not fit into 2^31 - 1 bytes is
/// refused.

#include <kelcore/platform/devicecontexts.h>

/// @name Compressions
/// @{
#define BI_RGB 0
#define BI_RLE8 1 ///< refused
#define BI_RLE4 2 ///< refused
#define BI_BITFIELDS 3
/// @}

/// @name What a DIB's colour table holds, and whether CreateDIBitmap fills the new bitmap
/// @{
#define DIB_RGB_COLORS 0
#define DIB_PAL_COLORS 1 ///< WORD indices into the palette of the context
#define CBM_INIT 0x04
/// @}

/// What GetObjectA tells about a bitmap: 24 bytes on 32-bit systems.
typedef struct tagBITMAP {
    LONG bmType; ///< 0
    LONG bmWidth;
    LONG bmHeight;
    LONG bmWidthBytes; ///< of a row, a multiple of 2 (of 4 for a DIB section)
    WORD bmPlanes;     ///< 1
    WORD bmBitsPixel;
    LPVOID bmBits; ///< the pixels of a DIB section, else null
} BITMAP, *PBITMAP, *LPBITMAP;

typedef struct tagRGBQUAD {
    BYTE rgbBlue;
    BYTE rgbGreen;
    BYTE rgbRed;
    BYTE rgbReserved;
} RGBQUAD, *LPRGBQUAD;

typedef struct tagBITMAPINFOHEADER {
    DWORD biSize;
    LONG biWidth;
    LONG biHeight;
    WORD biPlanes;
    WORD biBitCount;
    DWORD biCompression;
    DWORD biSizeImage;
    LONG biXPelsPerMeter;
    LONG biYPelsPerMeter;
    DWORD biClrUsed;
    DWORD biClrImportant;
} BITMAPINFOHEADER, *PBITMAPINFOHEADER, *LPBITMAPINFOHEADER;

typedef struct tagBITMAPINFO {
    BITMAPINFOHEADER bmiHeader;
    RGBQUAD bmiColors[1]; ///< the colour table, or three masks
} BITMAPINFO, *PBITMAPINFO, *LPBITMAPINFO;

#pragma pack(push, 2)
typedef struct tagBITMAPFILEHEADER {
    WORD bfType;
    DWORD bfSize;
    WORD bfReserved1;
    WORD bfReserved2;
    DWORD bfOffBits;
} BITMAPFILEHEADER, *PBITMAPFILEHEADER, *LPBITMAPFILEHEADER;
#pragma pack(pop)

/// What GetObjectA tells about a DIB section.
typedef struct tagDIBSECTION {
    BITMAP dsBm;
    BITMAPINFOHEADER dsBmih;
    DWORD dsBitfields[3];
    HANDLE dshSection; ///< null
    DWORD dsOffset;    ///< 0
} DIBSECTION, *PDIBSECTION, *LPDIBSECTION;

extern "C" {

/// @name Making bitmaps
/// The caller deletes them with DeleteObject. All return null with ERROR_NOT_ENOUGH_MEMORY when memory is short or the
/// size is beyond what a bitmap can have, with ERROR_INVALID_PARAMETER for arguments that make no bitmap.
/// @{

/// A device-dependent bitmap. A width or height of 0 gives a monochrome bitmap of one pixel, a negative one counts as
/// positive.
/// @param planes 1.
/// @param bits the first pixels, rows from the top padded to 2 bytes; null leaves them zero.
KELPLATFORM_API HBITMAP WINAPI CreateBitmap(int width, int height, UINT planes, UINT depth, const void* bits);

/// The same from a description; the length of rows that it tells is not looked at.
KELPLATFORM_API HBITMAP WINAPI CreateBitmapIndirect(const BITMAP* bitmap);

/// A bitmap, all zero, that can be selected into memory contexts compatible with @p dc: of the screen's depth for the
/// screen's context, of the selected bitmap's depth (for a DIB section of one bit to eight: with its colour table) for
/// a memory context.
KELPLATFORM_API HBITMAP WINAPI CreateCompatibleBitmap(HDC dc, int width, int height);

/// A bitmap whose pixels and colour table the caller shares with the layer. Pixels start as zero; reading and writing
/// them needs no further call.
/// @param dc gives the palette for DIB_PAL_COLORS; may be null otherwise.
/// @param bits receives the address of the pixels; may be null.
/// @param section null: sections of files are refused (ERROR_NOT_SUPPORTED).
KELPLATFORM_API HBITMAP WINAPI CreateDIBSection(HDC dc, const BITMAPINFO* info, UINT usage, void** bits, HANDLE section,
                                                DWORD offset);

/// A device-dependent bitmap compatible with @p dc, of the size in @p header; with CBM_INIT filled from @p bits in the
/// format of @p info.
KELPLATFORM_API HBITMAP WINAPI CreateDIBitmap(HDC dc, const BITMAPINFOHEADER* header, DWORD flags, const void* bits,
                                              const BITMAPINFO* info, UINT usage);
/// @}

/// Fetches rows of @p bitmap as a DIB in the format that @p info asks for. Rows count from the bottom of the DIB,
/// whichever order it has; the DIB's top row is the bitmap's, and what the bitmap lacks is zero. Colours become the
/// nearest of the DIB's table, which is written to @p info in full for depths of 8 and less: that of a section of this
/// depth, else the default one. Masks of BI_BITFIELDS are written as well.
/// @param bits null asks for the header alone: with biBitCount 0 it is filled from the bitmap (with room for 40 bytes
///        only), otherwise biSizeImage, the colour table and the masks are.
/// @return the number of rows that came from the bitmap; of a query without pixels its height, otherwise 1. 0 on
/// failure.
KELPLATFORM_API int WINAPI GetDIBits(HDC dc, HBITMAP bitmap, UINT start, UINT lines, LPVOID bits, LPBITMAPINFO info,
                                     UINT usage);

/// Stores rows of a DIB in @p bitmap, the colours matched to the bitmap's. Rows count as in GetDIBits.
/// @param dc gives the palette for DIB_PAL_COLORS; may be null otherwise.
/// @return the number of rows taken from @p bits, 0 on failure.
KELPLATFORM_API int WINAPI SetDIBits(HDC dc, HBITMAP bitmap, UINT start, UINT lines, const void* bits,
                                     const BITMAPINFO* info, UINT usage);

/// Entries of the colour table of the DIB section selected in @p dc. @return the number of entries read or written, 0
/// on failure and for bitmaps without a table.
/// @{
KELPLATFORM_API UINT WINAPI GetDIBColorTable(HDC dc, UINT start, UINT count, RGBQUAD* colours);
KELPLATFORM_API UINT WINAPI SetDIBColorTable(HDC dc, UINT start, UINT count, const RGBQUAD* colours);
/// @}

/// The raw pixels of a bitmap, rows from the top padded to 2 bytes.
/// @return the bytes moved, or, for a null @p bits of GetBitmapBits, those there are; 0 on failure.
/// @{
KELPLATFORM_API LONG WINAPI GetBitmapBits(HBITMAP bitmap, LONG count, LPVOID bits);
KELPLATFORM_API LONG WINAPI SetBitmapBits(HBITMAP bitmap, DWORD count, const void* bits);
/// @}

} // extern "C"
