#pragma once

#include <string>

namespace velmorant {

/// A recording's track for another program.
struct ExportOrder {
    std::string recording; ///< full path
    std::string target;    ///< full path; replaced as a whole, once everything is there
    std::string format;    ///< "gpx", "kml" or "csv"
    std::string title;     ///< of the trip in the file
};

struct ExportState {
    enum class Stage { Running, Done, Stopped, Failed };
    Stage stage = Stage::Running;
    int percent = 0;       ///< while it runs
    std::string code;      ///< of the failure, as the extractor's; may be empty
    std::string technical; ///< the failure in plain English, with its place
};

/// Reads a recording and writes its track, off the window's thread. One at a time.
class TrackExport {
  public:
    virtual ~TrackExport() = default;
    /// Must not be called while one runs.
    virtual void start(const ExportOrder& order) = 0;
    /// The state of the most recent order.
    virtual ExportState state() const = 0;
    /// The order ends soon, as Stopped unless it was done by then, and leaves no file.
    virtual void stop() = 0;
};

} // namespace velmorant
