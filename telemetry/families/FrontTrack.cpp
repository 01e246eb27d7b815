#include "telemetry/families/FrontTrack.h"

#include <algorithm>
#include <cstdlib>
#include <string>

#include "telemetry/CameraNames.h"
#include "telemetry/Extract.h"

namespace velmorant::telemetry {

namespace {

// Seconds since 1904; 0 where the file does not tell.
std::uint64_t creationOf(const std::string& path) {
    auto source = openFile(path);
    if (!source) {
        return 0;
    }
    Input input(*source.value());
    constexpr int mostBoxes = 1024;
    BoxWalker walker(input, 0, input.size(), {});
    for (int i = 0; i < mostBoxes; ++i) {
        const auto box = walker.next();
        if (!box) {
            break;
        }
        if (box->type == code("moov")) {
            const auto movie = readMovie(input, *box);
            return movie ? movie.value().creation : 0;
        }
    }
    return 0;
}

// By how many seconds the recording starts later than its front; nothing where they do not start
// together or nothing tells.
std::optional<std::int64_t> secondsBehind(const Recording& rear, const std::string& front) {
    if (const auto named = secondsBetweenNames(rear.input.name(), front)) {
        return named; // two seconds at most, else the names would not pair
    }
    const std::uint64_t own = rear.movie ? rear.movie->creation : 0;
    const std::uint64_t other = creationOf(front);
    if (own == 0 || other == 0) {
        return std::nullopt;
    }
    const auto apart = static_cast<std::int64_t>(own) - static_cast<std::int64_t>(other);
    return std::abs(apart) <= mostSecondsApart ? std::optional(apart) : std::nullopt;
}

void take(const Telemetry& front, std::int64_t behind, Collector& collector) {
    for (std::size_t i = 0; i < front.samples.size(); ++i) {
        const Sample& sample = front.samples[i];
        const std::int64_t second = static_cast<std::int64_t>(i) - behind;
        if (second < 0) {
            continue;
        }
        if (sample.hasAcceleration) {
            AccelerationMean mean;
            mean.addSums(static_cast<float>(sample.mean.x), static_cast<float>(sample.mean.y),
                         static_cast<float>(sample.mean.z),
                         static_cast<float>(sample.strongest * sample.strongest), 1);
            collector.add(static_cast<std::size_t>(second), mean);
        }
        if (sample.state == FixState::noReading) {
            continue;
        }
        const bool good = sample.state == FixState::good;
        Fix fix;
        fix.mediaTime = static_cast<double>(second);
        fix.time = sample.timeRecorded;
        fix.base = sample.recordedBase;
        fix.standardTime = fix.base == TimeBase::utc; // the front's evidence has been heard
        fix.state = sample.state;
        fix.latitude = sample.rawLatitude;
        fix.longitude = sample.rawLongitude;
        fix.speed = good ? sample.speed : sample.rawSpeed;
        fix.heading = good ? sample.heading : unknown;
        fix.altitude = sample.altitude;
        collector.add(fix);
    }
}

std::string startText(std::int64_t behind) {
    if (behind == 0) {
        return "starts together with it";
    }
    return "starts " + std::to_string(std::abs(behind)) + " s " +
           (behind > 0 ? "earlier" : "later");
}

} // namespace

bool readFrontTrack(Recording& recording, Collector& collector) {
    if (recording.siblings == nullptr || cameraOf(recording.input.name()) != Camera::rear) {
        return false;
    }
    Input& input = recording.input;
    for (const std::string& path : recording.siblings->frontRecordings()) {
        const auto behind = secondsBehind(recording, path);
        if (!behind) {
            continue;
        }
        ReadOptions options;
        options.shouldStop = [&input] { return input.stopped(); };
        const auto front = extractFile(path, options);
        if (!front || front.value().fixes() == 0) {
            continue;
        }
        take(front.value(), *behind, collector);
        input.note(input.error({}, 0,
                               "the recording holds no track of its own; this is the track of the "
                               "front recording " +
                                   path + " (" + front.value().family + "), which " +
                                   startText(*behind),
                               ReasonCode::frontTrack));
        return true;
    }
    return false;
}

} // namespace velmorant::telemetry
