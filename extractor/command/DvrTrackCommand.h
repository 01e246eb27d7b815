// dvr-track: the data of recordings for people. See DvrTrackOptions.cpp for its help.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace velmorant::telemetry {

enum class Terminal { no, yes }; // whether the error output is one

// Returns the exit code: 0 all have telemetry, 1 one has none or is unusable, 2 wrong use, 3 one
// cannot be read or the output cannot be written.
int runDvrTrack(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& errors,
                Terminal terminal);

} // namespace velmorant::telemetry
