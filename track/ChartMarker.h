#pragma once

namespace velmorant {

/// The chart's position marker as the position follow moves it.
class ChartMarker {
  public:
    virtual ~ChartMarker() = default;
    virtual void resetMarker() = 0;            ///< to the start of the recording
    virtual void moveMarkerToCurrentDot() = 0; ///< of the current track
};

} // namespace velmorant
