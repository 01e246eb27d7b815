// velmorant-setup: the installer's step for one user. Gives the configuration a language by the
// user's locale when it has none yet; says nothing when there is nothing to do. Where that fails it
// ends with 1 and prints the language's code, for the program to start with this once.

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
    const std::string locale = velmorant::messagesLocale(environment);
    const auto failed = [&locale](const std::string& reason) {
        std::cerr << "velmorant-setup: " << reason << '\n';
        std::cout << velmorant::InstallerStep::languageCode(locale) << '\n';
        return 1;
    };
    try {
        const auto program = std::filesystem::canonical("/proc/self/exe").parent_path();
        const velmorant::PosixHostPaths paths(environment, program.string());
        velmorant::PrivateProfile profile;
        velmorant::HostFileSystem files;
        velmorant::InstallerStep step(profile, files, paths);
        if (step.run(locale) == velmorant::InstallerStep::Result::NotWritten)
            return failed(paths.globalConfigurationFile() + " cannot be written");
        return 0;
    } catch (const std::exception& failure) {
        return failed(failure.what());
    }
}
