#pragma once

#include <cstddef>
#include <string>

namespace velmorant {

/// What the open-file dialog shows. Explorer style, several files, read-only box hidden, the
/// current directory is left unchanged.
struct OpenFilesRequest {
    std::string title;
    std::string filter;                ///< description "|" pattern, for example "MP4 file|*.MP4"
    std::size_t largestResult = 32767; ///< characters
};

struct SaveFileRequest {
    std::string title;
    std::string filter; ///< as above
    std::string defaultName;
};

/// The platform's file dialogs.
class FileDialogs {
  public:
    virtual ~FileDialogs() = default;
    /// The raw result: one full path, or a folder and the file names in it, separated by NUL
    /// characters; empty when the dialog was cancelled. A file that the user typed with another
    /// folder stands among the names with its full path.
    virtual std::string openFiles(const OpenFilesRequest& request) = 0;
    /// The full path chosen; empty when cancelled. Asks by itself before overwriting.
    virtual std::string saveFile(const SaveFileRequest& request) = 0;
};

} // namespace velmorant
