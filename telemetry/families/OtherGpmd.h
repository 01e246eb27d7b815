// Tracks with the sample entry "gpmd" that hold no GPMF:
//   sentences   NMEA 0183 as text
//   text        enciphered, in fixed columns, see EncipheredText.h
//   "FMAS"      little-endian: u16 year at 0x60, month day hour minute second in one byte each;
//               three floats in g at 0x6c, z first; 'A' 'E'|'W' 'N'|'S' at 0x78; u8 degrees, u8
//               minutes at 0x7b, u16 6000ths of a minute at 0x7e of the longitude, the same of the
//               latitude at 0x80; u16 miles per hour at 0x84, u16 heading at 0x86
//   pairs       i64 value and i64 scale, little-endian: knots at 0x48, heading at 0x58, degrees and
//               minutes of latitude at 0xb0 and longitude at 0xc0 (negative in the south and west),
//               metres of altitude at 0xe8; u32 day month year at 0x68, hour minute second at 0xa0;
//               16 zeros as text and four capital letters at 0x88, or an address there
//   row         u32 hour minute second year month day at 0, 'A' 'N'|'S' 'E'|'W' at 0x18, two floats
//               that are the place by a rule that is not known, float knots at 0x24, heading at
//               0x28, three floats in g at 0x2c; a LIGOGPSINFO text may stand behind it and has the
//               place then
#pragma once

#include "telemetry/Collector.h"
#include "telemetry/Recording.h"

namespace velmorant::telemetry {

bool readOtherGpmd(Recording& recording, Collector& collector);

} // namespace velmorant::telemetry
