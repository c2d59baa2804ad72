#include "tests/support/Faults.h"
#include "tests/support/FileTimes.h"

#include <kelcore/runtime/calendar.h>

#include <cstring>
#include <string_view>

namespace {

constexpr SYSTEMTIME kTime = {2004, 2, 0, 29, 13, 14, 15, 167};
constexpr std::uint64_t kTicks = 127225340551670000; // of kTime

bool Holds(const KelTime& time, const SYSTEMTIME& fields) {
    return std::memcmp(static_cast<const SYSTEMTIME*>(time), &fields, sizeof fields) == 0;
}

} // namespace

TEST_CASE("a time is made from fields and file times, gives them back and copies them") {
    const KelTime fromFields(kTime), fromTicks(Ticks(kTicks + 9'999));
    KelTime assignedFields, assignedTicks, copied;
    CHECK(Holds(assignedFields, SYSTEMTIME{}));
    assignedFields = kTime;
    assignedTicks = Ticks(kTicks);
    copied = fromTicks;
    for (KelTime time : {fromFields, fromTicks, assignedFields, assignedTicks, copied}) {
        CHECK(Holds(time, kTime));
        CHECK(Count(*static_cast<const FILETIME*>(time)) == kTicks);
        FILETIME ticks = {};
        time.GetAsFileTime(ticks);
        CHECK(Count(ticks) == kTicks);
    }
    const KelTime& time = fromTicks;
    CHECK((time.GetYear() == 2004 && time.GetMonth() == 2 && time.GetDayOfWeek() == 0 && time.GetDay() == 29));
    CHECK((time.GetHour() == 13 && time.GetMinute() == 14 && time.GetSecond() == 15));
    CHECK((time.GetMilliseconds() == 167 && time.GetLastDayOfMonth() == 29));
}

TEST_CASE("the file time of a time is written by its conversion alone") {
    KelTime time(Ticks(kTicks));
    const FILETIME* const cache = time;
    static_cast<SYSTEMTIME*>(time)->wDay = 28;
    CHECK(Count(*cache) == kTicks);
    KelTime copy(time); // with its cache
    copy = SYSTEMTIME{2004, 13, 0, 1, 0, 0, 0, 0};
    CHECK(Count(*static_cast<const FILETIME*>(copy)) == kTicks);
    CHECK(static_cast<const FILETIME*>(time) == cache);
    CHECK(Count(*cache) == kTicks - 864'000'000'000);
    CHECK(Count(*static_cast<const FILETIME*>(KelTime())) == 0);
    time = Ticks(~std::uint64_t{0}); // refused
    CHECK(time.GetDay() == 28);
    CHECK(Holds(KelTime(Ticks(~std::uint64_t{0})), SYSTEMTIME{}));
    kel::test::WithEachCallFailing(ERROR_INVALID_PARAMETER, [&] {
        FILETIME ticks = Ticks(5);
        const KelTime made(Ticks(kTicks));
        CHECK(made.GetYear() == (*kel::test::FaultedCall() ? 0 : 2004));
        KelTime(kTime).GetAsFileTime(ticks);
        CHECK(Count(ticks) == (kel::test::FaultedCall() == std::string_view("SystemTimeToFileTime") ? 5 : kTicks));
    });
}

TEST_CASE("leap years and the lengths of months follow the Gregorian rule") {
    for (int year = -4000; year <= 30828; ++year) {
        const bool leap = year % 100 != 0 ? year % 4 == 0 : year % 400 == 0;
        CAPTURE(year);
        CHECK_UNARY(KelTime::IsLeapYear(year) == leap);
        CHECK_UNARY(KelTime::GetLastDayOfMonth(2, year) == (leap ? 29 : 28));
    }
    const int days[] = {-1, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31, -1};
    for (int month = 0; month <= 13; ++month)
        CHECK(KelTime::GetLastDayOfMonth(month, 2003) == days[month]);
    CHECK(KelTime::GetLastDayOfMonth(-2147483647 - 1, 2003) == -1);
}
