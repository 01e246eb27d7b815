#pragma once

#include <string>
#include <vector>

namespace velmorant {

/// Files and folders by full path (UTF-8). Every call that changes something throws StepError
/// with the path and the reason when it fails.
class FileSystem {
  public:
    virtual ~FileSystem() = default;
    virtual bool fileExists(const std::string& path) const = 0; ///< false for a folder
    virtual bool folderExists(const std::string& path) const = 0;
    virtual void createFolder(const std::string& path) = 0; ///< its parents must exist
    /// From now on only its owner may read the folder.
    virtual void keepPrivate(const std::string& folder) = 0;
    virtual void createEmptyFile(const std::string& path) = 0; ///< overwrites
    virtual void deleteFile(const std::string& path) = 0;
    virtual void deleteFolder(const std::string& path) = 0; ///< with all that it holds
    /// Replaces the destination as a whole: written beside, then renamed.
    virtual void copyFile(const std::string& source, const std::string& destination) = 0;
};

} // namespace velmorant
