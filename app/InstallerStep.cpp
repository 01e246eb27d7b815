#include "app/InstallerStep.h"

#include "app/IniFile.h"
#include "common/Language.h"
#include "common/textRules.h"
#include "common/trapErrors.h"
#include "ports/ensureFolder.h"

namespace velmorant {

namespace {

/// The default of the configuration, which stands for no language.
constexpr const char* notChosen = "1003";

} // namespace

InstallerStep::InstallerStep(ProfileFunctions& profile, FileSystem& files, const HostPaths& paths)
    : m_profile(profile), m_files(files), m_paths(paths) {}

InstallerStep::Result InstallerStep::run(const std::string& locale) {
    const std::string path = m_paths.globalConfigurationFile();
    IniFile configuration(m_profile);
    configuration.open(path, "config");
    const std::string present = configuration.readKey("mainv");
    if (!present.empty() && present != notChosen)
        return Result::AlreadyChosen;
    trapErrors([&] { ensureFolder(m_files, m_paths, folderOf(m_paths, path)); });
    const IniFileWrite written = configuration.writeKey("mainv", languageCode(locale));
    return written == IniFileWrite::Kept ? Result::Written : Result::NotWritten;
}

std::string InstallerStep::languageCode(const std::string& locale) {
    return std::to_string(languageOfLocale(lowerCase(locale)).code());
}

std::string messagesLocale(const EnvironmentLookup& environment) {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const auto value = environment(variable);
        if (value && !value->empty())
            return *value;
    }
    return "C";
}

} // namespace velmorant
