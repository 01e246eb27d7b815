#pragma once

#include "common/StepError.h"
#include "ports/Shell.h"

#include <map>
#include <string>
#include <vector>

namespace velmorant::fakes {

struct Shortcut {
    std::string path;
    std::string targetPath;
    std::string workingDirectory;
    bool operator==(const Shortcut&) const = default;
};

class FakeShellObject : public ShellObject {
  public:
    std::string readRegistry(const std::string& valueName) const override {
        const auto value = registry.find(valueName);
        if (value == registry.end())
            throw StepError("no registry value " + valueName);
        return value->second;
    }
    void createShortcut(const std::string& path, const std::string& targetPath,
                        const std::string& workingDirectory) override {
        shortcuts.push_back({path, targetPath, workingDirectory});
    }

    std::map<std::string, std::string> registry;
    std::vector<Shortcut> shortcuts;
};

} // namespace velmorant::fakes
