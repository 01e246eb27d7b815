// The extractor's command line: Parse PATH
//
// Writes the track file "output.kml" of the recording PATH into the working folder (workingFolder);
// a path that arrives in several arguments is joined by single blanks. It ends within 20 seconds
// with what it has read by then. Exit codes:
//   0  the track file holds the recording's samples
//   1  the recording cannot be used: the track file holds the reason, the error output one line
//   2  wrong use
//   3  the recording cannot be read, or the track file cannot be written
// A line of the error output is "Parse: TEXT"; with the reason of a failure "Parse: [CODE] TEXT",
// CODE as in the track file.
#pragma once

#include <string>
#include <vector>

#include "common/userFolders.h"

namespace velmorant::telemetry {

// What belongs on the error output is appended to `errors`, one line each: setting up the standard
// streams would take a part of the time that a recording takes.
int runParse(const std::vector<std::string>& arguments, const EnvironmentLookup& environment,
             std::string& errors);

} // namespace velmorant::telemetry
