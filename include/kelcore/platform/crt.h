#pragma once

/// @file
/// C library functions of the Microsoft family, over 16-bit units: comparison without case, comparison of code-page
/// bytes, 64-bit integers as text.
///
/// Classification and case mapping of one unit (iswalpha, iswspace, towlower, towupper) are the host's own functions:
/// they take a 16-bit unit as it is and answer under the process's current locale. A surrogate is never a letter.

#include <kelcore/platform/base.h>

#include <cwctype>
#include <wctype.h>

extern "C" {

/// Compares two texts without regard to case, after mapping each unit to lower case under the current locale, so that
/// letters sort after '_'.
/// @return negative, 0 or positive as @p left sorts before, equal to or after @p right.
KELPLATFORM_API int _wcsicmp(const WCHAR* left, const WCHAR* right);

/// As _wcsicmp, over at most @p count units of each text.
KELPLATFORM_API int _wcsnicmp(const WCHAR* left, const WCHAR* right, size_t count);

/// Compares two narrow texts in code-point order of their code page, which for every page here is the order of their
/// bytes taken as unsigned.
/// @return negative, 0 or positive as @p left sorts before, equal to or after @p right.
KELPLATFORM_API int _mbscmp(const unsigned char* left, const unsigned char* right);

/// Writes @p value in base @p radix (2 to 36, digits beyond 9 as lower-case letters) with a terminator. A minus sign is
/// written for base 10 only; other bases show the 64 bits as they are.
/// @param text room for the longest result: 65 characters with the terminator for base 2, 21 for base 10.
/// @return @p text.
KELPLATFORM_API char* _i64toa(__int64 value, char* text, int radix);

/// As _i64toa, in 16-bit units.
KELPLATFORM_API WCHAR* _i64tow(__int64 value, WCHAR* text, int radix);

/// The decimal number at the beginning of @p text, after white space and an optional sign; 0 if there is none. A number
/// out of range gives the nearest value that there is.
KELPLATFORM_API __int64 _atoi64(const char* text);

} // extern "C"
