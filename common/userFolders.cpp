#include "common/userFolders.h"

#include <pwd.h>
#include <unistd.h>

namespace velmorant {

namespace {

bool isAbsolute(const std::optional<std::string>& path) {
    return path && path->starts_with('/');
}

std::string below(const std::string& folder, const std::string& name) {
    return folder.ends_with('/') ? folder + name : folder + '/' + name;
}

std::string homeKnownToTheSystem() {
    const passwd* user = ::getpwuid(::getuid());
    return user != nullptr && user->pw_dir != nullptr ? user->pw_dir : "/";
}

} // namespace

std::string userFolder(const EnvironmentLookup& environment, const std::string& variable,
                       const std::string& belowHome) {
    const std::optional<std::string> folder = environment(variable);
    if (isAbsolute(folder))
        return *folder;
    const std::optional<std::string> home = environment("HOME");
    return below(isAbsolute(home) ? *home : homeKnownToTheSystem(), belowHome);
}

std::string workingFolder(const EnvironmentLookup& environment) {
    return below(userFolder(environment, "XDG_CACHE_HOME", ".cache"),
                 "velmorant-dvr-tools/VelmorantDVRtempFile");
}

} // namespace velmorant
