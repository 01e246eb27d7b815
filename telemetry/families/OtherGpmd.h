// Tracks with the sample entry "gpmd" that hold no GPMF:
//   sentences   NMEA 0183 as text
//   "FMAS"      little-endian: u16 year at 0x60, month day hour minute second in one byte each;
//   three
//               floats in g at 0x6c, z first; 'A' 'E'|'W' 'N'|'S' at 0x78; u8 degrees, u8 minutes
//               at 0x7b, u16 6000ths of a minute at 0x7e of the longitude, the same of the latitude
//               at 0x80; u16 miles per hour at 0x84, u16 heading at 0x86
#pragma once

#include "telemetry/Collector.h"
#include "telemetry/Recording.h"

namespace velmorant::telemetry {

bool readOtherGpmd(Recording& recording, Collector& collector);

} // namespace velmorant::telemetry
