// Why a recording's track is what it is: family, clock and its evidence, what is trusted and what
// not, and which boxes it was read from. For people, and as JSON for a report.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "telemetry/Samples.h"

namespace velmorant::telemetry {

// Seconds of the recording in a row that have the same state, the last one included.
struct StateRun {
    FixState state = FixState::noReading;
    std::size_t first = 0, last = 0;
};
std::vector<StateRun> stateRunsOf(const Telemetry& telemetry);

// A box without boxes inside of which something was read. Small neighbours of what was wanted come
// along, since a file is read in pieces of 4,096 bytes.
struct ReadBox {
    std::string path; // "moov/trak[2]/mdia/mdhd"
    std::uint64_t offset = 0, size = 0;
    std::uint64_t read = 0; // bytes of it
};

struct Explanation {
    std::string path;
    Result<Telemetry> outcome;
    std::uint64_t fileSize = 0;
    std::vector<ReadBox> boxes{}; // in file order; what pictures and sound alone have is left out
};

Explanation explain(const std::string& path);

void writeExplanation(const Explanation& explanation, std::ostream& out);
void writeExplanationAsJson(const Explanation& explanation, std::ostream& out);

} // namespace velmorant::telemetry
