#pragma once

namespace velmorant {

/// What the recording list asks of the chart.
class RecordingListChart {
  public:
    virtual ~RecordingListChart() = default;
    virtual void refreshForCurrentTrack() = 0;
    virtual void clear() = 0; ///< empties the speed and the G curves
};

} // namespace velmorant
