// Recordings of an hour and a gigabyte, written sparsely: only telemetry and headers take space.
#pragma once

#include <string>

namespace velmorant::recordings {

enum class LargeKind { freeGps, gpmf };

// Writes the recording and, beside it with ".ranges" appended, the list of the byte ranges that its
// telemetry and the headers that lead to it occupy.
void writeLargeRecording(LargeKind kind, const std::string& path);

} // namespace velmorant::recordings
