#pragma once

#include "ports/FileSystem.h"
#include "ports/HostPaths.h"
#include "ports/Shell.h"
#include "ports/Texts.h"

#include <string>

namespace velmorant {

/// The installer modes of the command line. Both throw StepError at the first step that fails.
class Shortcuts {
  public:
    Shortcuts(ShellObject& shell, FileSystem& files, const HostPaths& paths, const Texts& texts);

    /// Shortcuts to the target on the desktop and in the programs menu, titled in the language of
    /// that index, and the extractor's working folder. A target that does not exist is refused.
    void create(const std::string& target, const std::string& languageIndex);

    /// Removes the desktop's shortcut and the extractor's working folder.
    void remove();

    /// The path rebuilt from its components; empty as soon as one of them does not exist. Hidden
    /// and system entries count as well.
    std::string checkFolder(const std::string& path) const;

  private:
    ShellObject& m_shell;
    FileSystem& m_files;
    const HostPaths& m_paths;
    const Texts& m_texts;
};

} // namespace velmorant
