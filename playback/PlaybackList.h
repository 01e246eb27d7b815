#pragma once

#include "recordings/RowStart.h"

#include <string>

namespace velmorant {

/// What the player window and the control bar need of the recording list. Rows are 1-based.
class PlaybackList {
  public:
    virtual ~PlaybackList() = default;
    virtual int count() const = 0;
    virtual int playingIndex() const = 0; ///< the list's tag; 0: none
    virtual bool isMarked(int row) const = 0;
    /// The one routine that starts a row, as the play queue does.
    virtual RowStart startRow(int row) = 0;
    /// The recording has ended: the next marked row follows.
    virtual void mediaEnded() = 0;
    /// The playing recording cannot be played: its row is unmarked with the reason, the window
    /// says so, and the next marked row follows.
    virtual void playbackFailed(const std::string& reason) = 0;
};

} // namespace velmorant
