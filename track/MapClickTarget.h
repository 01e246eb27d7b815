#pragma once

#include <string>

namespace velmorant {

enum class PickedRecording { Open, OpenedNow, NotOpened };

/// What a click on a route needs of the recording list and the player. Rows are 1-based.
class MapClickTarget {
  public:
    virtual ~MapClickTarget() = default;
    virtual std::string path(int row) const = 0;   ///< column 3; "" for no such row
    virtual std::string openRecording() const = 0; ///< the player's file; "" while stopped
    virtual PickedRecording startRow(int row) = 0; ///< as the play queue starts an entry
    virtual void seek(double seconds) = 0;         ///< with the player's tag refreshed
    virtual void enablePositionTimer() = 0;        ///< tPlayTime
};

} // namespace velmorant
