#pragma once

#include "ports/FileDialogs.h"
#include "ports/HostPaths.h"
#include "ports/MessageBox.h"
#include "ports/ProgressWindow.h"
#include "ports/StatusLine.h"
#include "ports/Texts.h"
#include "ports/TrackExport.h"
#include "ports/Waits.h"

#include <array>
#include <string>

namespace velmorant {

/// What the export of a track works with; everything outlives it.
struct TrackExportRunNeeds {
    FileDialogs& dialogs;
    TrackExport& exporter;
    ProgressWindow& window;
    Waits& waits;
    HostPaths& paths;
    MessageBox& messages;
    Texts& texts;
    StatusLine& status;
};

/// The command "Export track": asks for a name, writes the track behind the progress window, and
/// says where it is or why there is none.
class TrackExportRun {
  public:
    /// The formats, in the order in which they are offered.
    static constexpr std::array formats = {"gpx", "kml", "csv"};

    explicit TrackExportRun(const TrackExportRunNeeds& needs) : m_needs(needs) {}

    /// Returns when the window has closed. An unknown format does nothing.
    void run(const std::string& recording, const std::string& format);

  private:
    std::string chosenTarget(const std::string& name, const std::string& format);
    void follow();
    void tell(const std::string& name, const std::string& target);

    TrackExportRunNeeds m_needs;
    bool m_cancelled = false;
};

} // namespace velmorant
