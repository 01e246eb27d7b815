#include "telemetry/families/OtherGpmd.h"

#include "telemetry/Geometry.h"
#include "telemetry/MetadataTrack.h"
#include "telemetry/UtcTime.h"
#include "telemetry/families/LigoText.h"
#include "telemetry/families/TextTracks.h"

namespace velmorant::telemetry {

namespace {

void setTime(Fix& fix, TimeBase base, const CivilTime& time) {
    if (const auto milliseconds = toMilliseconds(time)) {
        fix.time = *milliseconds;
        fix.base = base;
    } else if (fix.state == FixState::good) {
        fix.state = FixState::badDate;
    }
}

void readFmas(const SampleLocation& where, Bytes sample, Collector& collector) {
    Fix fix;
    fix.mediaTime = where.time;
    fix.state = sample.character(0x78) == 'A' ? FixState::good : FixState::noFix;
    const auto angle = [&](std::size_t degrees, std::size_t fraction) {
        return sample.u8(degrees) + (sample.u8(degrees + 1) + sample.u16le(fraction) / 6000.0) / 60;
    };
    fix.longitude = angle(0x7b, 0x7e) * (sample.character(0x79) == 'W' ? -1 : 1);
    fix.latitude = angle(0x80, 0x82) * (sample.character(0x7a) == 'S' ? -1 : 1);
    fix.speed = sample.u16le(0x84) * kmhPerMile;
    fix.heading = sample.u16le(0x86);
    setTime(fix, TimeBase::utc,
            {sample.u16le(0x60), sample.u8(0x62), sample.u8(0x63), sample.u8(0x64), sample.u8(0x65),
             static_cast<double>(sample.u8(0x66))});
    collector.add(fix);
    collector.add(where.time,
                  {static_cast<double>(sample.f32le(0x70)), static_cast<double>(sample.f32le(0x74)),
                   static_cast<double>(sample.f32le(0x6c))});
}

constexpr std::size_t pairsLength = 0xf8;

bool holdsPairs(Bytes sample) {
    constexpr std::size_t maker = 0x88;
    if (!sample.has(0, pairsLength)) {
        return false;
    }
    bool capitals = sample.holds(maker, "0000000000000000");
    for (std::size_t i = 0; i < 4; ++i) {
        const char letter = sample.character(maker + 16 + i);
        capitals = capitals && letter >= 'A' && letter <= 'Z';
    }
    return capitals || sample.holds(maker, "https://");
}

double pairAt(Bytes sample, std::size_t at) {
    const std::int64_t scale = sample.i64le(at + 8);
    return scale == 0 ? unknown
                      : static_cast<double>(sample.i64le(at)) / static_cast<double>(scale);
}

void readPairs(const SampleLocation& where, Bytes sample, Collector& collector) {
    Fix fix;
    fix.mediaTime = where.time;
    fix.latitude = fromDegreesMinutes(pairAt(sample, 0xb0));
    fix.longitude = fromDegreesMinutes(pairAt(sample, 0xc0));
    fix.speed = pairAt(sample, 0x48) * kmhPerKnot;
    fix.heading = pairAt(sample, 0x58);
    fix.altitude = pairAt(sample, 0xe8);
    judge(fix);
    setTime(fix, TimeBase::utc,
            {sample.i32le(0x70), sample.i32le(0x6c), sample.i32le(0x68), sample.i32le(0xa0),
             sample.i32le(0xa4), static_cast<double>(sample.i32le(0xa8))});
    collector.add(fix);
}

bool holdsRow(Bytes sample) {
    const char north = sample.character(0x19);
    const char east = sample.character(0x1a);
    return sample.has(0, 0x38) && sample.character(0x18) == 'A' && sample.u32le(0x14) < 32 &&
           (north == 'N' || north == 'S') && (east == 'E' || east == 'W');
}

void readRow(Input& input, const SampleLocation& where, Bytes sample, Collector& collector) {
    Collector behind;
    if (sample.text(0x38, 64).find("LIGOGPSINFO") != std::string_view::npos &&
        readLigoText(input, sample.from(0x38), behind) && !behind.empty()) {
        collector.comesAt(where.time);
        readLigoText(input, sample.from(0x38), collector);
        return;
    }
    Fix fix;
    fix.mediaTime = where.time;
    fix.state = FixState::enciphered;
    fix.speed = static_cast<double>(sample.f32le(0x24)) * kmhPerKnot;
    fix.heading = static_cast<double>(sample.f32le(0x28));
    setTime(fix, TimeBase::camera,
            {sample.i32le(0x0c), sample.i32le(0x10), sample.i32le(0x14), sample.i32le(0),
             sample.i32le(4), static_cast<double>(sample.i32le(8))});
    collector.add(fix);
    collector.add(where.time,
                  {static_cast<double>(sample.f32le(0x2c)), static_cast<double>(sample.f32le(0x30)),
                   static_cast<double>(sample.f32le(0x34))});
}

// False for contents that are none of these.
bool readSample(Input& input, const SampleLocation& where, Bytes sample, Collector& collector) {
    if (sample.holds(0, "DEVC")) {
        return false;
    }
    if (sample.holds(0, "FMAS") && sample.has(0, 0x88)) {
        readFmas(where, sample, collector);
    } else if (holdsPairs(sample)) {
        readPairs(where, sample, collector);
    } else if (holdsRow(sample)) {
        readRow(input, where, sample, collector);
    } else {
        return readTelemetryText(sample, where.time, where.duration, collector);
    }
    return true;
}

} // namespace

bool readOtherGpmd(Recording& recording, Collector& collector) {
    bool found = false;
    if (!recording.movie) {
        return false;
    }
    for (const MediaTrack& track : recording.movie->tracks) {
        if (track.format != code("gpmd")) {
            continue;
        }
        readSamples(recording.input, track, 65536, [&](const SampleLocation& where, Bytes sample) {
            found = readSample(recording.input, where, sample, collector) || found;
        });
    }
    return found;
}

} // namespace velmorant::telemetry
