#pragma once

#include "common/ErrorLog.h"
#include "common/SettingsState.h"
#include "ports/FileSystem.h"
#include "ports/HostPaths.h"
#include "ports/MessageBox.h"
#include "ports/Screen.h"
#include "ports/Shell.h"
#include "ports/Skin.h"
#include "ports/Texts.h"
#include "ports/Window.h"
#include "ports/loadSkin.h"
#include "settings/SetupTargets.h"

#include <cstdint>
#include <string>

namespace velmorant {

struct frmSetupInfoNeeds {
    SettingsState& settings;
    Window& window;
    Skin& skin;
    const Screen& screen;
    const FileSystem& files;
    const HostPaths& paths;
    const Texts& texts;
    MessageBox& messageBox;
    Shell& shell;
    SetupTargets& targets;
    ErrorLog* errors = nullptr; ///< records what the handlers pass over
};

/// The settings dialog: display language and speed unit.
class frmSetupInfo {
  public:
    explicit frmSetupInfo(const frmSetupInfoNeeds& needs);

    /// Opens with the present settings. Without its skin the box has been shown and the window is
    /// closed.
    SkinLoad Load();
    void SkinClick(const std::string& element); ///< "LANG1001", "UNIT1002", "CMDCLOSE" ...

    std::int32_t pendingLanguage() const { return m_pendingLanguage; }
    std::int32_t pendingUnit() const { return m_pendingUnit; } ///< the skin's tag

  private:
    enum class Applied { GoOn, ProgramEnds };

    SkinLoad applySkin();
    void chooseLanguage(std::int32_t code);
    void chooseUnit(std::int32_t code);
    void showSelection();
    void applyAndClose();
    Applied applyLanguage();
    Applied restart();
    void applyUnit();
    void keep(const std::string& key, std::int32_t code);
    void tellWhatWasNotKept();
    std::string dialogText(int offset) const;

    frmSetupInfoNeeds m_needs;
    std::int32_t m_pendingLanguage = 0;
    std::int32_t m_pendingUnit = 0;
    bool m_kept = true;
};

} // namespace velmorant
