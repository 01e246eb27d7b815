// Tracks that something else than the recorder has written beside the recording:
//   .gpx  GPX 1.0 or 1.1: <trkpt lat="" lon=""> with <time>, <ele>, and <speed> (metres per second)
//         and <course> where they stand, under any prefix. Times with "Z" or an offset are UTC,
//         others are a recorder's clock; points without a time are passed over
//   .srt  subtitles, "hh:mm:ss,mmm --> hh:mm:ss,mmm" and lines behind it, with a sentence RMC, or
//         "latitude: N" and "longitude: N" (also lat, lon, lng, with ":" or "=") and perhaps
//         "N km/h" and "YYYY-MM-DD hh:mm:ss" (the recorder's clock). Texts "GPS(N, N, ...)" are
//         not read: their order differs from maker to maker
// A file of the recording's name belongs to it. Any other belongs to it where its times lie in the
// recording's span for at least half of it, the span being told by the creation time as start or as
// end, or, for times on the recorder's clock, by the time in the name. A notice names the file and
// says how well it fits.
#pragma once

#include "telemetry/Collector.h"
#include "telemetry/Recording.h"

namespace velmorant::telemetry {

bool readTrackFiles(Recording& recording, Collector& collector);

} // namespace velmorant::telemetry
