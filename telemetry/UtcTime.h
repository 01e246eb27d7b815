// Calendar arithmetic without the system's time zone tables.
#pragma once

#include <cstdint>
#include <optional>

namespace velmorant::telemetry {

struct CivilTime {
    int year = 1970;
    int month = 1; // 1..12
    int day = 1;   // 1..31
    int hour = 0;
    int minute = 0;
    double second = 0;
};

// Days from 1970-01-01 to the given day of the Gregorian calendar.
std::int64_t daysFromCivil(int year, int month, int day);
CivilTime civilFromDays(std::int64_t days);

// Milliseconds since 1970-01-01 00:00:00; nothing for a date or time that no calendar has. Years
// before 1980 or after 2099 are refused too: no recorder has them, a broken clock does.
std::optional<std::int64_t> toMilliseconds(const CivilTime& time);
CivilTime civilFromMilliseconds(std::int64_t milliseconds);

inline constexpr std::int64_t secondsFrom1904To1970 = 2082844800;

} // namespace velmorant::telemetry
