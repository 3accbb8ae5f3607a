#include "ctl/recording/time_text.h"

#include <chrono>
#include <cstdio>

namespace zelt::ctl {

std::string TimeText(std::uint64_t nanoseconds)
{
    if (nanoseconds < 1000) return std::to_string(nanoseconds) + " ns";
    constexpr const char* kUnits[] = {"us", "ms", "s"};
    double value = static_cast<double>(nanoseconds) / 1000;
    std::size_t unit = 0;
    // A value that rounds to 1000 of a unit is shown as 1 of the next.
    while (value >= 999.5 && unit + 1 < std::size(kUnits)) {
        value /= 1000;
        ++unit;
    }
    const int decimals = value < 9.995 ? 2 : value < 99.95 ? 1 : 0;
    char text[64];
    std::snprintf(text, sizeof text, "%.*f %s", decimals, value, kUnits[unit]);
    return text;
}

std::string DateText(std::uint64_t fileTime)
{
    using namespace std::chrono;
    constexpr std::int64_t kSecondsTo1970 = 11'644'473'600;
    const sys_seconds time{seconds(static_cast<std::int64_t>(fileTime / 10'000'000) - kSecondsTo1970)};
    const sys_days day = floor<days>(time);
    const year_month_day date(day);
    const hh_mm_ss clock(time - day);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u %02d:%02d:%02d UTC", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    return text;
}

}  // namespace zelt::ctl
