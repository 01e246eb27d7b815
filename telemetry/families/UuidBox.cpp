#include "telemetry/families/UuidBox.h"

#include "telemetry/Geometry.h"
#include "telemetry/SampleTable.h"
#include "telemetry/UtcTime.h"

namespace velmorant::telemetry {

namespace {

constexpr std::string_view identity{
    "\x9b\x63\x0f\x8d\x63\x74\x40\xec\x82\x04\xbc\x5f\xf5\x09\x17\x28", 16};
constexpr std::uint64_t headerSize = 33; // the identity and what follows it
constexpr std::uint32_t recordSize = 20;

void readRecord(Bytes record, Collector& collector) {
    constexpr std::int32_t none = INT32_MIN;
    constexpr double degreesPerStep = 180.0 / 2147483648.0;
    Fix fix;
    const std::int32_t latitude = record.i32be(12);
    const std::int32_t longitude = record.i32be(16);
    fix.state = latitude == none || longitude == none ? FixState::noFix : FixState::good;
    fix.latitude = latitude * degreesPerStep;
    fix.longitude = longitude * degreesPerStep;
    fix.speed = record.u16be(4) * kmhPerMile;
    const std::int64_t time = static_cast<std::int64_t>(record.u32be(0)) - secondsFrom1904To1970;
    if (time > 0) {
        fix.time = time * 1000;
        fix.base = TimeBase::utc;
    }
    collector.add(fix);
}

} // namespace

bool readUuidBox(Recording& recording, Collector& collector) {
    for (const Box& box : recording.boxes) {
        if (box.type != code("uuid") || box.payloadSize < headerSize ||
            !recording.input.peek(box.payload, 16).holds(0, identity)) {
            continue;
        }
        TableWindow records(recording.input, box.payload + headerSize, recordSize,
                            (box.payloadSize - headerSize) / recordSize);
        for (std::uint64_t i = 0; i < records.count() && !recording.input.stopped(); ++i) {
            readRecord(records.entry(i), collector);
        }
        return true;
    }
    return false;
}

} // namespace velmorant::telemetry
