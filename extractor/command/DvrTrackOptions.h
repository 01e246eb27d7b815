// The command line of dvr-track.
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "telemetry/export/TrackExporter.h"

namespace velmorant::telemetry {

enum class Recursion { off, on };
enum class ProgressBar { whenTerminal, never };

struct DvrTrackOptions {
    std::vector<std::string> paths;
    Recursion recursion = Recursion::off;
    std::optional<ExportFormat> format; // none: the table of the files
    bool json = false;                  // the table or the explanation as JSON
    enum class Task { track, explain, check } task = Task::track; // track: list or export
    std::string output; // file or folder; empty: the standard output
    Positions positions = Positions::trusted;
    std::optional<int> joinWithin; // seconds between two recordings of one trip
    int jobs = 0;                  // 0: one per processor
    ProgressBar progress = ProgressBar::whenTerminal;
};

struct HelpWanted {};
struct VersionWanted {};
struct WrongUse {
    std::string reason;
};

using DvrTrackRequest = std::variant<DvrTrackOptions, HelpWanted, VersionWanted, WrongUse>;

DvrTrackRequest readDvrTrackOptions(const std::vector<std::string>& arguments);

extern const char dvrTrackHelp[];

} // namespace velmorant::telemetry
