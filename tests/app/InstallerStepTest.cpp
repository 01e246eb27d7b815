#include "app/InstallerStep.h"

#include "app/PrivateProfile.h"
#include "tests/builders/TemporaryFolder.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/fakes/FakeHostPaths.h"
#include "tests/fakes/FakeProfileFunctions.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace velmorant {
namespace {

const std::string configurationFile = "/windows/system32/qvconfig.mp4";

TEST(InstallerStep, chooses_the_language_by_the_locale_where_none_is_chosen) {
    struct Case {
        std::string present;
        std::string locale;
        InstallerStep::Result result;
        std::string written;
    };
    using Result = InstallerStep::Result;
    const std::vector<Case> cases = {{"", "en_GB.UTF-8", Result::Written, "1001"},
                                     {"", "zh_TW.UTF-8", Result::Written, "1002"},
                                     {"", "zh_CN", Result::Written, "1002"},
                                     {"", "C", Result::Written, "1001"},
                                     {"", "", Result::Written, "1001"},
                                     {"1003", "ZH_HK", Result::Written, "1002"},
                                     {"1001", "zh_TW", Result::AlreadyChosen, "1001"},
                                     {"1002", "en_GB", Result::AlreadyChosen, "1002"}};
    for (const Case& each : cases) {
        fakes::FakeProfileFunctions profile;
        fakes::FakeFileSystem files;
        const fakes::FakeHostPaths paths;
        profile.contents[{configurationFile, "config"}]["mainv"] = each.present;
        EXPECT_EQ(InstallerStep(profile, files, paths).run(each.locale), each.result);
        const std::string value = profile.contents[{configurationFile, "config"}]["mainv"];
        EXPECT_EQ(value, each.written) << each.present << ' ' << each.locale;
    }
}

TEST(InstallerStep, makes_the_missing_folder) {
    fakes::FakeProfileFunctions profile;
    fakes::FakeFileSystem files;
    files.folders = {"/"};
    const fakes::FakeHostPaths paths;
    EXPECT_EQ(InstallerStep(profile, files, paths).run("C"), InstallerStep::Result::Written);
    EXPECT_TRUE(files.folderExists("/windows/system32"));
}

TEST(InstallerStep, tells_that_it_could_not_write) {
    fakes::FakeProfileFunctions profile;
    profile.refused.insert(configurationFile);
    fakes::FakeFileSystem files;
    files.broken.insert("/windows");
    const fakes::FakeHostPaths paths;
    EXPECT_EQ(InstallerStep(profile, files, paths).run("C"), InstallerStep::Result::NotWritten);
}

TEST(MessagesLocale, takes_the_first_variable_that_is_set) {
    std::map<std::string, std::string> variables;
    const EnvironmentLookup lookup = [&](const std::string& name) -> std::optional<std::string> {
        if (!variables.contains(name))
            return std::nullopt;
        return variables.at(name);
    };
    EXPECT_EQ(messagesLocale(lookup), "C");
    variables["LANG"] = "zh_TW.UTF-8";
    EXPECT_EQ(messagesLocale(lookup), "zh_TW.UTF-8");
    variables["LC_MESSAGES"] = "en_GB";
    EXPECT_EQ(messagesLocale(lookup), "en_GB");
    variables["LC_ALL"] = "";
    EXPECT_EQ(messagesLocale(lookup), "en_GB");
    variables["LC_ALL"] = "C.UTF-8";
    EXPECT_EQ(messagesLocale(lookup), "C.UTF-8");
}

} // namespace
} // namespace velmorant
