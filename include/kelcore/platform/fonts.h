#pragma once

/// @file
/// Fonts: describing, choosing and measuring them.
///
/// A description is matched against the fonts that Fontconfig knows and those that AddFontResourceExA brought. A face
/// that is there by name is taken; Arial, Helvetica, Times New Roman, Courier New and their like are stood for by faces
/// with the same widths (Liberation); MS Sans Serif, MS Shell Dlg, Tahoma, Segoe UI, Verdana, System and every other
/// face by the sans, serif or fixed face that the family and pitch ask for. A missing weight or slant is made by
/// emboldening or slanting.
///
/// Sizes are those of Windows: a positive height is that of a cell, from the font's highest to its lowest point as its
/// OS/2 table states them (usWinAscent, usWinDescent); a negative one that of the em square; 0 is 16 pixels of cell
/// height. The size is a whole number of pixels for the em square, and advance widths are whole pixels.
///
/// Where there is no font at all, fonts can be made and selected, and the calls that measure or draw text fail with
/// ERROR_FILE_NOT_FOUND.

#include <kelcore/platform/devicecontexts.h>

#define LF_FACESIZE 32

typedef struct tagLOGFONTA {
    LONG lfHeight;      ///< logical units; see above for its sign
    LONG lfWidth;       ///< average width of a character, logical units; 0: as the face was drawn
    LONG lfEscapement;  ///< angle of the baseline, tenths of a degree, counter-clockwise
    LONG lfOrientation; ///< of the characters; the escapement is taken for both
    LONG lfWeight;      ///< 0 (any) to 1000
    BYTE lfItalic;
    BYTE lfUnderline;
    BYTE lfStrikeOut;
    BYTE lfCharSet;
    BYTE lfOutPrecision;
    BYTE lfClipPrecision;
    BYTE lfQuality;
    BYTE lfPitchAndFamily;
    CHAR lfFaceName[LF_FACESIZE]; ///< in the ANSI code page, ends with NUL; "" is any face
} LOGFONTA, *PLOGFONTA, *LPLOGFONTA;

/// Sizes in logical units.
typedef struct tagTEXTMETRICA {
    LONG tmHeight;          ///< tmAscent + tmDescent
    LONG tmAscent;          ///< from the top of the cell to the baseline
    LONG tmDescent;         ///< from the baseline to the bottom of the cell
    LONG tmInternalLeading; ///< tmHeight less the em square
    LONG tmExternalLeading; ///< that the face recommends between lines
    LONG tmAveCharWidth;
    LONG tmMaxCharWidth;
    LONG tmWeight;
    LONG tmOverhang; ///< 0
    LONG tmDigitizedAspectX;
    LONG tmDigitizedAspectY;
    BYTE tmFirstChar;
    BYTE tmLastChar;
    BYTE tmDefaultChar;
    BYTE tmBreakChar;
    BYTE tmItalic;
    BYTE tmUnderlined;
    BYTE tmStruckOut;
    BYTE tmPitchAndFamily; ///< a family, and TMPF_ bits: TMPF_FIXED_PITCH is set for a face that is NOT fixed
    BYTE tmCharSet;
} TEXTMETRICA, *PTEXTMETRICA, *LPTEXTMETRICA;

/// A character's width in three parts, logical units: the advance is their sum.
typedef struct _ABC {
    int abcA;          ///< before the black box; negative if it hangs over
    unsigned int abcB; ///< the black box
    int abcC;          ///< behind it
} ABC, *PABC, *LPABC;

typedef INT* LPINT;

/// @name Weights
/// @{
#define FW_DONTCARE 0
#define FW_THIN 100
#define FW_EXTRALIGHT 200
#define FW_LIGHT 300
#define FW_NORMAL 400
#define FW_REGULAR FW_NORMAL
#define FW_MEDIUM 500
#define FW_SEMIBOLD 600
#define FW_BOLD 700
#define FW_EXTRABOLD 800
#define FW_HEAVY 900
/// @}

/// @name Character sets
/// They do not change the choice: every face is asked for the characters it has.
/// @{
#define ANSI_CHARSET 0
#define DEFAULT_CHARSET 1
#define SYMBOL_CHARSET 2
#define SHIFTJIS_CHARSET 128
#define HANGUL_CHARSET 129
#define GB2312_CHARSET 134
#define CHINESEBIG5_CHARSET 136
#define GREEK_CHARSET 161
#define TURKISH_CHARSET 162
#define HEBREW_CHARSET 177
#define ARABIC_CHARSET 178
#define BALTIC_CHARSET 186
#define RUSSIAN_CHARSET 204
#define THAI_CHARSET 222
#define EASTEUROPE_CHARSET 238
#define OEM_CHARSET 255
/// @}

/// @name Precision, quality, pitch and family
/// Precisions are kept and change nothing. NONANTIALIASED_QUALITY draws without grey levels.
/// @{
#define OUT_DEFAULT_PRECIS 0
#define OUT_TT_PRECIS 4
#define CLIP_DEFAULT_PRECIS 0
#define DEFAULT_QUALITY 0
#define DRAFT_QUALITY 1
#define PROOF_QUALITY 2
#define NONANTIALIASED_QUALITY 3
#define ANTIALIASED_QUALITY 4
#define CLEARTYPE_QUALITY 5
#define DEFAULT_PITCH 0
#define FIXED_PITCH 1
#define VARIABLE_PITCH 2
#define FF_DONTCARE 0x00
#define FF_ROMAN 0x10
#define FF_SWISS 0x20
#define FF_MODERN 0x30
#define FF_SCRIPT 0x40
#define FF_DECORATIVE 0x50
#define TMPF_FIXED_PITCH 0x01
#define TMPF_VECTOR 0x02
#define TMPF_TRUETYPE 0x04
#define TMPF_DEVICE 0x08
/// @}

/// @name Stock fonts
/// A new context has SYSTEM_FONT.
/// @{
#define OEM_FIXED_FONT 10
#define ANSI_FIXED_FONT 11
#define ANSI_VAR_FONT 12
#define SYSTEM_FONT 13
#define DEVICE_DEFAULT_FONT 14
#define SYSTEM_FIXED_FONT 16
#define DEFAULT_GUI_FONT 17
/// @}

/// @name Options of AddFontResourceExA
/// @{
#define FR_PRIVATE 0x10
#define FR_NOT_ENUM 0x20
/// @}

extern "C" {

/// A font of that description. The caller deletes it. It is matched when it is first used; GetObjectA gives the
/// description back as it was given.
/// @return null without @p font, or with ERROR_NOT_ENOUGH_MEMORY.
KELPLATFORM_API HFONT WINAPI CreateFontIndirectA(const LOGFONTA* font);

/// The same with the fields one by one; the numbers that are bytes in the description are cut to one, and flags become
/// their lowest byte. @param face may be null; a name of more than 31 bytes is cut.
KELPLATFORM_API HFONT WINAPI CreateFontA(int height, int width, int escapement, int orientation, int weight,
                                         DWORD italic, DWORD underline, DWORD strikeOut, DWORD charSet,
                                         DWORD outPrecision, DWORD clipPrecision, DWORD quality, DWORD pitchAndFamily,
                                         LPCSTR face);

/// Adds the faces of a font file for this process, to be found by name as the installed ones are. A file that is added
/// several times is there until it is removed as often.
/// @param options FR_PRIVATE, FR_NOT_ENUM: this process only, which is so in any case. @param reserved null.
/// @return how many faces it has; 0 if it cannot be read, with ERROR_FILE_NOT_FOUND, or ERROR_INVALID_PARAMETER.
KELPLATFORM_API int WINAPI AddFontResourceExA(LPCSTR file, DWORD options, LPVOID reserved);

/// @return FALSE if it was not added. Fonts that have been matched to it keep it.
KELPLATFORM_API BOOL WINAPI RemoveFontResourceExA(LPCSTR file, DWORD options, LPVOID reserved);

/// Describes the font selected in @p dc. @return FALSE on failure.
KELPLATFORM_API BOOL WINAPI GetTextMetricsA(HDC dc, LPTEXTMETRICA metrics);

/// The face name that the selected font's description asks for, or, where it asks for none, that of the chosen face.
/// @param count bytes that @p name has room for; a longer name is cut. @param name null asks for the size.
/// @return the bytes needed, with the NUL at the end, or stored, without it; 0 on failure.
KELPLATFORM_API int WINAPI GetTextFaceA(HDC dc, int count, LPSTR name);

/// The widths of the characters @p first to @p last of the selected font: 16-bit units, or characters of the ANSI code
/// page (a double-byte one as lead byte * 256 + trail byte; under UTF-8 bytes below 128, and every other byte as the
/// replacement character).
/// @return FALSE on failure; nothing is stored then.
/// @{
KELPLATFORM_API BOOL WINAPI GetCharABCWidthsA(HDC dc, UINT first, UINT last, LPABC widths);
KELPLATFORM_API BOOL WINAPI GetCharABCWidthsW(HDC dc, UINT first, UINT last, LPABC widths);
/// @}

/// The same for the advance widths alone.
/// @{
KELPLATFORM_API BOOL WINAPI GetCharWidthA(HDC dc, UINT first, UINT last, LPINT widths);
KELPLATFORM_API BOOL WINAPI GetCharWidthW(HDC dc, UINT first, UINT last, LPINT widths);
KELPLATFORM_API BOOL WINAPI GetCharWidth32A(HDC dc, UINT first, UINT last, LPINT widths);
KELPLATFORM_API BOOL WINAPI GetCharWidth32W(HDC dc, UINT first, UINT last, LPINT widths);
/// @}

} // extern "C"
