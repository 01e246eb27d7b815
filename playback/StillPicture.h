#pragma once

#include "playback/frmChild.h"
#include "ports/Clock.h"
#include "ports/FileDialogs.h"
#include "ports/MessageBox.h"
#include "ports/Screen.h"
#include "ports/Texts.h"

namespace velmorant {

/// What still pictures work with; all of it must outlive its user.
struct StillPictureNeeds {
    Screen& screen;
    ScreenCapture& capture;
    FileDialogs& dialogs;
    Clock& clock;
    MessageBox& messages;
    Texts& texts;
    frmChild& player; ///< its picture's size is the capture's
};

/// Copies the picture's place of the screen and saves it, as Windows BMP data, under a name that
/// the user chooses.
class StillPicture {
  public:
    explicit StillPicture(const StillPictureNeeds& needs) : m_needs(needs) {}

    void Take();

    /// The place of the picture when the frame stands at the screen's bottom right corner.
    PixelRectangle captureRectangle() const;

  private:
    void save();

    StillPictureNeeds m_needs;
};

} // namespace velmorant
