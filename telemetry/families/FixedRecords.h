// Tracks whose samples are one record of a fixed shape, little-endian. Each is known from one
// decoder alone, so a notice says that no second opinion stands behind it.
//   "RVMI"  sample entry; "gReV" i32 latitude, i32 longitude in degrees times 1e6 at 4, i16 km/h
//           times 10 at 12, u16 heading halved at 14; no clock. "sReV" three i16 at 4, 1000 to the
//           g
//   "tvxt"  handler or sample entry (or sample entry "mp4s"), samples of 72 bytes: three floats in
//   g
//           at 40, float knots at 52, float latitude and longitude in degrees and minutes at 56
//           (negative in the south and west), u32 seconds since 1970 at 64; no fix: 0 and 0
#pragma once

#include "telemetry/Collector.h"
#include "telemetry/Recording.h"

namespace velmorant::telemetry {

bool readFixedRecords(Recording& recording, Collector& collector);

} // namespace velmorant::telemetry
