#pragma once

#include "common/StepError.h"
#include "ports/FileSystem.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace velmorant::fakes {

/// Files and folders in memory. A path in `broken` makes every change of it fail.
class FakeFileSystem : public FileSystem {
  public:
    bool fileExists(const std::string& path) const override { return files.count(path) > 0; }
    bool folderExists(const std::string& path) const override { return folders.count(path) > 0; }
    void createFolder(const std::string& path) override {
        change("createFolder", path);
        folders.insert(path);
    }
    void keepPrivate(const std::string& folder) override {
        change("keepPrivate", folder);
        privateFolders.insert(folder);
    }
    void createEmptyFile(const std::string& path) override {
        change("createEmptyFile", path);
        files[path].clear();
    }
    void deleteFile(const std::string& path) override {
        change("deleteFile", path);
        if (files.erase(path) == 0)
            throw StepError(path + ": no such file");
    }
    void deleteFolder(const std::string& path) override {
        change("deleteFolder", path);
        folders.erase(path);
    }
    void copyFile(const std::string& source, const std::string& destination) override {
        change("copyFile " + source + " to", destination);
        if (!fileExists(source))
            throw StepError(source + ": no such file");
        files[destination] = files[source];
    }

    std::map<std::string, std::string> files; ///< path -> content
    std::set<std::string> folders;
    std::set<std::string> privateFolders;
    std::set<std::string> broken;
    std::vector<std::string> changes; ///< in order: call and path

  private:
    void change(const std::string& call, const std::string& path) {
        changes.push_back(call + " " + path);
        if (broken.count(path) > 0)
            throw StepError(path + ": permission denied");
    }
};

} // namespace velmorant::fakes
