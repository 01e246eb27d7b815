// Text behind the marker "LIGOGPSINFO", in records of 0x84 bytes that start with a u32 counter:
//   YYYY/MM/DD hh:mm:ss N:LATITUDE E:LONGITUDE SPEED km/h x:G y:G z:G A:HEADING H:ALTITUDE
// N or S, E or W; decimal degrees; the parts behind the speed may be missing. The marker stands in
// a box "skip" (top level or moov/udta), in freeGPS blocks at 0x10, 0x30 or 0x50, in samples of
// "ssmd" tracks, or in a trailer whose last 8 bytes are "&&&&" and its length, u32le, or which
// "****" opens and "####" and its length, u32be, end.
//   head = "LIGOGPSINFO" 0 kind:u32be count:u32le, records behind it
// Records may be enciphered, see LigoCipher.h. Of those the speeds are knots, and unless the kind
// is 1 or 20 the places are shifted on purpose and the speeds made a little smaller; places of
// three digits before the point are degrees and minutes in one number. Records whose letters and
// digits are exchanged for others ("####" as well) are not read.
#pragma once

#include "telemetry/Collector.h"
#include "telemetry/Recording.h"

namespace velmorant::telemetry {

bool readLigo(Recording& recording, Collector& collector);

// The records of one such text; false where it holds none. What is not certain about them is noted.
bool readLigoText(Input& input, Bytes text, Collector& collector);
// Plain records alone, whatever stands in front of them.
bool readPlainLigo(Bytes text, Collector& collector);
// A plain record up to its speed: none that a packet's end cuts before.
bool holdsPlainLigo(Bytes text);

} // namespace velmorant::telemetry
