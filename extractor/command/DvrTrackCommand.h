// dvr-track: the data of recordings for people. See DvrTrackOptions.cpp for its help.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "extractor/command/UnfinishedFiles.h"

namespace velmorant::telemetry {

enum class Terminal { no, yes }; // whether the error output is one

// Returns the exit code: 0 all have telemetry, 1 one has none or is unusable, 2 wrong use, 3 one
// cannot be read or the output cannot be written. `unfinished` holds the files being written, for
// whoever breaks the run off.
int runDvrTrack(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& errors,
                Terminal terminal, UnfinishedFiles& unfinished);

} // namespace velmorant::telemetry
