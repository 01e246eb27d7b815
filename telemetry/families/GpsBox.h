// A box "GPS " at the top level with records of 36 bytes, little-endian:
//   u32 1, u32 1 with a fix, u32 seconds since the start, u32 km/h times 1000, 'N' or 'S', u32
//   degrees and minutes times 1000, 'E' or 'W', u32 the same, 10 bytes unused
// Slots without a letter are empty. No clock: times count from the recording's creation.
#pragma once

#include "telemetry/Collector.h"
#include "telemetry/Recording.h"

namespace velmorant::telemetry {

bool readGpsBox(Recording& recording, Collector& collector);

} // namespace velmorant::telemetry
