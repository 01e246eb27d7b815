#pragma once

#include "ports/FileSystem.h"
#include "ports/HostPaths.h"
#include "ports/StatusLine.h"
#include "ports/Texts.h"
#include "ports/Timer.h"
#include "ports/Waits.h"
#include "recordings/ProgramState.h"
#include "recordings/RecordingList.h"
#include "recordings/RowStart.h"

#include <functional>
#include <optional>
#include <string>

namespace velmorant {

struct PlayQueueNeeds {
    RecordingList& list;
    ProgramState& state;
    const FileSystem& files;
    const HostPaths& paths;
    const Texts& texts;
    StatusLine& status;
    Waits& waits;
    Timer& tContinue;
    std::function<void()> drawChart; ///< of the track that has become the current one
    std::function<void(const std::string& path)> playRecording; ///< frmChild::playRecording
};

/// The marked rows as a queue: starts a row, and finds the row that follows when one ends.
class PlayQueue {
  public:
    /// Sets the timer up: 100 ms, disabled.
    explicit PlayQueue(PlayQueueNeeds needs);

    /// Starts the row about 100 ms later, out of the present handler. A later request replaces an
    /// earlier one that has not yet started.
    void RequestPlay(int index);

    /// The one routine that starts a row: its track becomes the current one, the chart is filled,
    /// the player plays, the row is the playing one. Ends a pending request.
    [[nodiscard]] RowStart PlayEntry(int index);

    /// The marked row that follows the playing one: rows behind it first, then from the top up to
    /// and including it. Absent when no row is marked.
    std::optional<int> NextMarked() const;

    /// The player has reached the end of a recording: requests the next marked row, if any.
    void MediaEnded();

    /// The player cannot play the playing row's recording: the row is unmarked, the reason becomes
    /// its tool tip, the status line shows it, and the next marked row is requested.
    void PlaybackFailed(const std::string& reason);

    bool requestPending() const { return m_needs.tContinue.enabled(); }
    int requestedIndex() const { return m_requested; } ///< the tag of tContinue
    /// Points a pending request at its recording's new row; 0 drops the request.
    void moveRequest(int newIndex);

  private:
    std::optional<int> firstMarked(int from, int to) const;
    void start(int index, std::shared_ptr<clsDot> track);
    void say(const std::string& textName, int index);

    PlayQueueNeeds m_needs;
    int m_requested = 0;
};

} // namespace velmorant
