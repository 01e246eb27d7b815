// Sentences that carry the recorder's milliseconds, and acceleration counted from the start:
//   lines    [MILLISECONDS SINCE 1970]$GPRMC,...   one sentence a line
//            and $GSENSORD,X,Y,Z in g with decimals between them
//   records  u32be milliseconds, three i16be at 128 to the g (derived from recordings at rest); a
//            record of ffffffff ends them
// They stand in the boxes "gps " and "3gf " of a top-level box "free", with the recording's start
// in "sttm" (u64be milliseconds, perhaps on another clock), or in files beside the recording with
// the extensions .gps (or .nmea) and .3gf. A name of one camera, ..._NF or ..._NR, belongs to the
// files ..._N of both.
#pragma once

#include "telemetry/Collector.h"
#include "telemetry/Recording.h"

namespace velmorant::telemetry {

bool readFreeBox(Recording& recording, Collector& collector);
bool readSidecars(Recording& recording, Collector& collector);

} // namespace velmorant::telemetry
