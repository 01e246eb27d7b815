#pragma once

#include "playback/frmChild.h"
#include "ports/MediaPlayer.h"

namespace velmorant {

/// Clicks on the picture: a double click fills the screen with it, a click in full screen leaves
/// it. A double click arrives as press, release, double click, release; one that begins in full
/// screen leaves it and does not enter again.
class PictureClicks {
  public:
    PictureClicks(frmChild& player, PlayerView& view) : m_player(player), m_view(view) {}
    void pressed();
    void released();
    void doubleClicked();

  private:
    frmChild& m_player;
    PlayerView& m_view;
    bool m_beganInFullScreen = false;
    bool m_releaseOfDoubleClick = false;
};

} // namespace velmorant
