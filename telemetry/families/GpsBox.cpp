#include "telemetry/families/GpsBox.h"

#include "telemetry/Geometry.h"
#include "telemetry/SampleTable.h"

namespace velmorant::telemetry {

namespace {

constexpr std::uint32_t recordSize = 36;

void readRecord(Bytes record, Collector& collector) {
    const char north = record.character(16);
    const char east = record.character(21);
    if ((north != 'N' && north != 'S') || (east != 'E' && east != 'W')) {
        return;
    }
    Fix fix;
    fix.mediaTime = record.u32le(8);
    fix.state = record.u32le(4) == 1 ? FixState::good : FixState::noFix;
    fix.speed = record.u32le(12) / 1000.0;
    fix.latitude = fromDegreesMinutes(record.u32le(17) / 1000.0) * (north == 'S' ? -1 : 1);
    fix.longitude = fromDegreesMinutes(record.u32le(22) / 1000.0) * (east == 'W' ? -1 : 1);
    collector.add(fix);
}

} // namespace

bool readGpsBox(Recording& recording, Collector& collector) {
    bool found = false;
    for (const Box& box : recording.boxes) {
        if (box.type != code("GPS ")) {
            continue;
        }
        found = true;
        TableWindow records(recording.input, box.payload, recordSize, box.payloadSize / recordSize);
        for (std::uint64_t i = 0; i < records.count() && !recording.input.stopped(); ++i) {
            readRecord(records.entry(i), collector);
        }
    }
    return found;
}

} // namespace velmorant::telemetry
