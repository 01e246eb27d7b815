// Where the readings of a source stand on the recording's seconds that writes about one a second
// and gives each no more than a reading of its own clock.
//
// A recorder's clock leaps, stumbles and stands still, and blocks are lost or written twice, so no
// reading decides for another. Readings whose clock goes on as they do form a run and keep
// together; each run stands where the container has most of its readings. Without places in the
// container the readings are counted: the clock may then leave out as many seconds as the recording
// has more seconds than readings, and whatever more it leaps was a leap of the clock alone.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "telemetry/Samples.h"

namespace velmorant::telemetry {

struct ClockedReading {
    std::int64_t clock = noTime; // milliseconds; noTime where it is not to be trusted
    double container = unknown;  // seconds of the recording at which it was written
    bool repeats = false;        // the same reading as the one before it, written again
};

// True where the clock alone leaves no doubt: no container needs to be asked. `seconds` is the
// recording's length, 0 for unknown.
bool clockTellsAll(std::span<const ClockedReading> readings, std::size_t seconds);

// Seconds from the recording's start for each reading, negative for the tail of the recording
// before it. Readings of clocks that tell fractions keep them.
std::vector<double> timeLine(std::span<const ClockedReading> readings, std::size_t seconds);

// A few readings more than seconds are the previous recording's tail; far more say that the length
// in the header is wrong.
bool farMore(std::size_t readings, std::size_t seconds);

} // namespace velmorant::telemetry
