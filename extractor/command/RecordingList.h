// The recordings that a command line names, and the table of them.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "extractor/command/DvrTrackOptions.h"

namespace velmorant::telemetry {

// Files as they are named; folders with the recordings in them (.mp4 .m4v .mov .ts .mts .m2ts .360,
// whatever the case), sorted by name. What cannot be listed goes to `problems`.
std::vector<std::string> recordingsNamed(const std::vector<std::string>& paths, Recursion recursion,
                                         std::vector<std::string>& problems);

// Whether an existing file is a recording: its name ends as one's, whatever it holds, or its bytes
// begin as one's.
bool holdsRecording(const std::string& path);

// What the table says of one recording.
struct TableRow {
    std::string path;
    std::string family; // empty where the recording could not be used
    std::size_t samples = 0;
    std::size_t fixes = 0;
    std::string timeBase;
    std::string start; // of the first second, ISO 8601
    std::vector<std::string> problems;
};

TableRow rowOf(const std::string& path, const Result<Telemetry>& outcome);

// Writes rows as they come, with a heading first.
class RecordingTable {
  public:
    enum class Style { text, json };
    RecordingTable(Style style, std::ostream& out) : style_(style), out_(out) {}
    void begin();
    void add(const TableRow& row);
    void end();

  private:
    Style style_;
    std::ostream& out_;
    bool first_ = true;
};

} // namespace velmorant::telemetry
