#pragma once

namespace velmorant {

/// Hears of every change of the recording list after it has happened; a batch of changes is
/// reported as one range that covers them. Indexes are 1-based. A listener overrides what concerns
/// it.
class RecordingListListener {
  public:
    virtual ~RecordingListListener() = default;
    virtual void rowsAdded(int /*first*/, int /*count*/) {}
    /// By then the selected and the playing index refer to the same rows as before, or to none.
    virtual void rowsRemoved(int /*first*/, int /*count*/) {}
    /// Any field of the rows, or their highlighting.
    virtual void rowsChanged(int /*first*/, int /*count*/) {}
    virtual void selectionChanged(int /*index*/) {}  ///< 0: none
    virtual void playingRowChanged(int /*index*/) {} ///< 0: none
};

} // namespace velmorant
