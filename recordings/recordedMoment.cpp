#include "recordings/recordedMoment.h"

#include "common/textRules.h"
#include "common/trapErrors.h"

#include <chrono>
#include <cmath>
#include <vector>

namespace velmorant {

namespace {

constexpr std::int64_t secondsPerDay = 86400;

/// "2012/9/7 08:05:09"; hours may go on past 23. Throws StepError.
std::int64_t secondsOfDate(const std::string& text) {
    const std::vector<std::string> halves = split(text, ' ');
    const std::vector<std::string> date = split(halves.at(0), '/');
    const std::vector<std::string> time = split(halves.size() == 2 ? halves[1] : "", ':');
    if (date.size() != 3 || time.size() != 3)
        throw StepError("no date: " + text);
    const std::chrono::year_month_day day(
        std::chrono::year(toInt16(date[0])),
        std::chrono::month(static_cast<unsigned>(toInt16(date[1]))),
        std::chrono::day(static_cast<unsigned>(toInt16(date[2]))));
    if (!day.ok())
        throw StepError("no date: " + text);
    const std::int64_t days = std::chrono::sys_days(day).time_since_epoch().count();
    return days * secondsPerDay + toInt32(time[0]) * std::int64_t{3600} +
           toInt32(time[1]) * std::int64_t{60} + toInt32(time[2]);
}

/// The last dot that does not lie behind the position; 0 for none.
std::int32_t dotAt(const clsDot& track, double position) {
    const double second = std::floor(position);
    // Nearly every track has one dot per second from 0 on.
    if (second >= 0 && second < track.count()) {
        const auto likely = static_cast<std::int32_t>(second) + 1;
        if (track.dot(likely).second == second)
            return likely;
    }
    std::int32_t found = 0;
    for (std::int32_t i = 1; i <= track.count(); ++i)
        if (track.dot(i).second <= second &&
            (found == 0 || track.dot(i).second >= track.dot(found).second))
            found = i;
    return found;
}

} // namespace

std::optional<RecordedMoment> recordedMoment(const clsDot* track, double position) {
    if (track == nullptr || track->count() == 0)
        return std::nullopt;
    const TimeBase base = track->details().timeBase;
    if (base == TimeBase::None)
        return std::nullopt;
    std::optional<RecordedMoment> moment;
    trapErrors([&] {
        const std::int64_t start = secondsOfDate(track->dot(1).dateText);
        const auto passed = static_cast<std::int64_t>(std::floor(position));
        moment = RecordedMoment{.seconds = start + passed - track->dot(1).second,
                                .clock = base == TimeBase::Camera ? RecordedClock::Camera
                                                                  : RecordedClock::Utc,
                                .base = base};
    });
    return moment;
}

std::optional<RecordedPlace> recordedPlace(const clsDot* track, double position) {
    const std::int32_t index = track == nullptr ? 0 : dotAt(*track, position);
    if (index == 0)
        return std::nullopt;
    const SampleDetails* details = track->detailsOfDot(index);
    const TrackDot& dot = track->dot(index);
    const bool nowhere = dot.x == 0 && dot.y == 0;
    if (nowhere || (details != nullptr && !details->hasFix))
        return std::nullopt;
    return RecordedPlace{.longitude = dot.x / 1e7,
                         .latitude = dot.y / 1e7,
                         .heading = static_cast<double>(dot.angle)};
}

std::string timeOfDay(std::int64_t seconds) {
    const std::int64_t second = ((seconds % secondsPerDay) + secondsPerDay) % secondsPerDay;
    return zeroPadded(second / 3600, 2) + ":" + zeroPadded(second / 60 % 60, 2) + ":" +
           zeroPadded(second % 60, 2);
}

std::string dateAndTime(std::int64_t seconds) {
    const std::int64_t second = ((seconds % secondsPerDay) + secondsPerDay) % secondsPerDay;
    const std::chrono::sys_days day{std::chrono::days((seconds - second) / secondsPerDay)};
    const std::chrono::year_month_day date(day);
    return zeroPadded(static_cast<int>(date.year()), 4) + "/" +
           zeroPadded(static_cast<unsigned>(date.month()), 2) + "/" +
           zeroPadded(static_cast<unsigned>(date.day()), 2) + " " + timeOfDay(seconds);
}

std::string minutesAndSeconds(double seconds) {
    const auto whole = static_cast<std::int64_t>(std::floor(seconds < 0 ? 0 : seconds));
    return zeroPadded(whole / 60, 2) + ":" + zeroPadded(whole % 60, 2);
}

} // namespace velmorant
