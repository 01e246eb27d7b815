// What a family of formats hands over (readings) and what comes out (one sample per second).
#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "telemetry/Result.h"

namespace velmorant::telemetry {

inline constexpr double unknown = std::numeric_limits<double>::quiet_NaN();
inline constexpr std::int64_t noTime = std::numeric_limits<std::int64_t>::min();
inline bool known(double value) {
    return !std::isnan(value);
}

// Faster is no car; what a source says beyond it stands for "no speed".
inline constexpr double fastestSpeed = 450; // km/h

// Which clock a time was taken from.
enum class TimeBase : std::uint8_t {
    none,     // no time at all
    creation, // the recording's creation time, whatever the recorder's clock meant by it
    camera,   // the recorder's own clock, its zone unknown
    utc
};

// The clock of a recording's times and what speaks for it; see ClockEvidence.h.
struct ClockEvidence {
    TimeBase base = TimeBase::none;
    // How far the recorder's own clock is ahead of UTC (negative: behind), where the evidence fits
    // one offset. Times are never converted by it.
    std::optional<int> minutesAheadOfUtc{};
    std::vector<std::string> reasons{}; // plain words, the weightiest first
};

// Why a position is not to be trusted; `good` is a fix.
enum class FixState : std::uint8_t {
    good,
    noReading,    // the source has nothing for this second
    noFix,        // the recorder says itself that it had none
    badDate,      // a month 0 or 13, a day that no month has
    outOfRange,   // a latitude beyond 90 or longitude beyond 180 degrees, or no number at all
    zeroPosition, // 0 and 0: what recorders write for "nothing"
    jump,         // no car gets there in that time
    stale,        // left over from the last drive
    parkedDrift,  // speed without movement
    frozen,       // no movement, though the car was elsewhere a second later
    enciphered    // the rule that would decipher the position is unknown
};

struct Acceleration {
    double x = 0, y = 0, z = 0; // in g, axes as the recorder has them
};

// One position reading of the source.
struct Fix {
    double mediaTime = unknown; // seconds from the recording's start
    std::int64_t time = noTime; // milliseconds since 1970 on the clock of `base`
    TimeBase base = TimeBase::none;
    bool standardTime = false; // a published format defines `time` as UTC
    FixState state = FixState::good;
    double latitude = unknown, longitude = unknown; // degrees, north and east positive
    double speed = unknown;                         // km/h
    double heading = unknown;                       // degrees clockwise from north
    double altitude = unknown;                      // metres
};

// One second of the recording.
struct Sample {
    std::int64_t time = 0;              // seconds since 1970 by the recording's anchor
    std::int64_t timeRecorded = noTime; // milliseconds, as the source has it for this second
    TimeBase recordedBase = TimeBase::none;
    FixState state = FixState::noReading;
    double latitude = 0, longitude = 0; // where there is no fix: of the last one, or the first
    double speed = 0;                   // km/h; 0 without a fix
    double heading = 0;                 // degrees, 0 up to 360
    double altitude = unknown;          // metres
    bool hasAcceleration = false;
    Acceleration mean;    // of the second's readings; 0 where there are none
    double strongest = 0; // greatest magnitude of the second's readings, in g
    // As the source wrote them, trusted or not; unknown where it wrote nothing.
    double rawLatitude = unknown, rawLongitude = unknown, rawSpeed = unknown;

    double magnitude() const {
        return std::sqrt(mean.x * mean.x + mean.y * mean.y + mean.z * mean.z);
    }
};

// A recording's telemetry.
struct Telemetry {
    std::string family;             // name in the table of families
    TimeBase base = TimeBase::none; // of Sample::time; the same as clock.base
    ClockEvidence clock;
    double duration = 0;         // seconds of the recording; 0 when it does not say
    std::vector<Sample> samples; // element i is second i; times rise by one each
    std::vector<Error> notices;  // what was wrong but did not stop the reading

    std::size_t fixes() const;
};

std::string_view name(FixState state); // "good", "no fix", "jump" ...
std::string_view name(TimeBase base);  // "utc", "camera", "creation", "none"

} // namespace velmorant::telemetry
