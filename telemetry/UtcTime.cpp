#include "telemetry/UtcTime.h"

#include <cmath>

namespace velmorant::telemetry {

// Both directions count from the 1st of March of year 0, so that the leap day is a year's last day;
// an era is the 400 years after which the calendar repeats.
std::int64_t daysFromCivil(int year, int month, int day) {
    const std::int64_t shifted = month <= 2 ? year - 1 : year;
    const std::int64_t era = (shifted >= 0 ? shifted : shifted - 399) / 400;
    const std::int64_t yearOfEra = shifted - era * 400;
    const std::int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + dayOfEra - 719468;
}

CivilTime civilFromDays(std::int64_t days) {
    days += 719468;
    const std::int64_t era = (days >= 0 ? days : days - 146096) / 146097;
    const std::int64_t dayOfEra = days - era * 146097;
    const std::int64_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t monthIndex = (5 * dayOfYear + 2) / 153;
    CivilTime time;
    time.day = static_cast<int>(dayOfYear - (153 * monthIndex + 2) / 5 + 1);
    time.month = static_cast<int>(monthIndex < 10 ? monthIndex + 3 : monthIndex - 9);
    time.year = static_cast<int>(yearOfEra + era * 400 + (time.month <= 2 ? 1 : 0));
    return time;
}

std::optional<std::int64_t> toMilliseconds(const CivilTime& time) {
    if (time.year < 1980 || time.year > 2099 || time.month < 1 || time.month > 12 || time.day < 1 ||
        time.day > 31 || time.hour < 0 || time.hour > 23 || time.minute < 0 || time.minute > 59 ||
        !(time.second >= 0 && time.second < 61)) {
        return std::nullopt;
    }
    const std::int64_t days = daysFromCivil(time.year, time.month, time.day);
    if (civilFromDays(days).day != time.day) {
        return std::nullopt; // the 30th of February
    }
    return ((days * 24 + time.hour) * 60 + time.minute) * 60000 +
           static_cast<std::int64_t>(std::llround(time.second * 1000));
}

CivilTime civilFromMilliseconds(std::int64_t milliseconds) {
    constexpr std::int64_t dayLength = 86400000;
    std::int64_t days = milliseconds / dayLength;
    std::int64_t rest = milliseconds % dayLength;
    if (rest < 0) {
        rest += dayLength;
        --days;
    }
    CivilTime time = civilFromDays(days);
    time.hour = static_cast<int>(rest / 3600000);
    time.minute = static_cast<int>(rest / 60000 % 60);
    time.second = static_cast<double>(rest % 60000) / 1000;
    return time;
}

} // namespace velmorant::telemetry
