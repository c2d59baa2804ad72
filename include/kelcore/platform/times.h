#pragma once

/// @file
/// Calendar times and file times, both in UTC, by the Gregorian calendar.

#include <kelcore/platform/base.h>

typedef struct _SYSTEMTIME {
    WORD wYear;
    WORD wMonth;     ///< 1 to 12
    WORD wDayOfWeek; ///< 0 = Sunday
    WORD wDay;       ///< 1 to 31
    WORD wHour;
    WORD wMinute;
    WORD wSecond;
    WORD wMilliseconds;
} SYSTEMTIME, *PSYSTEMTIME, *LPSYSTEMTIME;

extern "C" {

/// The calendar time of a file time, from 1 January 1601 to 14 September 30828; units below a millisecond are cut off.
/// @return FALSE with ERROR_INVALID_PARAMETER if the highest bit of @p fileTime is set; @p systemTime is untouched
/// then.
KELPLATFORM_API BOOL WINAPI FileTimeToSystemTime(const FILETIME* fileTime, LPSYSTEMTIME systemTime);

/// The file time of a calendar time in the years 1601 to 30827. The day of the week is not looked at.
/// @return FALSE with ERROR_INVALID_PARAMETER for another year, a day that the month does not have, and hours, minutes,
///         seconds or milliseconds past 23, 59, 59, 999; @p fileTime is untouched then.
KELPLATFORM_API BOOL WINAPI SystemTimeToFileTime(const SYSTEMTIME* systemTime, LPFILETIME fileTime);

} // extern "C"
