// Which positions are to be believed, and what stands in for those that are not.
#pragma once

#include <vector>

#include "telemetry/Samples.h"

namespace velmorant::telemetry {

// Takes the trust from good fixes that no drive explains, by setting their state:
//   parkedDrift  a place that stays (within 1 m) while the recorded speed makes more than 5 m of
//   way jump         off the recording's weightiest chain of positions. A step between two
//   positions is
//                believable up to 90 m/s (324 km/h) and 30 m of scatter; steps that agree with the
//                recorded speed weigh most, places that stand still hardly anything.
//   stale        the same, before that chain begins
//   frozen       a place that stood still until a step betrays it that the time since it was new
//                explains, the last second alone does not
void markFalsePositions(std::vector<Sample>& samples);

// Fills latitude, longitude, speed and heading from the raw values: good fixes keep theirs, speed
// and heading come from the positions where the source has none, the others hold the last good
// position (before the first: the first) at speed 0.
void completeSamples(std::vector<Sample>& samples);

} // namespace velmorant::telemetry
