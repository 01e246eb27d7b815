// Blocks named "free" and "GPS " in the media data, one per second, found through an index.
//
//   index = box "gps " in moov: version:u32be count:u32be (offset:u32be size:u32be)*
//           offsets count from the file's start
//   block = size:u32be "free" "GPS " length:u32le body            (0x4000 or 0x8000 bytes long)
//
// Two layouts of the body, offsets from the block's start, little-endian, positions as degrees and
// minutes in one number, speed in knots:
//   with acceleration     0x10 hour minute second year-2000 month day, u32 each; 0x28 'A' or 'V';
//                         0x29 'N' or 'S'; 0x2a 'E' or 'W'; 0x2c latitude longitude speed heading,
//                         float each; 0x3c acceleration x y z, i32 each, 256 to the g (all zero, or
//                         the u16 row 1 2 3 4 5 6: not fitted)
//   without acceleration  the same six numbers at 0x30, the letters from 0x48 on, the floats at
//   0x4c
#pragma once

#include "telemetry/Collector.h"
#include "telemetry/Recording.h"

namespace velmorant::telemetry {

bool readFreeGps(Recording& recording, Collector& collector);

} // namespace velmorant::telemetry
