#include "playback/PictureClicks.h"

namespace velmorant {

void PictureClicks::pressed() {
    m_beganInFullScreen = m_view.fullScreen();
    m_releaseOfDoubleClick = false;
    m_player.PictureMousePressed();
}

void PictureClicks::released() {
    // The release behind a double click would leave the full screen that it has just entered.
    if (m_releaseOfDoubleClick)
        m_releaseOfDoubleClick = false;
    else
        m_player.PictureClicked();
}

void PictureClicks::doubleClicked() {
    m_releaseOfDoubleClick = true;
    if (!m_beganInFullScreen)
        m_view.setFullScreen(true);
}

} // namespace velmorant
