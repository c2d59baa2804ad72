#pragma once

/// @file
/// Drawing and measuring text.
///
/// Narrow text is in the ANSI code page and is drawn by whole characters, wide text is UTF-16; lengths and arrays of
/// advances count bytes, or 16-bit units. Text is drawn anti-aliased, in the text colour, one glyph a character: there
/// is no kerning, no ligature and no reordering. A character that the font lacks is taken from another font if there is
/// one that has it, and otherwise shown as the font's missing glyph.

#include <kelcore/platform/fonts.h>

/// @name Text alignment
/// Where the reference point lies in the text's rectangle.
/// @{
#define TA_NOUPDATECP 0
#define TA_UPDATECP 1 ///< the current position is the reference point, and moves to the end of the text
#define TA_LEFT 0
#define TA_RIGHT 2
#define TA_CENTER 6
#define TA_TOP 0
#define TA_BOTTOM 8
#define TA_BASELINE 24
/// @}

/// @name Options of ExtTextOutA
/// @{
#define ETO_OPAQUE 0x0002
#define ETO_CLIPPED 0x0004
/// @}

/// @name Formats of DrawTextA
/// @{
#define DT_TOP 0x00000000
#define DT_LEFT 0x00000000
#define DT_CENTER 0x00000001
#define DT_RIGHT 0x00000002
#define DT_VCENTER 0x00000004 ///< and DT_BOTTOM: with DT_SINGLELINE
#define DT_BOTTOM 0x00000008
#define DT_WORDBREAK 0x00000010
#define DT_SINGLELINE 0x00000020
#define DT_EXPANDTABS 0x00000040
#define DT_TABSTOP 0x00000080 ///< bits 8 to 15 of the format are the width of a tab, in average characters
#define DT_NOCLIP 0x00000100
#define DT_EXTERNALLEADING 0x00000200
#define DT_CALCRECT 0x00000400
#define DT_NOPREFIX 0x00000800
#define DT_INTERNAL 0x00001000
#define DT_EDITCONTROL 0x00002000
#define DT_PATH_ELLIPSIS 0x00004000
#define DT_END_ELLIPSIS 0x00008000
#define DT_MODIFYSTRING 0x00010000
#define DT_WORD_ELLIPSIS 0x00040000
#define DT_NOFULLWIDTHCHARBREAK 0x00080000
#define DT_HIDEPREFIX 0x00100000
#define DT_PREFIXONLY 0x00200000
/// @}

/// @name Kinds and states of DrawStateA
/// @{
#define DST_TEXT 0x0001
#define DST_PREFIXTEXT 0x0002
#define DSS_NORMAL 0x0000
#define DSS_DISABLED 0x0020 ///< embossed
#define DSS_MONO 0x0080     ///< in the colour of the brush
#define DSS_HIDEPREFIX 0x0200
#define DSS_PREFIXONLY 0x0400
#define DSS_RIGHT 0x8000
/// @}

typedef BOOL(CALLBACK* DRAWSTATEPROC)(HDC dc, LPARAM data, WPARAM length, int width, int height);

extern "C" {

/// Sets the TA_ flags. @return the previous ones, GDI_ERROR on failure.
KELPLATFORM_API UINT WINAPI SetTextAlign(HDC dc, UINT align);
KELPLATFORM_API UINT WINAPI GetTextAlign(HDC dc);

/// Sets the space, in logical units, that is added behind every character. @return the previous one; on failure
/// 0x80000000.
KELPLATFORM_API int WINAPI SetTextCharacterExtra(HDC dc, int extra);
KELPLATFORM_API int WINAPI GetTextCharacterExtra(HDC dc);

/// Draws text, in OPAQUE background mode on a rectangle of the background colour.
/// @param options ETO_OPAQUE: @p rect is filled with the background colour first; ETO_CLIPPED: the text is clipped to
///        it. Others are not looked at. @param rect may be null.
/// @param count the length; 0: there is no text to draw.
/// @param advances the advance widths, logical units; null: the font's. Of a character of several bytes or units the
///        widths of all of them count.
/// @return FALSE on failure.
/// @{
KELPLATFORM_API BOOL WINAPI ExtTextOutA(HDC dc, int x, int y, UINT options, const RECT* rect, LPCSTR text, UINT count,
                                        const INT* advances);
KELPLATFORM_API BOOL WINAPI ExtTextOutW(HDC dc, int x, int y, UINT options, const RECT* rect, LPCWSTR text, UINT count,
                                        const INT* advances);
/// @}

/// ExtTextOutA without a rectangle and with the font's advances.
/// @{
KELPLATFORM_API BOOL WINAPI TextOutA(HDC dc, int x, int y, LPCSTR text, int count);
KELPLATFORM_API BOOL WINAPI TextOutW(HDC dc, int x, int y, LPCWSTR text, int count);
/// @}

/// Stores the width of a text, the sum of its advances, and the height of the font, both in logical units.
/// @return FALSE on failure.
/// @{
KELPLATFORM_API BOOL WINAPI GetTextExtentPoint32A(HDC dc, LPCSTR text, int count, LPSIZE size);
KELPLATFORM_API BOOL WINAPI GetTextExtentPoint32W(HDC dc, LPCWSTR text, int count, LPSIZE size);
/// @}

/// Lays text out in a rectangle and draws it: lines broken at line ends (CR, LF or both) and, with DT_WORDBREAK,
/// between words; aligned; shortened with "..." where a DT_..._ELLIPSIS format asks for it and the text does not fit;
/// '&' underlines the character behind it, "&&" is one '&' (unless DT_NOPREFIX).
/// @param text with DT_MODIFYSTRING together with an ellipsis format, the text that is shown is written back if it was
///        shortened, of several lines the last one that was; it may take up to 4 bytes more than it had.
/// @param count the length, or -1: up to the NUL.
/// @param rect with DT_CALCRECT nothing is drawn: the right and bottom edges are set so that the text fits (lines are
///        broken at the right edge there was).
/// @return the height of the text, or with DT_VCENTER or DT_BOTTOM the distance from the rectangle's top to the text's
///         bottom; 0 on failure.
/// @{
KELPLATFORM_API int WINAPI DrawTextA(HDC dc, LPCSTR text, int count, LPRECT rect, UINT format);
KELPLATFORM_API int WINAPI DrawTextW(HDC dc, LPCWSTR text, int count, LPRECT rect, UINT format);
/// @}

/// Draws one line of text with tabs.
/// @param stopCount 0: a stop every 8 average characters; 1: every @p stops[0] units; more: where the array says, in
///        rising order, from @p origin on, and behind the last one every 8 average characters again. A negative stop is
///        where the text behind the tab ends.
/// @param origin where the stops are counted from.
/// @return the width in the low and the height in the high 16 bits; 0 on failure.
KELPLATFORM_API LONG WINAPI TabbedTextOutA(HDC dc, int x, int y, LPCSTR text, int count, int stopCount,
                                           const INT* stops, int origin);

/// What TabbedTextOutA would return with the origin at the text.
KELPLATFORM_API DWORD WINAPI GetTabbedTextExtentA(HDC dc, LPCSTR text, int count, int stopCount, const INT* stops);

/// Draws a text in a state.
/// @param brush for DSS_MONO. @param callback null: there is no drawing by callback.
/// @param text an LPCSTR. @param length 0: up to the NUL.
/// @param width of the rectangle the text is drawn in; with a @p height of 0 as well the text's own.
/// @param flags DST_TEXT or DST_PREFIXTEXT, and DSS_ states. Others are refused (ERROR_INVALID_PARAMETER).
/// @return FALSE on failure.
KELPLATFORM_API BOOL WINAPI DrawStateA(HDC dc, HBRUSH brush, DRAWSTATEPROC callback, LPARAM text, WPARAM length, int x,
                                       int y, int width, int height, UINT flags);

} // extern "C"
