#pragma once

/// @file
/// Calendar dates and times.

#include <kelcore/export.h>
#include <kelcore/platform.h>

namespace kel {
struct TimeLayout; // the library checks its layouts at compile time
}

/// A date and time of the Gregorian calendar, to the millisecond, that converts to and from the system's file times
/// (100 ns units since 1 January 1601).
///
/// The fields are kept as they were given: nothing is normalised or checked before a conversion. A conversion that the
/// system refuses (FileTimeToSystemTime, SystemTimeToFileTime) leaves its target as it was.
class KELCORE_API KelTime {
public:
    /// All fields 0, which is no valid date.
    KelTime();
    KelTime(const KelTime& other) = default;
    KelTime(const SYSTEMTIME& time);
    /// Converts @p time (`FileTimeToSystemTime`); the fields are 0 when that fails.
    KelTime(const FILETIME& time);

    KelTime& operator=(const KelTime& other);
    KelTime& operator=(const SYSTEMTIME& time);
    /// Converts @p time (`FileTimeToSystemTime`).
    KelTime& operator=(const FILETIME& time);

    /// The fields themselves, to be read or written; valid as long as this object.
    operator SYSTEMTIME*();
    operator const SYSTEMTIME*() const;
    /// Converts the fields (`SystemTimeToFileTime`) into a place inside this object, which the next such conversion
    /// overwrites: an object that several threads share is converted by one of them at a time. If the fields are no
    /// valid date, the result of the last conversion that succeeded is still there, 0 if there was none.
    operator const FILETIME*() const;
    /// Converts the fields into @p time (`SystemTimeToFileTime`).
    void GetAsFileTime(FILETIME& time);

    KELCORE_INLINE int GetYear() const { return m_time.wYear; }
    KELCORE_INLINE int GetMonth() const { return m_time.wMonth; }         ///< 1 to 12
    KELCORE_INLINE int GetDay() const { return m_time.wDay; }             ///< 1 to 31
    KELCORE_INLINE int GetDayOfWeek() const { return m_time.wDayOfWeek; } ///< 0 = Sunday
    KELCORE_INLINE int GetHour() const { return m_time.wHour; }
    KELCORE_INLINE int GetMinute() const { return m_time.wMinute; }
    KELCORE_INLINE int GetSecond() const { return m_time.wSecond; }
    KELCORE_INLINE int GetMilliseconds() const { return m_time.wMilliseconds; }

    /// The last day of this object's month, -1 if its month is none.
    KELCORE_INLINE int GetLastDayOfMonth() const { return GetLastDayOfMonth(GetMonth(), GetYear()); }

    /// Whether @p year has a 29 February by the Gregorian rule; years before 1 are counted …, -1, 0.
    KELCORE_INLINE static bool IsLeapYear(int year) {
        // Of the years that 25 divides, those that 16 divides are those that 400 divides.
        return (year & (year % 25 == 0 ? 15 : 3)) == 0;
    }

    /// 28 to 31; -1 for a @p month outside 1 to 12.
    KELCORE_INLINE static int GetLastDayOfMonth(int month, int year) {
        if (month == 2)
            return IsLeapYear(year) ? 29 : 28;
        // Odd months have 31 days up to July, even ones from August on.
        return 1 <= month && month <= 12 ? 30 + ((month ^ month >> 3) & 1) : -1;
    }

private:
    friend struct kel::TimeLayout;

    SYSTEMTIME m_time;
    mutable FILETIME m_fileTime; // written by the conversion to a pointer alone
};
