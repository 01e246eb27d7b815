#include "tools/recordings/FamilyMakers.h"

#include <cmath>
#include <cstdio>

#include "telemetry/UtcTime.h"
#include "tools/recordings/FreeGpsBlocks.h"

namespace velmorant::recordings {

std::span<const FamilyMaker> familyMakers() {
    static const std::vector<FamilyMaker> all = [] {
        std::vector<FamilyMaker> makers;
        for (const auto& part : {making::blockMakers(), making::trackMakers(), making::boxMakers(),
                                 making::streamMakers()}) {
            makers.insert(makers.end(), part.begin(), part.end());
        }
        return makers;
    }();
    return all;
}

namespace making {

Mp4Plan planOf(const DriveSeconds& drive) {
    Mp4Plan plan;
    plan.creation = drive.front().time;
    plan.seconds = static_cast<double>(drive.size());
    return plan;
}

ByteVector withBlocks(const DriveSeconds& drive, BlockOf block, Mp4Plan::Index index) {
    Mp4Plan plan = planOf(drive);
    plan.index = index;
    for (std::size_t i = 0; i < drive.size(); ++i) {
        for (int copy = 0; copy < drive[i].written; ++copy) {
            plan.blocks.push_back({block(drive[i]), i});
        }
    }
    return buildMp4(plan);
}

DriveSeconds asWritten(const DriveSeconds& drive) {
    DriveSeconds written;
    for (const DriveSecond& second : drive) {
        written.insert(written.end(), static_cast<std::size_t>(second.written), second);
    }
    return written;
}

void addSamples(const DriveSeconds& drive, BlockOf sample, TrackPlan& track) {
    for (const DriveSecond& second : drive) {
        for (int copy = 0; copy < second.written; ++copy) {
            track.samples.push_back(
                {sample(second), 1000 / static_cast<std::uint32_t>(second.written)});
        }
        if (second.written == 0) {
            track.samples.push_back({{}, 1000});
        }
    }
}

ByteVector withTrack(const DriveSeconds& drive, std::string_view handler, std::string_view format,
                     BlockOf sample) {
    Mp4Plan plan = planOf(drive);
    TrackPlan track;
    track.handler = handler;
    track.format = format;
    addSamples(drive, sample, track);
    plan.tracks.push_back(std::move(track));
    return buildMp4(plan);
}

std::int64_t whole(double value) {
    return std::llround(value);
}
char north(const DriveSecond& second) {
    return second.latitude < 0 ? 'S' : 'N';
}
char east(const DriveSecond& second) {
    return second.longitude < 0 ? 'W' : 'E';
}
double latitudeMinutes(const DriveSecond& second) {
    return degreesMinutes(std::abs(second.latitude));
}
double longitudeMinutes(const DriveSecond& second) {
    return degreesMinutes(std::abs(second.longitude));
}

std::string rmc(const DriveSecond& second, char shift) {
    const auto time = telemetry::civilFromMilliseconds(second.time * 1000);
    char text[160];
    if (second.fix) {
        std::snprintf(text, sizeof text,
                      "$GPRMC,%02d%02d%02d.000,A,%010.5f,%c,%011.5f,%c,%.3f,%.2f,%02d%02d%02d,,,A",
                      time.hour, time.minute, static_cast<int>(time.second),
                      latitudeMinutes(second), north(second), longitudeMinutes(second),
                      east(second), second.speed / 1.852, second.heading, time.day, time.month,
                      time.year % 100);
    } else {
        std::snprintf(text, sizeof text, "$GPRMC,%02d%02d%02d.000,V,,,,,,,%02d%02d%02d,,,N",
                      time.hour, time.minute, static_cast<int>(time.second), time.day, time.month,
                      time.year % 100);
    }
    std::string sentence = text;
    unsigned sum = 0;
    for (const char c : sentence.substr(1)) {
        sum ^= static_cast<unsigned char>(c);
    }
    std::snprintf(text, sizeof text, "*%02X", sum);
    sentence += text;
    for (char& c : sentence) {
        c = static_cast<char>(c + shift);
    }
    return sentence;
}

std::string ligoLine(const DriveSecond& second) {
    const auto time = telemetry::civilFromMilliseconds(second.time * 1000);
    char text[160];
    std::snprintf(text, sizeof text,
                  "%04d/%02d/%02d %02d:%02d:%02d %c:%.6f %c:%.6f %.2f km/h x:%+.3f y:%+.3f "
                  "z:%+.3f A:%.2f H:%.1f",
                  time.year, time.month, time.day, time.hour, time.minute,
                  static_cast<int>(time.second), north(second),
                  second.fix ? std::abs(second.latitude) : 0, east(second),
                  second.fix ? std::abs(second.longitude) : 0, second.speed, second.right,
                  second.forwards, second.up, second.heading, second.altitude);
    return text;
}

std::string enciphered(const DriveSecond& second) {
    const auto time = telemetry::civilFromMilliseconds(second.time * 1000);
    std::string text(311, '\0');
    const auto put = [&](std::size_t at, const std::string& part) {
        text.replace(at, part.size(), part);
    };
    char part[64];
    std::snprintf(part, sizeof part, "%04d%02d%02d%02d%02d%02d", time.year, time.month, time.day,
                  time.hour, time.minute, static_cast<int>(time.second));
    put(8, part);
    if (second.fix) {
        std::snprintf(part, sizeof part, "%c%08ld%c%09ld%+05d%03ld", north(second),
                      whole(latitudeMinutes(second) * 1e4), east(second),
                      whole(longitudeMinutes(second) * 1e4), static_cast<int>(second.altitude),
                      whole(second.speed));
        put(38, part);
    }
    std::snprintf(part, sizeof part, "%+04ld%+04ld%+04ld", whole(second.right * 100),
                  whole(second.forwards * 100), whole(second.up * 100));
    put(65, part);
    for (char& c : text) {
        c = static_cast<char>(static_cast<unsigned char>(c) ^ 0xaaU);
    }
    return text;
}

ByteVector blockAround(std::size_t at, const ByteVector& body) {
    ByteWriter out;
    out.u32be(0x4000).text("freeGPS ").u32le(0x1f0).padTo(at).append(body);
    return out.padTo(0x4000).take();
}

ByteWriter& time3(ByteWriter& out, const DriveSecond& second) {
    const auto time = telemetry::civilFromMilliseconds(second.time * 1000);
    return out.i32le(time.hour).i32le(time.minute).i32le(static_cast<std::int64_t>(time.second));
}

ByteWriter& date3(ByteWriter& out, const DriveSecond& second) {
    const auto time = telemetry::civilFromMilliseconds(second.time * 1000);
    return out.i32le(time.year - 2000).i32le(time.month).i32le(time.day);
}

ByteWriter& acceleration3(ByteWriter& out, const DriveSecond& second, double countsPerG) {
    return out.i32le(whole(second.right * countsPerG))
        .i32le(whole(second.forwards * countsPerG))
        .i32le(whole(second.up * countsPerG));
}

} // namespace making

} // namespace velmorant::recordings
