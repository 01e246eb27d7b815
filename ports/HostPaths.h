#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace velmorant {

/// The questions about paths whose answers differ from host to host. The logic names its files
/// by relative paths with "/" between the components and never sees the host's separator.
class HostPaths {
  public:
    virtual ~HostPaths() = default;
    /// system32/qvconfig.mp4 below the "windir" variable or the user's configuration folder.
    virtual std::string globalConfigurationFile() const = 0;
    /// A file of the program folder: programFile("skin/main/1.mp4").
    virtual std::string programFile(const std::string& relative) const = 0;
    /// The same for a file that the program writes: in the user's data folder for this program
    /// where the program folder is not writable.
    virtual std::string writableProgramFile(const std::string& relative) const = 0;
    /// The drive (or what stands for it) that carries `path`, followed by "VelmorantDVRtempFile".
    virtual std::string temporaryFolder() const = 0;
    /// An executable of the program folder with the host's extension:
    /// executable("movsupport/Parse").
    virtual std::string executable(const std::string& relative) const = 0;
    virtual std::string join(const std::string& folder, const std::string& name) const = 0;
    /// The path's components from the left, each with what is needed to join it to the one before:
    /// joined one after another with join() they yield the path again.
    virtual std::vector<std::string> components(const std::string& path) const = 0;
    /// The extension of a shortcut file, ".lnk" or ".desktop".
    virtual std::string shortcutEnding() const = 0;
};

/// The path without its last component; empty when it has only one.
inline std::string folderOf(const HostPaths& paths, const std::string& path) {
    const std::vector<std::string> parts = paths.components(path);
    std::string folder;
    for (std::size_t i = 0; i + 1 < parts.size(); ++i)
        folder = i == 0 ? parts[i] : paths.join(folder, parts[i]);
    return folder;
}

/// The path's last component; empty for an empty path.
inline std::string fileNameOf(const HostPaths& paths, const std::string& path) {
    const std::vector<std::string> parts = paths.components(path);
    return parts.empty() ? std::string() : parts.back();
}

} // namespace velmorant
