#pragma once

#include "ports/HostPaths.h"

#include <string>
#include <vector>

namespace velmorant::fakes {

/// A host whose program lies in "/program", with "/" between components.
class FakeHostPaths : public HostPaths {
  public:
    std::string globalConfigurationFile() const override { return globalFile; }
    std::string programFile(const std::string& relative) const override {
        return programFolder + "/" + relative;
    }
    std::string writableProgramFile(const std::string& relative) const override {
        return writableFolder + "/" + relative;
    }
    std::string temporaryFolder() const override { return "/cache/VelmorantDVRtempFile"; }
    std::string executable(const std::string& relative) const override {
        return programFolder + "/" + relative + executableEnding;
    }
    std::string join(const std::string& folder, const std::string& name) const override {
        return folder.empty() || folder.back() == '/' ? folder + name : folder + "/" + name;
    }
    std::vector<std::string> components(const std::string& path) const override {
        std::vector<std::string> parts;
        std::string part;
        for (std::size_t i = 0; i < path.size(); ++i) {
            if (path[i] != '/') {
                part += path[i];
                continue;
            }
            if (i == 0)
                parts.emplace_back("/");
            else if (!part.empty())
                parts.push_back(part);
            part.clear();
        }
        if (!part.empty())
            parts.push_back(part);
        return parts;
    }
    std::string shortcutEnding() const override { return shortcut; }

    std::string globalFile = "/windows/system32/qvconfig.mp4";
    std::string programFolder = "/program";
    std::string writableFolder = "/program";
    std::string executableEnding;
    std::string shortcut = ".lnk";
};

} // namespace velmorant::fakes
