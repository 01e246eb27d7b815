#pragma once

#include "ports/Clock.h"
#include "ports/FileSystem.h"
#include "ports/HostPaths.h"
#include "ports/MapPage.h"
#include "ports/MessageBox.h"
#include "ports/ProgressWindow.h"
#include "ports/Shell.h"
#include "ports/StatusLine.h"
#include "ports/Texts.h"
#include "ports/Timer.h"
#include "ports/Waits.h"
#include "ports/XmlDocument.h"
#include "recordings/ProgramState.h"
#include "recordings/RecordingList.h"
#include "track/BatchProgress.h"
#include "track/ExtractorRun.h"
#include "track/RouteDrawing.h"
#include "track/TrackFileReader.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmorant {

/// What track extraction works with; everything outlives it.
struct SendDataNeeds {
    Timer& tStart;
    const Clock& clock;
    ProgressWindow& window;
    Waits& waits;
    FileSystem& files;
    HostPaths& paths;
    Shell& shell;
    XmlDocument& document;
    MessageBox& messages;
    Texts& texts;
    StatusLine& status;
    RecordingList& list;
    MapPage& page;
    ProgramState& state;
    /// Removes the rows whose file is flagged missing, with all that names them.
    std::function<void()> removeMissingRows;
};

/// Extracts tracks: runs the extractor on recordings of the list, waits for its track file, reads
/// it into a track, and streams the route to the map page. Shows a small modal progress window
/// whose "Cancel" ends the run after the current step.
class frmSendData {
  public:
    explicit frmSendData(SendDataNeeds needs);

    /// One run; returns when its window has closed. The tag "One" (in any case) extracts the
    /// list's selected recording, any other one every marked recording. A call during a run does
    /// nothing.
    void ShowModal(const std::string& tag);

    /// Streams a loaded track to the map page once more. Leaves the track's cursor at its last
    /// dot. Does nothing for a number without a track.
    void SendLoadedTrack(std::int32_t recordingNumber);

    /// The same for several, one after the other; see RouteDrawing::draw().
    [[nodiscard]] std::size_t SendLoadedTracks(const std::vector<std::int32_t>& recordingNumbers);

  private:
    enum class Mode { One, Batch };
    /// How much of a run an extraction allows to follow.
    enum class Next { GoOn, EndRun };
    struct Failure {
        std::string file;
        std::string words;
    };

    void tick();
    void runBatch();
    void runMarkedRows();
    int markedRows() const;
    Next extract(int row, Mode mode);
    void showNotStarted();
    void takeTrackFile(int row, Mode mode);
    void streamTrack(const clsDot& track, std::int32_t number, Mode mode);
    void showTimeOut(int row);
    void noteFailure(int row, TrackReason reason);
    void noteReason(int row, TrackReason reason);
    void showFailures();
    std::string fileName(int row) const;
    bool hurried() const { return m_cancelled; }

    SendDataNeeds m_needs;
    TrackFileReader m_reader;
    ExtractorRun m_extractor;
    RouteDrawing m_drawing;
    Mode m_mode = Mode::One;
    bool m_running = false;
    bool m_cancelled = false;
    std::vector<Failure> m_failures;
    int m_timedOut = 0;
    std::optional<BatchProgress> m_batch; ///< of the run over several recordings
};

} // namespace velmorant
