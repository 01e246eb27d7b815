#pragma once

#include "ports/FileSystem.h"
#include "ports/HostPaths.h"

#include <string>

namespace velmorant {

/// Creates the folder, and the folders above it, where they are missing. Throws StepError when that
/// fails.
inline void ensureFolder(FileSystem& files, const HostPaths& paths, const std::string& folder) {
    if (folder.empty() || files.folderExists(folder))
        return;
    ensureFolder(files, paths, folderOf(paths, folder));
    files.createFolder(folder);
}

} // namespace velmorant
