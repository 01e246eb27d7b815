// MPEG transport streams: packets of 188 bytes (or 192 with four bytes in front) that start with
// 0x47, telemetry in packets of the private streams 0x0300, 0x01e4, 0x0e1a and 0x0e1b (and, of the
// last kind below alone, 0x0102). The picture's time stamps tell where a record stands. Behind the
// packet's header and, where there is one, the header of its elementary stream (00 00 01), stands:
//   hour minute second year-2000 month day, u32le each, and the row of the freeGPS layout with
//   letters (in front of it there may be 164 bytes), or
//   rows of 32 bytes: status and hemispheres as letters, 0, float latitude longitude knots heading,
//   then 12 bytes of acceleration in unknown units, which are left out, or
//   $GPSINFO,flags,YYYY.MM.DD hh:mm:ss,latitude,longitude,km/h,altitude?,heading,... and
//   $GSNRINFO,x,y,z in g; latitude and longitude in degrees and minutes, or
//   LIGOGPSINFO text, see LigoText.h, its record perhaps in the packet behind the marker's.
// There is no index: the whole file is read.
#pragma once

#include "telemetry/Collector.h"
#include "telemetry/Recording.h"

namespace velmorant::telemetry {

bool isTransportStream(Input& input);
bool readTransportStream(Recording& recording, Collector& collector);

} // namespace velmorant::telemetry
