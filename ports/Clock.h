#pragma once

#include <chrono>

namespace velmorant {

/// A local date and time of day.
struct LocalTime {
    int year = 0;
    int month = 0;  ///< 1..12
    int day = 0;    ///< 1..31
    int hour = 0;   ///< 0..23
    int minute = 0; ///< 0..59
    int second = 0; ///< 0..60
};

class Clock {
  public:
    virtual ~Clock() = default;
    virtual LocalTime localTime() const = 0;
    /// Since some moment in the past; goes on evenly whatever is done to the time of day.
    virtual std::chrono::milliseconds steadyTime() const = 0;
};

} // namespace velmorant
