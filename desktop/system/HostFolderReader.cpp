#include "desktop/system/HostFolderReader.h"

#include "common/StepError.h"

#include <filesystem>
#include <system_error>

namespace velmorant {

FolderContent HostFolderReader::read(const std::string& folder) const {
    namespace fs = std::filesystem;
    FolderContent content;
    std::error_code failure;
    for (fs::directory_iterator entry(folder, failure), end; !failure && entry != end;
         entry.increment(failure)) {
        const std::string name = entry->path().filename().string();
        std::error_code unknown;
        if (entry->is_directory(unknown))
            (entry->is_symlink(unknown) ? content.linksToFolders : content.folders).push_back(name);
        else if (entry->is_regular_file(unknown))
            content.files.push_back(name);
    }
    if (failure)
        throw StepError(folder + ": " + failure.message());
    return content;
}

} // namespace velmorant
