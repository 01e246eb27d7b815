#pragma once

#include "app/PosixHostPaths.h"
#include "ports/FileSystem.h"
#include "ports/HostPaths.h"
#include "ports/ProfileFunctions.h"

#include <string>

namespace velmorant {

/// What an installer does for one user: it gives the machine-wide configuration a language, because
/// the program refuses one without.
class InstallerStep {
  public:
    enum class Result { AlreadyChosen, Written, NotWritten };

    InstallerStep(ProfileFunctions& profile, FileSystem& files, const HostPaths& paths);

    /// Writes the code of the locale's language as "mainv" when it is missing, empty or 1003; makes
    /// the file's folder when it is missing.
    [[nodiscard]] Result run(const std::string& locale);
    /// What run() writes: the program takes it for one run where it could not be written.
    static std::string languageCode(const std::string& locale);

  private:
    ProfileFunctions& m_profile;
    FileSystem& m_files;
    const HostPaths& m_paths;
};

/// The user's locale for messages, from LC_ALL, LC_MESSAGES and LANG; "C" when none is set.
std::string messagesLocale(const EnvironmentLookup& environment);

} // namespace velmorant
