#include "Workplace.h"

#include "tests/support/FileTimes.h"

#include <chrono>
#include <cstring>
#include <random>

namespace {

using namespace std::chrono;

constexpr std::uint64_t kTicksOfDay = 864'000'000'000;

// What the standard library's calendar makes of a file time.
SYSTEMTIME Expected(std::uint64_t ticks) {
    const sys_days day = sys_days(1601y / 1 / 1) + days(ticks / kTicksOfDay);
    const year_month_day date(day);
    const hh_mm_ss time(milliseconds(ticks % kTicksOfDay / 10'000));
    const auto word = [](auto value) { return static_cast<WORD>(value); };
    return {word(static_cast<int>(date.year())), word(static_cast<unsigned>(date.month())),
            word(weekday(day).c_encoding()),     word(static_cast<unsigned>(date.day())),
            word(time.hours().count()),          word(time.minutes().count()),
            word(time.seconds().count()),        word(time.subseconds().count())};
}

// Whether both conversions agree with the calendar.
bool Converts(std::uint64_t ticks) {
    const FILETIME fileTime = Ticks(ticks);
    const SYSTEMTIME expected = Expected(ticks);
    SYSTEMTIME time;
    FILETIME back;
    if (!FileTimeToSystemTime(&fileTime, &time) || std::memcmp(&time, &expected, sizeof time) != 0)
        return false;
    time.wDayOfWeek = 9; // nobody looks at it
    return SystemTimeToFileTime(&time, &back) && Count(back) == ticks - ticks % 10'000;
}

} // namespace

TEST_CASE("file times and calendar times agree with the calendar on every day and at random times") {
    const std::uint64_t seed = std::random_device()();
    CAPTURE(seed);
    std::mt19937_64 random(seed);
    const std::uint64_t end = (sys_days(30828y / 1 / 1) - sys_days(1601y / 1 / 1)).count() * kTicksOfDay;
    int wrong = 0;
    for (std::uint64_t day = 0; day < 801 * 366; ++day)
        wrong += !Converts(day * kTicksOfDay) + !Converts(day * kTicksOfDay + kTicksOfDay - 1);
    for (int i = 0; i < 200'000; ++i)
        wrong += !Converts(random() % end);
    CHECK(wrong == 0);
    CHECK(Converts(end - 1));
}

TEST_CASE("times outside the calendar are refused and leave the target alone") {
    // A day of the week of 0 is for rows that Wine takes although Windows does not.
    const SYSTEMTIME times[] = {
        {1600, 12, 1, 31, 23, 59, 59, 999}, {30828, 1, 0, 1, 0, 0, 0, 0}, {1900, 2, 0, 29, 0, 0, 0, 0},
        {2000, 0, 1, 1, 0, 0, 0, 0},        {2000, 13, 1, 1, 0, 0, 0, 0}, {2000, 1, 1, 0, 0, 0, 0, 0},
        {2000, 1, 1, 1, 24, 0, 0, 0},       {2000, 1, 1, 1, 0, 60, 0, 0}, {2000, 1, 1, 1, 0, 0, 60, 0},
        {2000, 1, 1, 1, 0, 0, 0, 1000},
    };
    for (const SYSTEMTIME& time : times) {
        FILETIME target = Ticks(7);
        INFO(time.wYear, " ", time.wMonth, " ", time.wDay, " ", time.wHour, " ", time.wMinute);
        if (time.wDayOfWeek == 0 && !kOnLayer)
            continue;
        CHECK(ErrorOf(SystemTimeToFileTime(&time, &target)) == ERROR_INVALID_PARAMETER);
        CHECK(Count(target) == 7);
    }
    SYSTEMTIME target = {};
    const FILETIME tooLate = Ticks(std::uint64_t{1} << 63);
    CHECK(ErrorOf(FileTimeToSystemTime(&tooLate, &target)) == ERROR_INVALID_PARAMETER);
    CHECK(target.wYear == 0);
}
