#include "telemetry/families/Camm.h"

#include <array>

#include "telemetry/Geometry.h"
#include "telemetry/MetadataTrack.h"
#include "telemetry/UtcTime.h"

namespace velmorant::telemetry {

namespace {

constexpr std::size_t longestSample = 65536;
constexpr double gpsEpoch = 315964800; // 1980-01-06 in seconds since 1970

// Seconds since 1970 at which another leap second had come into force, from the first one after the
// GPS epoch on.
constexpr std::array leapSeconds = {
    362793600.0, 394329600.0,  425865600.0,  489024000.0,  567993600.0,  631152000.0,
    662688000.0, 709948800.0,  741484800.0,  773020800.0,  820454400.0,  867715200.0,
    915148800.0, 1136073600.0, 1230768000.0, 1341100800.0, 1435708800.0, 1483228800.0};

double utcFromGps(double seconds) {
    const double moment = seconds + gpsEpoch;
    double leaps = 0;
    for (const double from : leapSeconds) {
        leaps += moment - leaps - 1 >= from ? 1 : 0;
    }
    return moment - leaps;
}

std::int64_t timeOf(double seconds, double creation) {
    double utc = utcFromGps(seconds);
    if (creation > 0 && std::abs(seconds - creation) < std::abs(utc - creation)) {
        utc = seconds;
    }
    return utc > gpsEpoch && utc < 4102444800.0 ? std::llround(utc * 1000) : noTime;
}

void readPosition(Bytes body, bool withTime, double creation, Fix& fix) {
    const std::size_t first = withTime ? 12 : 0;
    fix.latitude = body.f64le(first);
    fix.longitude = body.f64le(first + 8);
    if (!withTime) {
        fix.altitude = body.f64le(16);
        return;
    }
    fix.state = body.u32le(8) >= 2 ? FixState::good : FixState::noFix;
    fix.time = timeOf(body.f64le(0), creation);
    fix.base = fix.time == noTime ? TimeBase::none : TimeBase::utc;
    fix.standardTime = true;
    fix.altitude = static_cast<double>(body.f32le(28));
    const auto east = static_cast<double>(body.f32le(40));
    const auto north = static_cast<double>(body.f32le(44));
    fix.speed = std::hypot(east, north) * kmhPerMetrePerSecond;
    constexpr double movingAtLeast = 0.3; // metres per second; below, noise gives the direction
    if (std::hypot(east, north) >= movingAtLeast) {
        fix.heading = std::atan2(east, north) * 180 / 3.14159265358979323846;
    }
}

void readPackets(const SampleLocation& where, Bytes sample, double creation, Collector& collector) {
    constexpr std::array<std::size_t, 8> lengths = {12, 8, 12, 12, 12, 24, 56, 12};
    for (std::size_t at = 0; sample.has(at, 4);) {
        const std::uint16_t type = sample.u16le(at + 2);
        if (type >= lengths.size() || !sample.has(at + 4, lengths[type])) {
            return;
        }
        const Bytes body = sample.from(at + 4, lengths[type]);
        if (type == 3) {
            collector.add(where.time, {static_cast<double>(body.f32le(0)) / standardGravity,
                                       static_cast<double>(body.f32le(4)) / standardGravity,
                                       static_cast<double>(body.f32le(8)) / standardGravity});
        } else if (type == 5 || type == 6) {
            Fix fix;
            fix.mediaTime = where.time;
            readPosition(body, type == 6, creation, fix);
            collector.add(fix);
        }
        at += 4 + lengths[type];
    }
}

} // namespace

bool readCamm(Recording& recording, Collector& collector) {
    bool found = false;
    if (recording.movie) {
        const double creation = static_cast<double>(recording.movie->creation) -
                                static_cast<double>(secondsFrom1904To1970);
        for (const MediaTrack& track : recording.movie->tracks) {
            if (track.format == code("camm")) {
                found = true;
                readSamples(recording.input, track, longestSample,
                            [&](const SampleLocation& where, Bytes sample) {
                                readPackets(where, sample, creation, collector);
                            });
            }
        }
    }
    return found;
}

} // namespace velmorant::telemetry
