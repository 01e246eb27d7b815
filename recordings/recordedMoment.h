#pragma once

#include "recordings/clsDot.h"

#include <cstdint>
#include <optional>
#include <string>

namespace velmorant {

/// Which clock the times of a track come from.
enum class RecordedClock { Utc, Camera };

/// A moment of a recording, as its track tells it.
struct RecordedMoment {
    std::int64_t seconds = 0; ///< since 1970-01-01 00:00:00 of the clock
    RecordedClock clock = RecordedClock::Utc;
    TimeBase base = TimeBase::Unknown;
};

/// The place of a moment.
struct RecordedPlace {
    double longitude = 0.0; ///< decimal degrees
    double latitude = 0.0;
    double heading = 0.0; ///< degrees
};

/// The moment at a play position, in seconds: the first dot's time plus the position, so that it
/// goes on where the track ends early. Absent without a track, for a date that cannot be read, and
/// where the extractor knew no time.
std::optional<RecordedMoment> recordedMoment(const clsDot* track, double position);

/// The place of the dot of that second; absent without a dot and without a fix.
std::optional<RecordedPlace> recordedPlace(const clsDot* track, double position);

/// "2012/10/09 10:30:45".
std::string dateAndTime(std::int64_t seconds);
/// "10:30:45".
std::string timeOfDay(std::int64_t seconds);
/// Minutes and seconds, "75:03".
std::string minutesAndSeconds(double seconds);

} // namespace velmorant
