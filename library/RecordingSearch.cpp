#include "library/RecordingSearch.h"

#include "common/textRules.h"
#include "common/trapErrors.h"
#include "recordings/recordingNames.h"

#include <algorithm>
#include <tuple>

namespace velmorant {

namespace {

// A link to a folder above would otherwise never end.
constexpr int deepestFolder = 16;

bool isHidden(const std::string& name) {
    return name.starts_with('.');
}

void orderByName(std::vector<std::string>& names) {
    std::sort(names.begin(), names.end(), [](const std::string& left, const std::string& right) {
        const std::string lowerLeft = lowerCase(left);
        const std::string lowerRight = lowerCase(right);
        return std::tie(lowerLeft, left) < std::tie(lowerRight, right);
    });
}

void append(std::vector<FolderSelection>& found, const std::string& folder,
            const std::string& name) {
    if (found.empty() || found.back().folder != folder)
        found.push_back({folder, {}});
    found.back().names.push_back(name);
}

} // namespace

RecordingSearch::RecordingSearch(const FolderReader& folders, const FileSystem& files,
                                 const HostPaths& paths)
    : m_folders(folders), m_files(files), m_paths(paths) {}

std::vector<FolderSelection> RecordingSearch::find(const std::vector<std::string>& paths) const {
    std::vector<FolderSelection> found;
    for (const std::string& path : paths) {
        if (m_files.folderExists(path))
            searchFolder(path, 1, found);
        else if (isRecordingName(fileNameOf(m_paths, path)))
            append(found, folderOf(m_paths, path), fileNameOf(m_paths, path));
    }
    return found;
}

void RecordingSearch::searchFolder(const std::string& folder, int depth,
                                   std::vector<FolderSelection>& found) const {
    FolderContent content;
    trapErrors([&] { content = m_folders.read(folder); });
    std::erase_if(content.files,
                  [](const std::string& name) { return isHidden(name) || !isRecordingName(name); });
    std::erase_if(content.folders, isHidden);
    orderByName(content.files);
    orderByName(content.folders);
    for (const std::string& name : content.files)
        append(found, folder, name);
    for (const std::string& name : content.folders) {
        if (depth < deepestFolder)
            searchFolder(m_paths.join(folder, name), depth + 1, found);
    }
}

} // namespace velmorant
