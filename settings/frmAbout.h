#pragma once

#include "common/ErrorLog.h"
#include "ports/FileSystem.h"
#include "ports/HostPaths.h"
#include "ports/MessageBox.h"
#include "ports/Screen.h"
#include "ports/Shell.h"
#include "ports/Skin.h"
#include "ports/Texts.h"
#include "ports/Window.h"
#include "ports/loadSkin.h"

#include <string>

namespace velmorant {

/// What the about box says about the program.
struct ProgramFacts {
    std::string version;
    std::string licence;
    std::string components; ///< one line each: name, version, licence
    std::string webSite;    ///< the address that "webstation" opens
};

struct frmAboutNeeds {
    Window& window;
    Skin& skin;
    const Screen& screen;
    const FileSystem& files;
    const HostPaths& paths;
    const Texts& texts;
    MessageBox& messageBox;
    Shell& shell;
    ProgramFacts facts;
    ErrorLog* errors = nullptr; ///< records what the handlers pass over
};

/// The about box.
class frmAbout {
  public:
    explicit frmAbout(frmAboutNeeds needs);

    /// Without its skin the box has been shown and the window is closed.
    SkinLoad Load();
    void SkinClick(const std::string& element); ///< "close", "webstation"

  private:
    void showFacts();

    frmAboutNeeds m_needs;
};

} // namespace velmorant
