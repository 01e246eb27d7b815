// Calls a reader for each sample of the tracks that hold telemetry.
#pragma once

#include <functional>

#include "telemetry/Recording.h"
#include "telemetry/SampleTable.h"

namespace velmorant::telemetry {

using SampleReader = std::function<void(const SampleLocation& where, Bytes sample)>;

// The track's samples of 1 to `longest` bytes in order, each read into one buffer; samples that lie
// next to each other come from one read. What is wrong with the tables is noted with the input.
void readSamples(Input& input, const MediaTrack& track, std::size_t longest,
                 const SampleReader& reader);

} // namespace velmorant::telemetry
