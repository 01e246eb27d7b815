// The check of a card: one line per recording.
#pragma once

#include <ostream>
#include <string>

#include "telemetry/Samples.h"

namespace velmorant::telemetry {

enum class Health {
    good,
    wanting,   // no telemetry, no trusted position, or something is damaged
    unreadable // the system refuses to read it
};

struct CheckedRecording {
    Health health = Health::good;
    std::size_t gaps = 0;    // runs of seconds without a trusted position
    std::size_t longest = 0; // seconds of the longest
    std::string damage;      // the first thing that is wrong, empty where nothing is
};

CheckedRecording check(const Result<Telemetry>& outcome);

void writeCheckHeading(std::ostream& out);
void writeCheck(const std::string& path, const Result<Telemetry>& outcome, std::ostream& out);

} // namespace velmorant::telemetry
