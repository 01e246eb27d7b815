// Where in the recording's time bytes of the media data lie: blocks without a time of their own
// stand between samples of the picture, which have one.
#pragma once

#include <span>
#include <vector>

#include "telemetry/Recording.h"

namespace velmorant::telemetry {

// For ascending file offsets the time of the first picture sample behind each, in seconds from the
// start; the picture's end behind the last. Empty where there is no picture or its tables are
// damaged.
std::vector<double> pictureTimes(Recording& recording, std::span<const std::uint64_t> offsets);

} // namespace velmorant::telemetry
