#pragma once

#include "ports/Shell.h"

namespace velmorant {

/// User folders and shortcuts of a freedesktop desktop.
///
/// A shortcut is a desktop entry file (UTF-8 lines "key=value" below "[Desktop Entry]"); its name
/// is the file's name without ".desktop".
class FreedesktopShellObject : public ShellObject {
  public:
    /// `iconName` is the name of an icon theme's icon, or a picture's full path; empty: none.
    explicit FreedesktopShellObject(std::string iconName);

    /// Knows the values "Desktop" and "Programs", alone or with the full path of their registry
    /// key. The folders end without a separator.
    std::string readRegistry(const std::string& valueName) const override;
    void createShortcut(const std::string& path, const std::string& targetPath,
                        const std::string& workingDirectory) override;

  private:
    std::string m_iconName;
};

} // namespace velmorant
