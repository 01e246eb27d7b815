// Blocks named "free" and "GPS " in the media data, one per second as a rule.
//
//   index = box "gps " in moov: version:u32be count:u32be (offset:u32be size:u32be)*
//           offsets count from the file's start
//   block = size:u32be "free" "GPS " length:u32le body      (0x4000 or 0x8000 bytes long as a rule)
//
// FreeGpsLayouts.h lists the layouts of the body. Where the index is missing or names far fewer
// blocks than the recording has seconds, the media data is searched for them.
#pragma once

#include "telemetry/Collector.h"
#include "telemetry/Recording.h"

namespace velmorant::telemetry {

bool readFreeGps(Recording& recording, Collector& collector);   // through the index
bool searchFreeGps(Recording& recording, Collector& collector); // without one

} // namespace velmorant::telemetry
