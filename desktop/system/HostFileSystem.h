#pragma once

#include "ports/FileSystem.h"

namespace velmorant {

/// The files and folders of this machine.
class HostFileSystem : public FileSystem {
  public:
    bool fileExists(const std::string& path) const override;
    bool folderExists(const std::string& path) const override;
    void createFolder(const std::string& path) override;
    void keepPrivate(const std::string& folder) override;
    void createEmptyFile(const std::string& path) override;
    void deleteFile(const std::string& path) override;
    void deleteFolder(const std::string& path) override;
    void copyFile(const std::string& source, const std::string& destination) override;
};

} // namespace velmorant
