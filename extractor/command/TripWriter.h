// Writes recordings in one of the export formats: all into one output, or each trip into a file of
// its own in a folder.
#pragma once

#include <memory>
#include <optional>
#include <set>
#include <string>

#include "extractor/command/DvrTrackOptions.h"
#include "extractor/command/OutputFile.h"
#include "telemetry/CameraNames.h"

namespace velmorant::telemetry {

class TripWriter {
  public:
    // The options must live as long.
    TripWriter(const DvrTrackOptions& options, UnfinishedFiles& unfinished, std::ostream& standard);

    // A recording joins the trip that is being written where it follows it closely. Returns what
    // could not be written and why; nothing may be called then but the destructor.
    [[nodiscard]] std::optional<std::string> recording(const std::string& path,
                                                       const Telemetry& telemetry);
    [[nodiscard]] std::optional<std::string> finish();

  private:
    bool follows(const std::string& path, const Telemetry& telemetry) const;
    std::optional<std::string> openExporter(const std::string& trip);
    std::optional<std::string> closeExporter();
    std::optional<std::string> beginTrip(const std::string& path);
    std::optional<std::string> endTrip();
    std::string freeName(const std::string& trip);
    std::string failure(const std::string& reason) const;

    const DvrTrackOptions& options_;
    OutputFile output_;
    bool perTrip_;
    std::string path_; // of what is being written
    std::set<std::string> used_;
    std::unique_ptr<TrackExporter> exporter_;
    bool inTrip_ = false;
    std::int64_t end_ = 0; // of the trip, the second behind its last
    TimeBase base_ = TimeBase::none;
    Camera camera_ = Camera::unmarked;
};

} // namespace velmorant::telemetry
