// Camera motion metadata: tracks with the sample entry "camm". A sample holds one packet or
// several:
//   packet = reserved:u16 type:u16le body, little-endian; lengths of the bodies by type:
//            0: 12   1: 8   2: 12   3: 12   4: 12   5: 24   6: 56   7: 12
//   type 3   three floats, metres per second squared
//   type 5   double latitude, longitude, altitude
//   type 6   double seconds of GPS time, u32 fix (0, 2, 3), double latitude, longitude, float
//            altitude, accuracies across and up, speeds east, north, up, speed accuracy
// GPS time counts from 1980-01-06 and is ahead of UTC by the leap seconds since then (18 from 2017
// on). Some writers put seconds since 1970 there: the reading nearer to the recording's creation is
// taken.
#pragma once

#include "telemetry/Collector.h"
#include "telemetry/Recording.h"

namespace velmorant::telemetry {

bool readCamm(Recording& recording, Collector& collector);

} // namespace velmorant::telemetry
