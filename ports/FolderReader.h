#pragma once

#include <string>
#include <vector>

namespace velmorant {

/// The names, without path, of what a folder holds, in any order.
struct FolderContent {
    std::vector<std::string> files = {};
    std::vector<std::string> folders = {};
    std::vector<std::string> linksToFolders =
        {}; ///< links that lead to a folder, which may be anywhere
};

class FolderReader {
  public:
    virtual ~FolderReader() = default;
    /// Throws StepError with the path and the reason when the folder cannot be read.
    virtual FolderContent read(const std::string& folder) const = 0;
};

} // namespace velmorant
