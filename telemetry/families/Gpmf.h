// GPMF: key-length-value records in the samples of a track with the sample entry "gpmd".
//
//   record  = key:4cc type:u8 structSize:u8 repeat:u16be data[structSize * repeat, padded to 4]
//   payload = DEVC(... STRM(... SCAL? TYPE? data) ...)*       type 0 holds further records
//   Values are big-endian; the letters of the types are B b S s L l F f d J j U c and '?', which
//   stands for the structure that TYPE spells out.
//   GPS5  latitude longitude altitude speed2D speed3D           degrees, metres, metres per second
//   GPS9  as GPS5, then days since 2000, seconds since midnight, dilution, fix (0, 2 or 3)
//   GPRI  time latitude longitude altitude accuracy2 speed heading fix satellites
//   GLPI  time latitude longitude altitude altitude2 speedNorth speedEast speedDown heading
//   SYST  the clock of GPRI and GLPI, UTC in seconds             GPSU  UTC as yymmddhhmmss.sss
//   GPSF  fix of the GPS5 rows (0, 2 or 3)                       GPSP  dilution times 100
//   ACCL  three accelerations, metres per second squared; ORIN spells their axes, a small letter
//         for a reversed one. Without ORIN the model decides.
// Each value is divided by its SCAL. The rows of a record are spread evenly over the sample's time.
#pragma once

#include "telemetry/Collector.h"
#include "telemetry/Recording.h"

namespace velmorant::telemetry {

bool readGpmf(Recording& recording, Collector& collector);

} // namespace velmorant::telemetry
