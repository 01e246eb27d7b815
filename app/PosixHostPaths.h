#pragma once

#include "common/userFolders.h"
#include "ports/HostPaths.h"

#include <string>
#include <vector>

namespace velmorant {

/// Host paths of a POSIX system, by the XDG base directories; a base directory that is not absolute
/// counts as not set. The separator is "/"; several in a row count as one, one at the end as none.
class PosixHostPaths : public HostPaths {
  public:
    /// `programFolder` is the folder in which the executable lies.
    PosixHostPaths(EnvironmentLookup environment, std::string programFolder);

    std::string globalConfigurationFile() const override;
    std::string programFile(const std::string& relative) const override;
    std::string writableProgramFile(const std::string& relative) const override;
    std::string temporaryFolder() const override;
    std::string executable(const std::string& relative) const override;
    std::string join(const std::string& folder, const std::string& name) const override;
    std::vector<std::string> components(const std::string& path) const override;
    std::string shortcutEnding() const override;

    /// Whether the user may write into the program folder; where not, the program cannot update
    /// itself.
    bool programFolderIsWritable() const;

  private:
    /// This program's folder in one of the user's base folders.
    std::string programsOwn(const std::string& variable, const std::string& belowHome) const;

    EnvironmentLookup m_environment;
    std::string m_programFolder;
};

} // namespace velmorant
