#include "bench/support/Areas.h"
#include "bench/support/Jobs.h"
#include "bench/support/Random.h"

#include <kelcore/runtime/calendar.h>

#include <chrono>

namespace kel::bench {
namespace {

using namespace std::chrono;

constexpr std::uint64_t kTicksOfDay = 864'000'000'000;
constexpr sys_days kFirstDay = sys_days(1601y / 1 / 1);

// A calendar time as the standard library has it.
struct CalendarTime {
    year_month_day date;
    hh_mm_ss<milliseconds> time;
};

// 1,000 file times of the years 1601 to 2400, in whole milliseconds.
std::vector<std::uint64_t> FileTimes() {
    Random random(8);
    std::vector<std::uint64_t> times;
    for (int i = 0; i < 1000; ++i)
        times.push_back(random.Below(800 * 365) * kTicksOfDay + std::uint64_t{random.Below(86'400'000)} * 10'000);
    return times;
}

FILETIME Halves(std::uint64_t ticks) {
    return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

CalendarTime Calendar(std::uint64_t ticks) {
    const sys_days day = kFirstDay + days(ticks / kTicksOfDay);
    return {day, hh_mm_ss(milliseconds(ticks % kTicksOfDay / 10'000))};
}

template <class Value, class Convert>
std::vector<Value> Converted(Convert convert) {
    std::vector<Value> converted;
    for (const std::uint64_t ticks : FileTimes())
        converted.push_back(convert(ticks));
    return converted;
}

std::string Fields(int year, int month, int day, int hour, int minute, int second, int milliseconds) {
    std::string text;
    for (const int field : {year, month, day, hour, minute, second, milliseconds})
        text += std::to_string(field) + ' ';
    return text;
}

Call FromFileTime() {
    return ForEach(
        Converted<FILETIME>(&Halves), [](const FILETIME& time) { return KelTime(time); },
        [](const KelTime& time) {
            return Fields(time.GetYear(), time.GetMonth(), time.GetDay(), time.GetHour(), time.GetMinute(),
                          time.GetSecond(), time.GetMilliseconds());
        });
}

Call ChronoFromFileTime() {
    return ForEach(FileTimes(), &Calendar, [](const CalendarTime& time) {
        return Fields(int(time.date.year()), static_cast<int>(unsigned(time.date.month())),
                      static_cast<int>(unsigned(time.date.day())), static_cast<int>(time.time.hours().count()),
                      static_cast<int>(time.time.minutes().count()), static_cast<int>(time.time.seconds().count()),
                      static_cast<int>(time.time.subseconds().count()));
    });
}

Call ToFileTime() {
    const auto convert = [](KelTime time) {
        FILETIME ticks = {};
        time.GetAsFileTime(ticks);
        return std::uint64_t{ticks.dwHighDateTime} << 32 | ticks.dwLowDateTime;
    };
    return ForEach(Converted<KelTime>([](std::uint64_t ticks) { return KelTime(Halves(ticks)); }), convert,
                   [](std::uint64_t ticks) { return std::to_string(ticks); });
}

// With the checks that the system's conversion makes.
Call ChronoToFileTime() {
    const auto convert = [](const CalendarTime& time) -> std::uint64_t {
        const bool good = time.date.ok() && time.date.year() >= 1601y && time.time.hours() < 24h;
        const auto since = sys_days(time.date) - kFirstDay + time.time.to_duration();
        return good ? static_cast<std::uint64_t>(duration_cast<milliseconds>(since).count()) * 10'000 : 0;
    };
    return ForEach(Converted<CalendarTime>(&Calendar), convert,
                   [](std::uint64_t ticks) { return std::to_string(ticks); });
}

using Month = std::pair<int, int>; // and its year

std::vector<Month> Months() {
    std::vector<Month> months;
    for (const std::uint64_t ticks : FileTimes()) {
        const CalendarTime time = Calendar(ticks);
        months.emplace_back(static_cast<int>(unsigned(time.date.month())), int(time.date.year()));
    }
    return months;
}

Call LastDays() {
    return ForEach(
        Months(), [](const Month& month) { return KelTime::GetLastDayOfMonth(month.first, month.second); },
        [](int day) { return std::to_string(day); });
}

Call ChronoLastDays() {
    const auto last = [](const Month& month) {
        const std::chrono::month_day_last end(std::chrono::month(static_cast<unsigned>(month.first)));
        return static_cast<int>(unsigned(year_month_day_last(year(month.second), end).day()));
    };
    return ForEach(Months(), last, [](int day) { return std::to_string(day); });
}

} // namespace

void AddTimeJobs() {
    AddJob("time", "kelcore", "from file time", &FromFileTime);
    AddJob("time", "std", "from file time", &ChronoFromFileTime);
    AddJob("time", "kelcore", "to file time", &ToFileTime);
    AddJob("time", "std", "to file time", &ChronoToFileTime);
    AddJob("time", "kelcore", "last day of month", &LastDays);
    AddJob("time", "std", "last day of month", &ChronoLastDays);
}

} // namespace kel::bench
