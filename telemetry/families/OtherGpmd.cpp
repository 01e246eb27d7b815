#include "telemetry/families/OtherGpmd.h"

#include "telemetry/Geometry.h"
#include "telemetry/MetadataTrack.h"
#include "telemetry/Nmea.h"
#include "telemetry/UtcTime.h"

namespace velmorant::telemetry {

namespace {

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
    CivilTime time;
    time.year = sample.u16le(0x60);
    time.month = sample.u8(0x62);
    time.day = sample.u8(0x63);
    time.hour = sample.u8(0x64);
    time.minute = sample.u8(0x65);
    time.second = sample.u8(0x66);
    if (const auto milliseconds = toMilliseconds(time)) {
        fix.time = *milliseconds;
        fix.base = TimeBase::utc;
    } else if (fix.state == FixState::good) {
        fix.state = FixState::badDate;
    }
    collector.add(fix);
    collector.add(where.time,
                  {static_cast<double>(sample.f32le(0x70)), static_cast<double>(sample.f32le(0x74)),
                   static_cast<double>(sample.f32le(0x6c))});
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
            if (sample.holds(0, "DEVC")) {
                return;
            }
            if (sample.holds(0, "FMAS") && sample.has(0, 0x88)) {
                readFmas(where, sample, collector);
                found = true;
                return;
            }
            readSentences(sample.text(0), [&](Fix fix) {
                fix.mediaTime = where.time;
                collector.add(fix);
                found = true;
            });
        });
    }
    return found;
}

} // namespace velmorant::telemetry
