#pragma once

#include "app/StartUpWindows.h"
#include "common/ErrorLog.h"
#include "common/SettingsState.h"
#include "ports/BandContainer.h"
#include "ports/FileSystem.h"
#include "ports/HostPaths.h"
#include "ports/MessageBox.h"
#include "ports/ProfileFunctions.h"
#include "ports/Screen.h"
#include "ports/Shell.h"
#include "ports/Texts.h"

#include <string>

namespace velmorant {

struct StartUpNeeds {
    SettingsState& settings;
    FileSystem& files;
    const HostPaths& paths;
    ProfileFunctions& profile;
    const Texts& texts;
    MessageBox& messageBox;
    ShellObject& shell;
    const Screen& screen;
    BandContainer& playerBands; ///< of frmChild, with the band "MediaControl"
    BandContainer& frameBands;  ///< of frmMain, with the band "ControlBand"
    StartUpWindows& windows;
    /// The language's code where the configuration has none and cannot be given one; "" for none.
    std::string languageForThisRun;
    ErrorLog* errors = nullptr; ///< records what the handlers pass over
};

enum class StartUpResult {
    Running,   ///< the windows are shown; the event loop is to run
    Installed, ///< an installer mode has done its work, or there was nothing to do; the program
               ///< ends
    Failed     ///< the message was shown; without a window the program ends
};

/// The program's entry into its own logic: the installer modes of the command line, or the settings
/// and the windows.
class StartUp {
  public:
    explicit StartUp(const StartUpNeeds& needs);

    StartUpResult run(const std::string& commandLine);

    /// Reads the configuration into the settings, writing missing values with their defaults.
    /// Throws StepError for values that mean nothing. Part of run().
    void readConfiguration();

  private:
    enum class Kept { Yes, No };
    struct ReadValue {
        std::string text;
        Kept kept; ///< whether the configuration holds it
    };

    void runInstaller(const std::string& commandLine);
    [[nodiscard]] std::string createConfiguration(const std::string& path);
    void useLanguage(const ReadValue& language, const std::string& path);
    void readTimeZone(const std::string& area);
    void showWindows();

    StartUpNeeds m_needs;
    /// Why the configuration does not keep what this run uses, or its path; "" when it does.
    std::string m_notKept;
};

/// "8:00" gives 480, "-5:00" gives -300. Throws StepError for a text that is no time of day.
double minutesOfOffset(const std::string& offset);

} // namespace velmorant
