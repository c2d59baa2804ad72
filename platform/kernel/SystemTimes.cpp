// Days are counted from 1 March of the year 0, so that leap days end the years they belong to. Dates and days are
// turned into each other by multiplying and shifting instead of dividing, as found by Neri and Schneider, "Euclidean
// affine functions and their application to calendar algorithms" (Software: Practice and Experience, 2023); the figures
// are good for some 2^30 days.

#include "platform/kernel/Faults.h"
#include "platform/kernel/LastError.h"

#include <kelcore/platform/times.h>

namespace kel::platform {
namespace {

constexpr std::uint32_t kMillisecond = 10'000; // in units of 100 ns
constexpr std::uint32_t kDay = 24 * 60 * 60 * 1000;
constexpr std::uint32_t kDaysOf400Years = 146'097;
constexpr std::uint32_t kFirstYear = 1601;
constexpr std::uint32_t kLastYear = 30827;
constexpr std::uint32_t kMarch = 3;

struct Date {
    std::uint32_t year, month, day;
};

// January and February are months 13 and 14 of the year before.
constexpr std::uint32_t DaysOf(const Date& date) {
    const bool endsYear = date.month < kMarch;
    const std::uint32_t year = date.year - endsYear;
    const std::uint32_t month = endsYear ? date.month + 12 : date.month;
    const std::uint32_t century = year / 100;
    return 1461 * year / 4 - century + century / 4 + (979 * month - 2919) / 32 + date.day - 1;
}

constexpr Date DateOf(std::uint32_t days) {
    const std::uint32_t quarters = 4 * days + 3;
    const std::uint32_t century = quarters / kDaysOf400Years;
    const std::uint64_t scaled = std::uint64_t{2939745} * (quarters % kDaysOf400Years | 3);
    const auto yearOfCentury = static_cast<std::uint32_t>(scaled >> 32);
    const std::uint32_t dayOfYear = static_cast<std::uint32_t>(scaled) / 2939745 / 4;
    const std::uint32_t monthAndDay = 2141 * dayOfYear + 197913;
    const std::uint32_t month = monthAndDay >> 16;
    const bool endsYear = dayOfYear >= 306;
    return {100 * century + yearOfCentury + endsYear, endsYear ? month - 12 : month, (monthAndDay & 0xFFFF) / 2141 + 1};
}

constexpr std::uint32_t kFirstDay = DaysOf({kFirstYear, 1, 1});

void SetDate(SYSTEMTIME& time, std::uint32_t days) {
    const Date date = DateOf(kFirstDay + days);
    time.wYear = static_cast<WORD>(date.year);
    time.wMonth = static_cast<WORD>(date.month);
    time.wDayOfWeek = static_cast<WORD>((days + 1) % 7); // the first day was a Monday
    time.wDay = static_cast<WORD>(date.day);
}

void SetTimeOfDay(SYSTEMTIME& time, std::uint32_t milliseconds) {
    const std::uint32_t seconds = milliseconds / 1000;
    time.wHour = static_cast<WORD>(seconds / 3600);
    time.wMinute = static_cast<WORD>(seconds / 60 % 60);
    time.wSecond = static_cast<WORD>(seconds % 60);
    time.wMilliseconds = static_cast<WORD>(milliseconds % 1000);
}

constexpr bool IsLeapYear(std::uint32_t year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

// Odd months have 31 days up to July, even ones from August on.
constexpr std::uint32_t DaysOfMonth(std::uint32_t month, std::uint32_t year) {
    return month == 2 ? 28 + IsLeapYear(year) : 30 + ((month ^ month >> 3) & 1);
}

// Each of year, month and day may be anything.
constexpr bool IsDate(const Date& date) {
    return date.year >= kFirstYear && date.year <= kLastYear && date.month - 1 < 12 &&
           date.day - 1 < DaysOfMonth(date.month, date.year);
}

bool IsTimeOfDay(const SYSTEMTIME& time) {
    return time.wHour < 24 && time.wMinute < 60 && time.wSecond < 60 && time.wMilliseconds < 1000;
}

std::uint32_t MillisecondsOf(const SYSTEMTIME& time) {
    return ((time.wHour * 60u + time.wMinute) * 60u + time.wSecond) * 1000u + time.wMilliseconds;
}

} // namespace
} // namespace kel::platform

using namespace kel::platform;

BOOL WINAPI FileTimeToSystemTime(const FILETIME* fileTime, LPSYSTEMTIME systemTime) {
    if (CallFails("FileTimeToSystemTime"))
        return FALSE;
    const std::uint64_t ticks = std::uint64_t{fileTime->dwHighDateTime} << 32 | fileTime->dwLowDateTime;
    if (ticks >> 63)
        return Fail(ERROR_INVALID_PARAMETER);
    const std::uint64_t milliseconds = ticks / kMillisecond;
    SetDate(*systemTime, static_cast<std::uint32_t>(milliseconds / kDay));
    SetTimeOfDay(*systemTime, static_cast<std::uint32_t>(milliseconds % kDay));
    return TRUE;
}

BOOL WINAPI SystemTimeToFileTime(const SYSTEMTIME* systemTime, LPFILETIME fileTime) {
    if (CallFails("SystemTimeToFileTime"))
        return FALSE;
    const Date date = {systemTime->wYear, systemTime->wMonth, systemTime->wDay};
    if (!IsDate(date) || !IsTimeOfDay(*systemTime))
        return Fail(ERROR_INVALID_PARAMETER);
    const std::uint64_t days = DaysOf(date) - kFirstDay;
    const std::uint64_t ticks = (days * kDay + MillisecondsOf(*systemTime)) * kMillisecond;
    *fileTime = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
    return TRUE;
}
