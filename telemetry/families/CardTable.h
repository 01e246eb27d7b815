// Tables on the card beside the recordings, GPSData*.txt: a first line "$V02", then one line a
// second, separated by commas:
//   seconds since 1970, A or V, latitude, longitude, heading times 100, centimetres per second,
//   x, y, z in hundredths of a g, name of the recording
// Coordinates are decimal degrees. The lines that name this recording are taken. The seconds are
// those of the recorder's own clock, which is set to local time: the names of two real recordings
// show the same.
#pragma once

#include "telemetry/Collector.h"
#include "telemetry/Recording.h"

namespace velmorant::telemetry {

bool readCardTables(Recording& recording, Collector& collector);

} // namespace velmorant::telemetry
