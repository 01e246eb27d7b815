#pragma once

#include "playback/frmChild.h"
#include "ports/MediaPlayer.h"
#include "ports/Timer.h"

#include <functional>
#include <string>

namespace velmorant {

enum class FastDirection { Rewind, Forward };

/// Fast forward and rewind: seeks by one second at every tick of `tFast`, until an end of the
/// recording is near, and then pauses.
class FastForward {
  public:
    FastForward(Timer& tFast, PlayerControls& controls, frmChild& player);

    void start(FastDirection direction); ///< does nothing unless the player is playing
    void stop();
    bool running() const { return m_tFast.enabled(); }
    const std::string& tag() const { return m_tag; } ///< the step in seconds: "1" or "-1"

    std::function<void()> onChanged; ///< started or stopped

  private:
    void tick();

    Timer& m_tFast;
    PlayerControls& m_controls;
    frmChild& m_player;
    std::string m_tag;
};

} // namespace velmorant
