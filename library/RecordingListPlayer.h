#pragma once

#include "ports/MediaPlayer.h"

#include <string>

namespace velmorant {

/// What the recording list asks of the player window.
class RecordingListPlayer {
  public:
    virtual ~RecordingListPlayer() = default;
    virtual PlayState playState() const = 0;
    /// Gives the player the path as its media address and makes its picture visible.
    virtual void openRecording(const std::string& path) = 0;
    virtual void play() = 0;
    virtual void enablePlayTimer() = 0;
    virtual void applyRate() = 0; ///< the rate kept by the player window becomes the player's
};

} // namespace velmorant
