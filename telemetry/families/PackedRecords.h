// Records of doubles with the clock in single bytes, little-endian, in tracks with the sample entry
// "ssmd" and in the box "gps0" of moov/udta or of the top level:
//   32 bytes   double latitude, longitude as degrees and minutes (4294967295.0 without a fix), i32
//              altitude at 16, u16 speed at 20 (knots in "ssmd", km/h in "gps0"), year month day
//              hour minute second at 22 (year since 2000 or 1900), u8 heading halved at 28 (255:
//              none)
//   40 bytes   double latitude, longitude in degrees, u16 altitude at 16, clock at 22 (year since
//              1900), heading halved at 28; the speed's unit is not known, so it is left out. Rows
//              without a fix hold the recorder's own clock, months counted from 0.
//   12 bytes   three floats in g
// The box "gsen" beside "gps0" holds three i8 each, 16 to the g, five a second. A "gps0" whose
// bytes are enciphered text has records of 311 bytes, see EncipheredText.h.
#pragma once

#include "telemetry/Collector.h"
#include "telemetry/Recording.h"

namespace velmorant::telemetry {

bool readSsmd(Recording& recording, Collector& collector);
bool readGps0(Recording& recording, Collector& collector);

} // namespace velmorant::telemetry
