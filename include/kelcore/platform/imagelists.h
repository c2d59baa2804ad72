#pragma once

/// @file
/// Image lists: pictures of one size that are drawn by number, each with a mask if the list has masks.
///
/// A list and the bitmaps in it belong to one thread at a time. Calls that are handed what is no list fail, with
/// ERROR_INVALID_HANDLE; an index without an image fails with ERROR_INVALID_PARAMETER.

#include <kelcore/platform/bitmaps.h>

#include <kelcore/platform/devicecontexts.h>

struct _IMAGELIST;
typedef struct _IMAGELIST* HIMAGELIST;

#define CLR_NONE 0xFFFFFFFFu    ///< no background: images are drawn through their masks
#define CLR_DEFAULT 0xFF000000u ///< the list's own background; of blending: the highlight colour

/// @name How a list keeps its images
/// @{
#define ILC_MASK 0x00000001
#define ILC_COLOR 0x00000000 ///< 4 bits a pixel, as ILC_COLOR4
#define ILC_COLOR4 0x00000004
#define ILC_COLOR8 0x00000008
#define ILC_COLOR16 0x00000010
#define ILC_COLOR24 0x00000018
#define ILC_COLOR32 0x00000020
#define ILC_COLORDDB 0x000000FE ///< as the screen, 32 bits
/// @}

/// @name How an image is drawn
/// @{
#define ILD_NORMAL 0x0000      ///< over the background colour, or through the mask if that is CLR_NONE
#define ILD_TRANSPARENT 0x0001 ///< through the mask
#define ILD_BLEND25 0x0002     ///< with a quarter of the blend colour
#define ILD_FOCUS ILD_BLEND25
#define ILD_BLEND50 0x0004 ///< with a half of it
#define ILD_SELECTED ILD_BLEND50
#define ILD_BLEND ILD_BLEND50
#define ILD_MASK 0x0010  ///< the mask itself: black where the image is, white elsewhere
#define ILD_IMAGE 0x0020 ///< the image without its mask
#define ILD_ROP 0x0040   ///< the image without its mask, by dwRop
#define ILD_OVERLAYMASK 0x0F00
#define INDEXTOOVERLAYMASK(i) ((i) << 8) ///< and an overlay over it
/// @}

typedef struct _IMAGELISTDRAWPARAMS {
    DWORD cbSize; ///< the size of this record, or of what stands before fState
    HIMAGELIST himl;
    int i; ///< the image
    HDC hdcDst;
    int x; ///< where to, in logical units
    int y;
    int cx; ///< how much of the image; 0: to its edge
    int cy;
    int xBitmap; ///< from where in the image
    int yBitmap;
    COLORREF rgbBk; ///< CLR_NONE, CLR_DEFAULT or a colour
    COLORREF rgbFg; ///< to blend with; CLR_NONE: with what is there
    UINT fStyle;    ///< ILD_ values
    DWORD dwRop;
    DWORD fState; ///< not looked at, like the two that follow
    DWORD Frame;
    COLORREF crEffect;
} IMAGELISTDRAWPARAMS, *LPIMAGELISTDRAWPARAMS;
#define IMAGELISTDRAWPARAMS_V3_SIZE (static_cast<DWORD>(offsetof(IMAGELISTDRAWPARAMS, fState)))

/// Where an image is in the bitmaps of its list, which belong to the list and may change with every call.
typedef struct _IMAGEINFO {
    HBITMAP hbmImage;
    HBITMAP hbmMask; ///< null without masks
    int Unused1;
    int Unused2;
    RECT rcImage;
} IMAGEINFO, *LPIMAGEINFO;

extern "C" {

/// @name Lists
/// @{

/// A list without images. The caller destroys it.
/// @param cx, cy the size of its images, at least 1.
/// @param flags ILC_ values; a depth that is none of them counts as 4.
/// @param initial, grow for how many images there is room, and by how many the room grows at least.
/// @return null with ERROR_INVALID_PARAMETER for a size or count below what is allowed, or ERROR_NOT_ENOUGH_MEMORY.
KELPLATFORM_API HIMAGELIST WINAPI ImageList_Create(int cx, int cy, UINT flags, int initial, int grow);

KELPLATFORM_API BOOL WINAPI ImageList_Destroy(HIMAGELIST list);

/// A list with the same images; it has no overlays and no background. @return null on failure.
KELPLATFORM_API HIMAGELIST WINAPI ImageList_Duplicate(HIMAGELIST list);

/// A list of one image with a mask: an image of @p first with one of @p second over it, moved by (@p dx, @p dy). It is
/// as large as the two, so moved, together. @return null on failure.
KELPLATFORM_API HIMAGELIST WINAPI ImageList_Merge(HIMAGELIST first, int firstIndex, HIMAGELIST second, int secondIndex,
                                                  int dx, int dy);
/// @}

/// @name Images
/// @{
KELPLATFORM_API int WINAPI ImageList_GetImageCount(HIMAGELIST list);

/// Drops images from the end, or adds black ones, which are opaque. @return FALSE for a count below 0.
KELPLATFORM_API BOOL WINAPI ImageList_SetImageCount(HIMAGELIST list, UINT count);

/// Adds the images that stand side by side in @p image, as many as its width holds, with copies of its pixels.
/// @param mask as large, set (white) where an image is transparent; null for opaque images. Where the mask is set the
///        image becomes black.
/// @return the index of the first one, -1 on failure.
KELPLATFORM_API int WINAPI ImageList_Add(HIMAGELIST list, HBITMAP image, HBITMAP mask);

/// The same with the mask set where @p image has the colour @p transparent; CLR_DEFAULT: that of its top left pixel.
KELPLATFORM_API int WINAPI ImageList_AddMasked(HIMAGELIST list, HBITMAP image, COLORREF transparent);

/// Puts an image in the place of one. @return FALSE on failure.
KELPLATFORM_API BOOL WINAPI ImageList_Replace(HIMAGELIST list, int index, HBITMAP image, HBITMAP mask);

/// Removes an image, and those behind it move up; -1 removes all. @return FALSE on failure.
KELPLATFORM_API BOOL WINAPI ImageList_Remove(HIMAGELIST list, int index);

/// @return FALSE for a null @p info and an index without an image.
KELPLATFORM_API BOOL WINAPI ImageList_GetImageInfo(HIMAGELIST list, int index, IMAGEINFO* info);

/// @return FALSE, with nothing stored, for a null pointer.
KELPLATFORM_API BOOL WINAPI ImageList_GetIconSize(HIMAGELIST list, int* cx, int* cy);

/// Gives all images to come another size and removes those that are there, unless it is the size they have (FALSE).
KELPLATFORM_API BOOL WINAPI ImageList_SetIconSize(HIMAGELIST list, int cx, int cy);

/// The background colour that ILD_NORMAL draws on, CLR_NONE at first. @return the previous one; CLR_NONE on failure.
KELPLATFORM_API COLORREF WINAPI ImageList_SetBkColor(HIMAGELIST list, COLORREF colour);
KELPLATFORM_API COLORREF WINAPI ImageList_GetBkColor(HIMAGELIST list);

/// Makes an image overlay number @p overlay, 1 to 15. @return FALSE for another number or image.
KELPLATFORM_API BOOL WINAPI ImageList_SetOverlayImage(HIMAGELIST list, int image, int overlay);
/// @}

/// @name Drawing
/// @return FALSE on failure.
/// @{

/// Draws an image on the list's own background.
KELPLATFORM_API BOOL WINAPI ImageList_Draw(HIMAGELIST list, int index, HDC dc, int x, int y, UINT style);

/// Draws an image, or its part of @p cx by @p cy pixels at the top left.
KELPLATFORM_API BOOL WINAPI ImageList_DrawEx(HIMAGELIST list, int index, HDC dc, int x, int y, int cx, int cy,
                                             COLORREF background, COLORREF foreground, UINT style);

KELPLATFORM_API BOOL WINAPI ImageList_DrawIndirect(IMAGELISTDRAWPARAMS* parameters);
/// @}

/// @name Dragging
/// One image is dragged at a time in a process. It is drawn, half of it, over what its window shows, and what was there
/// comes back when it moves on.
/// @{

/// Takes an image to be dragged by the point (@p dx, @p dy) of it. @return FALSE while one is dragged, and on failure.
KELPLATFORM_API BOOL WINAPI ImageList_BeginDrag(HIMAGELIST list, int index, int dx, int dy);

/// Ends dragging: the image goes from the window it is in.
KELPLATFORM_API void WINAPI ImageList_EndDrag();

/// Lets the image into @p window (null: the screen), at a place counted from the corner of the whole window, and shows
/// it. @return FALSE on failure.
KELPLATFORM_API BOOL WINAPI ImageList_DragEnter(HWND window, int x, int y);

/// Hides the image and lets it out of @p window. @return FALSE if it is in another one.
KELPLATFORM_API BOOL WINAPI ImageList_DragLeave(HWND window);

/// Moves the image, in the coordinates of DragEnter. @return FALSE if nothing is dragged.
KELPLATFORM_API BOOL WINAPI ImageList_DragMove(int x, int y);

/// Shows or hides the image. @return whether that was a change.
KELPLATFORM_API BOOL WINAPI ImageList_DragShowNolock(BOOL show);
/// @}

} // extern "C"
