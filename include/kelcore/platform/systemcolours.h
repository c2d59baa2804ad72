#pragma once

/// @file
/// The colours that the parts of windows have, at first the classic ones: grey faces (212, 208, 200), blue captions.
/// They belong to the process. Every call may be made from any thread.

#include <kelcore/platform/gdiobjects.h>

/// @name Colours
/// @{
#define COLOR_SCROLLBAR 0
#define COLOR_BACKGROUND 1
#define COLOR_DESKTOP COLOR_BACKGROUND
#define COLOR_ACTIVECAPTION 2
#define COLOR_INACTIVECAPTION 3
#define COLOR_MENU 4
#define COLOR_WINDOW 5
#define COLOR_WINDOWFRAME 6
#define COLOR_MENUTEXT 7
#define COLOR_WINDOWTEXT 8
#define COLOR_CAPTIONTEXT 9
#define COLOR_ACTIVEBORDER 10
#define COLOR_INACTIVEBORDER 11
#define COLOR_APPWORKSPACE 12
#define COLOR_HIGHLIGHT 13
#define COLOR_HIGHLIGHTTEXT 14
#define COLOR_BTNFACE 15
#define COLOR_3DFACE COLOR_BTNFACE
#define COLOR_BTNSHADOW 16
#define COLOR_3DSHADOW COLOR_BTNSHADOW
#define COLOR_GRAYTEXT 17
#define COLOR_BTNTEXT 18
#define COLOR_INACTIVECAPTIONTEXT 19
#define COLOR_BTNHIGHLIGHT 20
#define COLOR_BTNHILIGHT COLOR_BTNHIGHLIGHT
#define COLOR_3DHIGHLIGHT COLOR_BTNHIGHLIGHT
#define COLOR_3DHILIGHT COLOR_BTNHIGHLIGHT
#define COLOR_3DDKSHADOW 21
#define COLOR_3DLIGHT 22
#define COLOR_INFOTEXT 23
#define COLOR_INFOBK 24
#define COLOR_HOTLIGHT 26 ///< 25 is a colour without a name
#define COLOR_GRADIENTACTIVECAPTION 27
#define COLOR_GRADIENTINACTIVECAPTION 28
#define COLOR_MENUHILIGHT 29
#define COLOR_MENUBAR 30
/// @}

extern "C" {

/// @return black for another @p index; the last error stays.
KELPLATFORM_API DWORD WINAPI GetSysColor(int index);

/// Sets @p count colours; another index is passed over. Then sends WM_SYSCOLORCHANGE to the top-level windows of the
/// calling thread and draws their frames anew.
/// @return FALSE with ERROR_INVALID_PARAMETER for a null array and fewer than 0 colours.
KELPLATFORM_API BOOL WINAPI SetSysColors(int count, const INT* indexes, const COLORREF* colours);

/// The brush of a colour, the same at every call, which follows the colour. It is not to be deleted: DeleteObject
/// leaves it alone, with TRUE.
/// @return null for another @p index.
KELPLATFORM_API HBRUSH WINAPI GetSysColorBrush(int index);

} // extern "C"
