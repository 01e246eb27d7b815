#pragma once

#include "common/ErrorLog.h"
#include "common/SettingsState.h"
#include "ports/FileSystem.h"
#include "ports/HostPaths.h"
#include "ports/MessageBox.h"
#include "ports/Screen.h"
#include "ports/Skin.h"
#include "ports/Texts.h"
#include "ports/Timer.h"
#include "ports/Window.h"
#include "ports/loadSkin.h"

namespace velmorant {

struct frmTipNeeds {
    const SettingsState& settings;
    Window& window;
    Skin& skin;
    Timer& timer; ///< Timer1
    const Screen& screen;
    const FileSystem& files;
    const HostPaths& paths;
    const Texts& texts;
    MessageBox& messageBox;
    ErrorLog* errors = nullptr; ///< records what the handlers pass over
};

/// The loading splash. It has the frame's size: the frame takes its place, and so stands in the
/// middle of the screen. Closes itself after three seconds.
class frmTip {
  public:
    /// Sets the timer up: 3000 ms, enabled.
    explicit frmTip(const frmTipNeeds& needs);

    /// Without its skin the box has been shown and the window is closed.
    SkinLoad Load();
    void Resize(); ///< centres it on the screen

  private:
    frmTipNeeds m_needs;
    bool m_resizing = false;
};

} // namespace velmorant
