#pragma once

/// @file
/// Code pages: which one is the process's own, what a page looks like, and conversion between its bytes and 16-bit
/// units.
///
/// Known pages are UTF-8 (65001) and every single- or double-byte page without shift states that the C library's iconv
/// knows under "CP" and the number, besides 20127 (ASCII), 20866, 21866 (KOI8) and 28591 to 28606 (ISO 8859). The
/// tables of a page are built once, at its first use, and kept. All calls may be made from any thread.
///
/// The pages 874, 932, 1250 to 1258 and the common DOS ones are those of Windows in every byte, the private units of
/// bytes without a meaning included. 936 and 949 lack the user-defined characters, 950 is the host's Big5, and 1361 has
/// compatibility letters for single jamo. No page makes best-fit replacements: a unit is converted to bytes that mean
/// exactly this unit, or it becomes the default character, as on Windows with WC_NO_BEST_FIT_CHARS.

#include <kelcore/platform/base.h>

#define CP_ACP 0
#define CP_OEMCP 1
#define CP_MACCP 2
#define CP_THREAD_ACP 3
#define CP_UTF8 65001

#define MB_PRECOMPOSED 0x00000001
#define MB_ERR_INVALID_CHARS 0x00000008

#define WC_DEFAULTCHAR 0x00000040
#define WC_ERR_INVALID_CHARS 0x00000080
#define WC_NO_BEST_FIT_CHARS 0x00000400

#define MAX_LEADBYTES 12
#define MAX_DEFAULTCHAR 2

/// What a code page looks like.
typedef struct _cpinfo {
    UINT MaxCharSize;                  ///< bytes of the longest character
    BYTE DefaultChar[MAX_DEFAULTCHAR]; ///< stands for units without a counterpart; the second byte is 0 if it is one
                                       ///< byte
    BYTE LeadByte[MAX_LEADBYTES];      ///< ranges of lead bytes, first and last in turn, ended by two zero bytes
} CPINFO, *LPCPINFO;

extern "C" {

/// The process's ANSI code page: 65001 (UTF-8), or the page whose number the environment variable KELCORE_ACP gives.
/// The variable is read once, at the first call that needs it; a value that is no known page counts as unset.
KELPLATFORM_API UINT WINAPI GetACP(void);

/// @return whether @p codePage is known. The symbolic numbers (CP_ACP, CP_OEMCP ...) are not numbers of pages.
KELPLATFORM_API BOOL WINAPI IsValidCodePage(UINT codePage);

/// Describes @p codePage, symbolic numbers included.
/// @return nonzero, or 0 with ERROR_INVALID_PARAMETER for an unknown page or no @p info.
KELPLATFORM_API BOOL WINAPI GetCPInfo(UINT codePage, LPCPINFO info);

/// @return whether @p byte begins a double-byte character in the ANSI code page (never in UTF-8).
KELPLATFORM_API BOOL WINAPI IsDBCSLeadByte(BYTE byte);

/// @return whether @p byte begins a double-byte character in @p codePage; 0 with ERROR_INVALID_PARAMETER for an unknown
/// page.
KELPLATFORM_API BOOL WINAPI IsDBCSLeadByteEx(UINT codePage, BYTE byte);

/// @return nonzero: narrow file names are in the ANSI code page.
KELPLATFORM_API BOOL WINAPI AreFileApisANSI(void);

/// Converts 16-bit units to bytes of @p codePage.
///
/// Lone surrogates become U+FFFD in UTF-8 (EF BF BD); in other pages, units without a counterpart become the default
/// character, so that a surrogate pair becomes two of them.
/// @param flags WC_ERR_INVALID_CHARS (UTF-8 only): refuse lone surrogates. WC_NO_BEST_FIT_CHARS and WC_DEFAULTCHAR are
///        accepted for pages other than UTF-8 and change nothing. All other flags are refused.
/// @param units the source. @param unitCount its length in units, or negative: up to and including the first NUL unit.
/// @param bytes receives the result, which ends in NUL only if the source did.
/// @param byteCount size of @p bytes; 0 asks for the size needed and writes nothing.
/// @param defaultChar replaces the page's own default character; @param usedDefault receives whether it was used. Both
///        must be null for UTF-8.
/// @return the bytes written or needed, or 0 with ERROR_INVALID_PARAMETER (an unknown page, an empty source, a null or
///         negative buffer, source and result the same), ERROR_INVALID_FLAGS, ERROR_INSUFFICIENT_BUFFER (what @p bytes
///         then holds is unspecified), or ERROR_NO_UNICODE_TRANSLATION.
KELPLATFORM_API int WINAPI WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR units, int unitCount, LPSTR bytes,
                                               int byteCount, LPCSTR defaultChar, BOOL* usedDefault);

/// Converts bytes of @p codePage to 16-bit units.
///
/// Malformed UTF-8 becomes one U+FFFD for each maximal part of a well-formed sequence, or for each byte that is not
/// even that (Unicode's recommended practice, and what Windows does). In other pages, bytes without a meaning become
/// the page's default unit.
/// @param flags MB_ERR_INVALID_CHARS: refuse such bytes. MB_PRECOMPOSED is accepted for pages other than UTF-8 and
///        changes nothing. All other flags are refused.
/// @param bytes the source. @param byteCount its length, or negative: up to and including the first NUL byte.
/// @param units receives the result, which ends in NUL only if the source did.
/// @param unitCount size of @p units; 0 asks for the size needed and writes nothing.
/// @return the units written or needed, or 0 with the errors of WideCharToMultiByte.
KELPLATFORM_API int WINAPI MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR bytes, int byteCount, LPWSTR units,
                                               int unitCount);

} // extern "C"
