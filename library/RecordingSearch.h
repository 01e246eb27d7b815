#pragma once

#include "ports/FileSystem.h"
#include "ports/FolderReader.h"
#include "ports/HostPaths.h"

#include <string>
#include <vector>

namespace velmorant {

/// Files of one folder that are added together.
struct FolderSelection {
    std::string folder;
    std::vector<std::string> names;
    bool operator==(const FolderSelection&) const = default;
};

/// Finds the recordings among files and folders that the user hands over as a whole.
class RecordingSearch {
  public:
    RecordingSearch(const FolderReader& folders, const FileSystem& files, const HostPaths& paths);

    /// MP4 files of the paths, in the order given; a folder stands for its own files, then those of
    /// its sub-folders, each in the order of their names. Hidden names, folders that cannot be
    /// read, folders nested more than 16 deep and links to folders, which may lead round in a
    /// circle, are passed over.
    std::vector<FolderSelection> find(const std::vector<std::string>& paths) const;

  private:
    void searchFolder(const std::string& folder, int depth,
                      std::vector<FolderSelection>& found) const;

    const FolderReader& m_folders;
    const FileSystem& m_files;
    const HostPaths& m_paths;
};

} // namespace velmorant
