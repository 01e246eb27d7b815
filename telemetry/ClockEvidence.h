// Which clock a recording's times were read from. Formats say "UTC" for fields that many recorders
// fill from a clock set to local time; what else a recording tells decides whether to believe it.
#pragma once

#include <optional>
#include <string_view>

#include "telemetry/Samples.h"

namespace velmorant::telemetry {

// What a recording tells about its clock.
struct ClockWitnesses {
    TimeBase declared = TimeBase::none; // as the format understands its times
    bool standard = false;              // a published format defines them as UTC, no mere habit
    std::int64_t clock = 0;             // seconds since 1970 at the recording's first second
    std::string_view path;              // of the recording; its name may hold date and time
    std::int64_t creation = 0;          // seconds since 1970, of the movie header; 0 for unknown
    double duration = 0;                // seconds; 0 for unknown
    double longitude = unknown;         // degrees, of the first trusted position
    // By how many seconds the clock was set forwards when the receiver found its first position.
    std::optional<std::int64_t> setAtFirstFix{};
};

// The base that the evidence is for, with its reasons. Never more than the evidence gives: without
// any the declared base stands, and an offset is named only where two clocks differ by it.
ClockEvidence judgeClock(const ClockWitnesses& witnesses);

// Date and time in a file's name as seconds since 1970 on the recorder's clock: YYYYMMDDhhmmss or
// YYMMDDhhmmss with '_', '-', '.' or a blank between any two numbers; nothing where there is none.
std::optional<std::int64_t> timeInName(std::string_view path);

// "UTC", "the recorder's own clock, 8 h ahead of UTC", ...
std::string describe(const ClockEvidence& clock);

// By how many seconds the clock was set when the first position came, from the samples themselves.
std::optional<std::int64_t> setAtFirstFix(const std::vector<Sample>& samples);

} // namespace velmorant::telemetry
