// Which positions are to be believed, and what stands in for those that are not.
#pragma once

#include <vector>

#include "telemetry/Samples.h"

namespace velmorant::telemetry {

// Takes the trust from good fixes that no drive explains, by setting their state:
//   jump         off the recording's longest believable chain of positions, where a step between
//   two
//                positions is believable up to 90 m/s (324 km/h) and 50 m of scatter
//   stale        the same, before that chain begins
//   parkedDrift  the third and further seconds at one place (within 1 m) with 20 km/h and more
void markFalsePositions(std::vector<Sample>& samples);

// Fills latitude, longitude, speed and heading from the raw values: good fixes keep theirs, speed
// and heading come from the positions where the source has none, the others hold the last good
// position (before the first: the first) at speed 0.
void completeSamples(std::vector<Sample>& samples);

} // namespace velmorant::telemetry
