// A box "uuid" 9b630f8d-6374-40ec-8204-bc5ff5091728 at the top level; behind 17 bytes of header,
// records of 20 bytes, big-endian: u32 seconds since 1904, u16 miles per hour at 4, i32 latitude at
// 12, i32 longitude at 16 in 2^31 to 180 degrees, 0x80000000 without a fix. Some recorders write
// the whole twice, in UTC and on their own clock; the first is taken.
#pragma once

#include "telemetry/Collector.h"
#include "telemetry/Recording.h"

namespace velmorant::telemetry {

bool readUuidBox(Recording& recording, Collector& collector);

} // namespace velmorant::telemetry
