// velmorant-setup: the installer's step for one user. Gives the configuration a language by the
// user's locale when it has none yet; says nothing when there is nothing to do.

#include "app/InstallerStep.h"
#include "app/PosixHostPaths.h"
#include "app/PrivateProfile.h"
#include "desktop/system/HostFileSystem.h"

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string>

namespace {

std::optional<std::string> environment(const std::string& name) {
    const char* value = std::getenv(name.c_str());
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

} // namespace

int main() {
    try {
        const auto program = std::filesystem::canonical("/proc/self/exe").parent_path();
        const velmorant::PosixHostPaths paths(environment, program.string());
        velmorant::PrivateProfile profile;
        velmorant::HostFileSystem files;
        velmorant::InstallerStep step(profile, files, paths);
        const auto result = step.run(velmorant::messagesLocale(environment));
        if (result == velmorant::InstallerStep::Result::NotWritten) {
            std::cerr << "velmorant-setup: " << paths.globalConfigurationFile()
                      << " cannot be written\n";
            return 1;
        }
        return 0;
    } catch (const std::exception& failure) {
        std::cerr << "velmorant-setup: " << failure.what() << '\n';
        return 1;
    }
}
