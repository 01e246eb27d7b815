#pragma once

#include "app/FrameCommands.h"
#include "common/ErrorLog.h"
#include "common/SettingsState.h"
#include "ports/FileSystem.h"
#include "ports/HostPaths.h"
#include "ports/MessageBox.h"
#include "ports/NativeWindow.h"
#include "ports/Screen.h"
#include "ports/Skin.h"
#include "ports/Texts.h"
#include "ports/Waits.h"
#include "ports/Window.h"
#include "ports/loadSkin.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace velmorant {

struct frmMainNeeds {
    const SettingsState& settings;
    Window& window;
    NativeWindow& native;
    Skin& skin;
    const Window& splash; ///< its place becomes the frame's
    const FileSystem& files;
    const HostPaths& paths;
    const Screen& screen;
    const Texts& texts;
    MessageBox& messageBox;
    Waits& waits;
    FrameCommands& commands;
    ErrorLog* errors = nullptr; ///< records what the handlers pass over
};

enum class CloseDecision { Close, Stay };

/// The main frame: 1024 x 708 pixels at the splash's place, with four commands.
class frmMain {
  public:
    explicit frmMain(const frmMainNeeds& needs);

    /// Without its skin the box is shown, the window closed and the program ended.
    SkinLoad Load();
    void Unload();
    void Resize();
    /// Asks whether to exit; a failure along the way keeps the program running.
    CloseDecision CloseRequest();
    void SkinClick(const std::string& element); ///< "open", "delete", "setup", "info"

  private:
    std::intptr_t windowProcedure(const WindowMessage& message);

    frmMainNeeds m_needs;
    WindowProcedure m_saved; ///< empty unless the frame is loaded
    bool m_resizing = false;
};

} // namespace velmorant
