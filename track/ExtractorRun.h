#pragma once

#include "ports/FileSystem.h"
#include "ports/HostPaths.h"
#include "ports/Shell.h"
#include "ports/Waits.h"
#include "track/TrackFileReader.h"
#include "track/TrackReason.h"

#include <functional>
#include <string>

namespace velmorant {

/// What a run of the extractor works with; everything outlives it.
struct ExtractorRunNeeds {
    Waits& waits;
    FileSystem& files;
    HostPaths& paths;
    Shell& shell;
    TrackFileReader& reader;
    std::function<bool()> cancelled; ///< asked while it waits
};

/// Runs the extractor on one recording and loads the track file that it leaves.
///
/// The file belongs to this user alone and goes as soon as it was read. An extractor that fails is
/// known by its end, one that hangs by the time it takes.
class ExtractorRun {
  public:
    enum class Outcome {
        Loaded,     ///< the reader has the track file
        NotStarted, ///< the shell says why
        TimedOut,
        Cancelled,
        Failed ///< for the reason beside it
    };
    struct Result {
        Outcome outcome;
        TrackReason reason; ///< of Failed
    };

    explicit ExtractorRun(ExtractorRunNeeds needs);

    /// Never throws StepError. No extractor runs any more when it returns anything but Loaded.
    [[nodiscard]] Result run(const std::string& recording);

  private:
    void prepare();
    void clear();
    Result waitForTrackFile(const std::string& recording);
    bool complete(const std::string& recording);

    ExtractorRunNeeds m_needs;
    std::string m_trackFile;
};

} // namespace velmorant
