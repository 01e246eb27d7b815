#include "app/PosixHostPaths.h"

#include <algorithm>
#include <unistd.h>
#include <utility>

namespace velmorant {

namespace {

constexpr const char* programName = "velmorant-dvr-tools";

} // namespace

PosixHostPaths::PosixHostPaths(EnvironmentLookup environment, std::string programFolder)
    : m_environment(std::move(environment)), m_programFolder(std::move(programFolder)) {}

std::string PosixHostPaths::globalConfigurationFile() const {
    const std::optional<std::string> windows = m_environment("windir");
    const std::string folder =
        windows && !windows->empty() ? *windows : programsOwn("XDG_CONFIG_HOME", ".config");
    return join(folder, "system32/qvconfig.mp4");
}

std::string PosixHostPaths::programFile(const std::string& relative) const {
    return join(m_programFolder, relative);
}

std::string PosixHostPaths::writableProgramFile(const std::string& relative) const {
    if (programFolderIsWritable())
        return programFile(relative);
    return join(programsOwn("XDG_DATA_HOME", ".local/share"), relative);
}

std::string PosixHostPaths::temporaryFolder() const {
    return workingFolder(m_environment);
}

std::string PosixHostPaths::executable(const std::string& relative) const {
    return programFile(relative);
}

std::string PosixHostPaths::join(const std::string& folder, const std::string& name) const {
    if (folder.empty() || folder.back() == '/')
        return folder + name;
    return folder + '/' + name;
}

std::vector<std::string> PosixHostPaths::components(const std::string& path) const {
    std::vector<std::string> parts;
    if (path.empty())
        return parts;
    if (path.front() == '/')
        parts.emplace_back("/");
    std::size_t start = 0;
    while (start < path.size()) {
        const std::size_t end = std::min(path.find('/', start), path.size());
        if (end > start)
            parts.push_back(path.substr(start, end - start));
        start = end + 1;
    }
    return parts;
}

std::string PosixHostPaths::shortcutEnding() const {
    return ".desktop";
}

bool PosixHostPaths::programFolderIsWritable() const {
    return ::access(m_programFolder.c_str(), W_OK) == 0;
}

std::string PosixHostPaths::programsOwn(const std::string& variable,
                                        const std::string& belowHome) const {
    return join(userFolder(m_environment, variable, belowHome), programName);
}

} // namespace velmorant
