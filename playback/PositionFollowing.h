#pragma once

#include <cstdint>
#include <string>

namespace velmorant {

/// What playback needs of the position follow.
class PositionFollowing {
  public:
    virtual ~PositionFollowing() = default;
    /// Position and length in whole seconds, joined by "|".
    virtual void UpdateControlBand(const std::string& positionText) = 0;
    /// Shows the speed digits and moves the car; the marker builder's dot text.
    virtual void ShowDot(const std::string& dotText) = 0;
    /// Shows the dot that is now the current one of the current track.
    virtual void showCurrentDot() = 0;
    virtual std::int16_t publishedDuration() const = 0; ///< whole seconds; 0: none yet
};

} // namespace velmorant
