#include "telemetry/families/PackedRecords.h"

#include <algorithm>

#include "telemetry/Geometry.h"
#include "telemetry/MetadataTrack.h"
#include "telemetry/UtcTime.h"
#include "telemetry/families/EncipheredText.h"
#include "telemetry/families/LigoText.h"

namespace velmorant::telemetry {

namespace {

constexpr double withoutFix = 4294967295.0;

// Year (since 2000, or since 1900 from 80 on), month, day, hour, minute and second in one byte
// each.
void setTime(Bytes record, std::size_t at, Fix& fix) {
    CivilTime time;
    time.year = record.u8(at) < 80 ? 2000 + record.u8(at) : 1900 + record.u8(at);
    time.month = record.u8(at + 1);
    time.day = record.u8(at + 2);
    time.hour = record.u8(at + 3);
    time.minute = record.u8(at + 4);
    time.second = record.u8(at + 5);
    if (fix.state == FixState::good) {
        if (const auto milliseconds = toMilliseconds(time)) {
            fix.time = *milliseconds;
            fix.base = TimeBase::utc;
        } else {
            fix.state = FixState::badDate;
        }
    }
}

void setPlace(Bytes record, Fix& fix) {
    fix.latitude = record.f64le(0);
    fix.longitude = record.f64le(8);
    if (fix.latitude == withoutFix || fix.longitude == withoutFix) {
        fix.state = FixState::noFix;
    }
}

double headingOf(Bytes record) {
    constexpr std::uint8_t none = 0xff;
    return record.u8(28) == none ? unknown : record.u8(28) * 2.0;
}

Fix read32(Bytes record, double speedUnit) {
    Fix fix;
    setPlace(record, fix);
    fix.latitude = fromDegreesMinutes(fix.latitude);
    fix.longitude = fromDegreesMinutes(fix.longitude);
    fix.altitude = record.i32le(16);
    fix.speed = record.u16le(20) * speedUnit;
    fix.heading = headingOf(record);
    setTime(record, 22, fix);
    return fix;
}

Fix read40(Bytes record) {
    Fix fix;
    setPlace(record, fix);
    judge(fix);
    fix.altitude = record.u16le(16);
    fix.heading = headingOf(record);
    setTime(record, 22, fix);
    return fix;
}

void readSsmdSample(Input& input, const SampleLocation& where, Bytes sample, Collector& collector) {
    if (sample.size() == 12) {
        collector.add(where.time,
                      {static_cast<double>(sample.f32le(0)), static_cast<double>(sample.f32le(4)),
                       static_cast<double>(sample.f32le(8))});
    } else if (sample.size() == 32 || sample.size() == 40) {
        Fix fix = sample.size() == 32 ? read32(sample, kmhPerKnot) : read40(sample);
        fix.mediaTime = where.time;
        collector.add(fix);
    } else if (sample.text(0, 4) == "SKIP" || sample.text(0, 64).find("LIGOGPSINFO") != SIZE_MAX) {
        collector.comesAt(where.time);
        readLigoText(input, sample, collector);
    }
}

void readGps0Box(Bytes content, Collector& collector) {
    constexpr std::size_t textRecord = 311;
    if (content.u32be(2) == 0xf2e1f0ee || content.u16be(4) == 0xaaaa) {
        for (std::size_t at = 0; content.has(at, textRecord); at += textRecord) {
            if (const auto reading = readEncipheredText(content.from(at, textRecord))) {
                collector.add(reading->fix);
                for (const Acceleration& acceleration : reading->accelerations) {
                    collector.addToLast(acceleration);
                }
            }
        }
        return;
    }
    for (std::size_t at = 0; content.has(at, 32); at += 32) {
        collector.add(read32(content.from(at, 32), 1));
    }
}

void readGsenBox(Bytes content, Collector& collector) {
    constexpr double perSecond = 5;
    constexpr double countsPerG = 16;
    for (std::size_t i = 0; content.has(3 * i, 3); ++i) {
        if (content.i8(3 * i) == -1 && content.i8(3 * i + 1) == -1 && content.i8(3 * i + 2) == -1) {
            continue; // 255 on every axis stands for nothing
        }
        collector.add(static_cast<double>(i) / perSecond,
                      {content.i8(3 * i) / countsPerG, content.i8(3 * i + 1) / countsPerG,
                       content.i8(3 * i + 2) / countsPerG});
    }
}

} // namespace

bool readSsmd(Recording& recording, Collector& collector) {
    bool found = false;
    if (recording.movie) {
        for (const MediaTrack& track : recording.movie->tracks) {
            if (track.format == code("ssmd")) {
                found = true;
                readSamples(recording.input, track, 65536,
                            [&](const SampleLocation& where, Bytes sample) {
                                readSsmdSample(recording.input, where, sample, collector);
                            });
            }
        }
    }
    return found;
}

bool readGps0(Recording& recording, Collector& collector) {
    constexpr std::size_t longestBox = 2 << 20; // an hour at 311 bytes a second and more
    bool found = false;
    // In moov/udta, or behind moov on the top level.
    std::vector<Box> boxes = recording.boxes;
    if (recording.movie) {
        boxes.insert(boxes.end(), recording.movie->userData.begin(),
                     recording.movie->userData.end());
    }
    for (const Box& box : boxes) {
        if (box.type != code("gps0") && box.type != code("gsen")) {
            continue;
        }
        const auto content = recording.input.read(box.payload, box.payloadSize, longestBox);
        const Bytes bytes{std::span<const std::uint8_t>(content)};
        if (box.type == code("gps0")) {
            found = true;
            readGps0Box(bytes, collector);
        } else {
            readGsenBox(bytes, collector);
        }
    }
    return found;
}

} // namespace velmorant::telemetry
