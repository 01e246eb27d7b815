#pragma once

#include "ports/Chart.h"
#include "ports/MapPage.h"
#include "ports/MediaPlayer.h"
#include "ports/Skin.h"
#include "recordings/ProgramState.h"

#include <cstdint>
#include <string>

namespace velmorant {

/// What the position follow works with; all of it must outlive its user.
struct PositionFollowNeeds {
    PlayerSettings& player;
    Skin& controlBar;
    Chart& chart;
    MapPage& page;
    ProgramState& state;
};

/// Follows the play position: control band, chart marker, speed digits and the car on the map.
class PositionFollow {
  public:
    explicit PositionFollow(const PositionFollowNeeds& needs) : m_needs(needs) {}

    /// The tick handler. Position text: position in whole seconds, "|", the recording's length in
    /// whole seconds; a length of 1 or less leaves the progress slider alone. An error ends the
    /// tick silently.
    void UpdateControlBand(const std::string& positionText);

    /// The marker builder: shows the speed in the display unit and moves the car. Dot text, joined
    /// by "|": speed in km/h, longitude, latitude, date and time, dot index, heading. An error
    /// ends it silently.
    void ShowDot(const std::string& dotText);

    /// The chart's marker goes to the current dot of the current track; stays without a track.
    void moveMarker();

    /// The dot text of a track's current dot.
    static std::string dotText(const clsDot& track);

    /// The last length greater than 1 that came with a position, in whole seconds; 0 before.
    std::int16_t publishedDuration() const { return m_publishedDuration; }

  private:
    void updateProgress(const std::string& position, const std::string& length);
    void moveCursor(std::int16_t second);
    void showSpeed(const std::string& speed);

    PositionFollowNeeds m_needs;
    std::int16_t m_publishedDuration = 0;
};

} // namespace velmorant
