// A rear recording without a track of its own takes that of its front: the recording of the same
// moment whose name pairs with its own (telemetry/CameraNames.h lists how) and whose start is no
// more than two seconds away, by the times in both names or else by both creation times. A notice
// names the front.
#pragma once

#include "telemetry/Collector.h"
#include "telemetry/Recording.h"

namespace velmorant::telemetry {

bool readFrontTrack(Recording& recording, Collector& collector);

} // namespace velmorant::telemetry
