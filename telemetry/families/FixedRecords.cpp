#include "telemetry/families/FixedRecords.h"

#include "telemetry/Geometry.h"
#include "telemetry/MetadataTrack.h"

namespace velmorant::telemetry {

namespace {

bool readPlaceRecord(const SampleLocation& where, Bytes sample, Collector& collector) {
    if (sample.holds(0, "sReV") && sample.has(4, 6)) {
        constexpr double countsPerG = 1000;
        collector.add(where.time, {sample.i16le(4) / countsPerG, sample.i16le(6) / countsPerG,
                                   sample.i16le(8) / countsPerG});
        return true;
    }
    if (!sample.holds(0, "gReV") || !sample.has(0, 16)) {
        return false;
    }
    Fix fix;
    fix.mediaTime = where.time;
    fix.latitude = sample.i32le(4) / 1e6;
    fix.longitude = sample.i32le(8) / 1e6;
    fix.speed = sample.i16le(12) / 10.0;
    fix.heading = sample.u16le(14) * 2.0;
    collector.add(fix);
    return true;
}

bool readSensorRecord(const SampleLocation& where, Bytes sample, Collector& collector) {
    constexpr std::size_t length = 72;
    if (sample.size() != length) {
        return false;
    }
    const auto f32 = [&](std::size_t at) { return static_cast<double>(sample.f32le(at)); };
    Fix fix;
    fix.mediaTime = where.time;
    fix.speed = f32(52) * kmhPerKnot;
    fix.latitude = fromDegreesMinutes(f32(56));
    fix.longitude = fromDegreesMinutes(f32(60));
    constexpr std::int64_t year1980 = 315532800;
    if (sample.u32le(64) > year1980) {
        fix.time = std::int64_t{sample.u32le(64)} * 1000;
        fix.base = TimeBase::utc;
    }
    if (fix.latitude == 0 && fix.longitude == 0) {
        fix.state = FixState::noFix;
    }
    collector.add(fix);
    collector.add(where.time, {f32(40), f32(44), f32(48)});
    return true;
}

} // namespace

bool readFixedRecords(Recording& recording, Collector& collector) {
    std::string where;
    if (!recording.movie) {
        return false;
    }
    constexpr std::size_t longestRecord = 4096;
    for (const MediaTrack& track : recording.movie->tracks) {
        const bool places = track.format == code("RVMI");
        const bool sensors = track.format == code("tvxt") || track.handler == code("tvxt") ||
                             (track.format == code("mp4s") && track.handler != code("text"));
        if (!places && !sensors) {
            continue;
        }
        readSamples(recording.input, track, longestRecord,
                    [&](const SampleLocation& at, Bytes sample) {
                        if (places ? readPlaceRecord(at, sample, collector)
                                   : readSensorRecord(at, sample, collector)) {
                            where = track.path;
                        }
                    });
    }
    if (!where.empty()) {
        recording.input.note(recording.input.error(
            where, 0, "records of this kind are known from one decoder alone"));
    }
    return !where.empty();
}

} // namespace velmorant::telemetry
