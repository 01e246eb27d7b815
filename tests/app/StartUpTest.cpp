#include "app/StartUp.h"

#include "app/LanguageTable.h"
#include "app/Shortcuts.h"
#include "common/StepError.h"
#include "tests/fakes/FakeBandContainer.h"
#include "tests/fakes/FakeErrorLog.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/fakes/FakeHostPaths.h"
#include "tests/fakes/FakeMessageBox.h"
#include "tests/fakes/FakeProfileFunctions.h"
#include "tests/fakes/FakeScreen.h"
#include "tests/fakes/FakeShellObject.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace velmorant {
namespace {

using fakes::Shortcut;
using fakes::ShownMessage;
using Keys = fakes::ProfileKeys;

const std::string configurationFile = "/windows/system32/qvconfig.mp4";
const std::string desktopValue = "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\"
                                 "Explorer\\Shell Folders\\Desktop";
const std::string programsValue = "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\"
                                  "CurrentVersion\\Explorer\\Shell Folders\\Programs";

class FakeStartUpWindows : public StartUpWindows {
  public:
    explicit FakeStartUpWindows(std::vector<std::string>& log) : m_log(log) {}
    void showSplash() override {
        m_log.push_back("showSplash");
        if (splashFails)
            throw StepError("no splash");
    }
    void bringSplashToForeground() override { m_log.push_back("bringSplashToForeground"); }
    void loadMainWindow() override { m_log.push_back("loadMainWindow"); }
    void showMainWindow() override { m_log.push_back("showMainWindow"); }

    bool splashFails = false;

  private:
    std::vector<std::string>& m_log;
};

class StartUpTest : public testing::Test {
  protected:
    StartUpTest() {
        files.folders = {"/", "/windows", "/windows/system32", "/program", "/desk", "/menu"};
        files.files = {{"/program/tool", ""}, {configurationFile, ""}};
        shell.registry = {{desktopValue, "/desk"}, {programsValue, "/menu/"}};
        playerBands.log = &log;
        frameBands.log = &log;
    }

    StartUpResult run(const std::string& commandLine = "") {
        return StartUp({.settings = settings,
                        .files = files,
                        .paths = paths,
                        .profile = profile,
                        .texts = texts,
                        .messageBox = messageBox,
                        .shell = shell,
                        .screen = screen,
                        .playerBands = playerBands,
                        .frameBands = frameBands,
                        .windows = windows,
                        .languageForThisRun = languageForThisRun,
                        .errors = &errors})
            .run(commandLine);
    }
    void configure(const Keys& keys) { profile.contents[{configurationFile, "config"}] = keys; }
    Keys configured() { return profile.contents[{configurationFile, "config"}]; }
    ShownMessage failure(const std::string& description) const {
        return {"System resource lost,please reboot or re-setup" + description,
                "system information", MessageStyle::Stop};
    }

    std::vector<std::string> log;
    SettingsState settings;
    fakes::FakeFileSystem files;
    fakes::FakeHostPaths paths;
    fakes::FakeProfileFunctions profile;
    LanguageTable texts{settings};
    fakes::FakeMessageBox messageBox;
    fakes::FakeShellObject shell;
    fakes::FakeScreen screen;
    fakes::FakeBandContainer playerBands;
    fakes::FakeBandContainer frameBands;
    FakeStartUpWindows windows{log};
    std::string languageForThisRun;
    fakes::FakeErrorLog errors;
};

TEST_F(StartUpTest, shows_the_windows_in_order) {
    configure({{"mainv", "1001"}, {"Area", "2021"}, {"Unit", "1001"}});
    screen.twipsY = 12;
    EXPECT_EQ(run(), StartUpResult::Running);
    EXPECT_EQ(log, (std::vector<std::string>{"showSplash", "bringSplashToForeground",
                                             "setHeight MediaControl", "setChild MediaControl",
                                             "recalculateLayout", "recalculateLayout",
                                             "setChild ControlBand", "recalculateLayout",
                                             "loadMainWindow", "showMainWindow"}));
    EXPECT_EQ(playerBands.heights.at("MediaControl"), 209 * 12);
    EXPECT_EQ(playerBands.children.at("MediaControl"), "frmCurve");
    EXPECT_EQ(frameBands.children.at("ControlBand"), "frmMediaCtrl");
    EXPECT_TRUE(messageBox.shown.empty());
}

TEST_F(StartUpTest, reads_language_zone_and_unit) {
    struct Case {
        Keys keys;
        std::int32_t languageBase;
        double minutes;
        double factor;
    };
    const std::vector<Case> cases = {
        {{{"mainv", "1001"}, {"Area", "2021"}, {"Unit", "1001"}}, 10000, 480, 1.0},
        {{{"mainv", "1002"}, {"Area", "2005"}, {"Unit", "1002"}}, 20000, -480, 0.6213712},
        {{{"mainv", " 1002 "}, {"Area", "2013"}, {"Unit", "1003"}}, 20000, 0, 0.5399568},
        {{{"mainv", "1001"}, {"Area", "2008"}, {"Unit", "1004"}}, 10000, -300, 0.0},
        {{{"mainv", "1001"}, {"Area", "2001"}, {"Unit", "1"}}, 10000, -720, 1.0},
        {{{"mainv", "2"}, {"Area", "2016"}, {"Unit", "1001"}}, 20000, 180, 1.0},
        {{{"mainv", "1001"}, {"Area", "2025"}, {"Unit", "1001"}}, 10000, 720, 1.0}};
    for (const Case& each : cases) {
        settings = SettingsState();
        configure(each.keys);
        EXPECT_EQ(run(), StartUpResult::Running);
        EXPECT_EQ(settings.languageBase, each.languageBase);
        EXPECT_EQ(settings.timeZoneMinutes, each.minutes);
        EXPECT_EQ(settings.speedFactor, each.factor);
    }
}

TEST_F(StartUpTest, creates_a_missing_configuration_and_then_refuses_it_for_its_language) {
    files.files.erase(configurationFile);
    files.folders.erase("/windows/system32");
    EXPECT_EQ(run(), StartUpResult::Failed);
    EXPECT_TRUE(files.fileExists(configurationFile));
    EXPECT_EQ(configured(), (Keys{{"mainv", "1003"}, {"Area", "2021"}, {"Unit", "1001"}}));
    EXPECT_EQ(profile.writes.size(), 3U);
    EXPECT_EQ(messageBox.shown,
              std::vector<ShownMessage>{failure("The text table has no row 32021")});
    EXPECT_EQ(settings.languageBase, 30000);
    EXPECT_TRUE(log.empty());
}

TEST_F(StartUpTest, names_the_reason_why_a_configuration_could_not_be_created) {
    files.files.erase(configurationFile);
    files.broken.insert(configurationFile);
    profile.refused.insert(configurationFile);
    EXPECT_EQ(run(), StartUpResult::Failed);
    EXPECT_EQ(messageBox.shown,
              std::vector<ShownMessage>{failure(configurationFile + ": permission denied")});
    EXPECT_TRUE(log.empty());
}

TEST_F(StartUpTest, names_the_folder_that_could_not_be_made_for_the_configuration) {
    files.files.erase(configurationFile);
    files.folders.erase("/windows/system32");
    files.broken.insert("/windows/system32");
    profile.refused.insert(configurationFile);
    EXPECT_EQ(run(), StartUpResult::Failed);
    EXPECT_EQ(messageBox.shown,
              std::vector<ShownMessage>{failure("/windows/system32: permission denied")});
}

TEST_F(StartUpTest, names_the_configuration_that_did_not_take_its_default_language) {
    profile.refused.insert(configurationFile);
    EXPECT_EQ(run(), StartUpResult::Failed);
    EXPECT_EQ(messageBox.shown,
              std::vector<ShownMessage>{failure(configurationFile + ": cannot be written")});
}

TEST_F(StartUpTest, names_a_later_failure_where_the_language_is_known) {
    configure({{"mainv", "1001"}, {"Area", "2099"}});
    profile.refused.insert(configurationFile);
    EXPECT_EQ(run(), StartUpResult::Failed);
    EXPECT_EQ(messageBox.shown,
              std::vector<ShownMessage>{failure("The text table has no row 12099")});
}

TEST_F(StartUpTest, starts_in_the_language_given_for_this_run_when_none_can_be_kept) {
    languageForThisRun = "1002";
    files.files.erase(configurationFile);
    files.broken.insert(configurationFile);
    profile.refused.insert(configurationFile);
    EXPECT_EQ(run(), StartUpResult::Running);
    EXPECT_EQ(settings.languageCode, 1002);
    EXPECT_EQ(settings.languageBase, 20000);
    EXPECT_EQ(messageBox.shown,
              (std::vector<ShownMessage>{{"設定現在已生效，但無法保存供下次啟動使用：\n" +
                                              configurationFile + ": permission denied",
                                          "系統提示資訊", MessageStyle::Information}}));
    EXPECT_EQ(errors.noted, std::vector<std::string>{configurationFile + ": permission denied"});
}

TEST_F(StartUpTest, prefers_the_language_that_the_configuration_holds) {
    languageForThisRun = "1002";
    configure({{"mainv", "1001"}, {"Area", "2021"}, {"Unit", "1001"}});
    EXPECT_EQ(run(), StartUpResult::Running);
    EXPECT_EQ(settings.languageCode, 1001);
    EXPECT_TRUE(messageBox.shown.empty());
}

TEST_F(StartUpTest, starts_over_a_protected_configuration_that_has_no_language_yet) {
    languageForThisRun = "1001";
    configure({{"mainv", "1003"}, {"Area", "2021"}, {"Unit", "1001"}});
    profile.refused.insert(configurationFile);
    EXPECT_EQ(run(), StartUpResult::Running);
    EXPECT_EQ(settings.languageCode, 1001);
    ASSERT_EQ(messageBox.shown.size(), 1U);
    EXPECT_EQ(messageBox.shown[0].text,
              "The settings apply now, but they could not be kept for the next start:\n" +
                  configurationFile);
}

TEST_F(StartUpTest, writes_defaults_in_order_for_empty_values_alone) {
    configure({{"mainv", "1001"}, {"Area", ""}});
    EXPECT_EQ(run(), StartUpResult::Running);
    EXPECT_EQ(profile.writes,
              (std::vector<std::string>{configurationFile + " [config] Area=2021",
                                        configurationFile + " [config] Unit=1001"}));
    EXPECT_FALSE(files.changes.size() > 0);
}

TEST_F(StartUpTest, shows_the_fixed_message_for_values_that_mean_nothing) {
    const std::vector<Keys> cases = {
        {{"mainv", "English"}},
        {{"mainv", "99999999999999999999"}},
        {{"mainv", "1001"}, {"Area", "home"}},
        {{"mainv", "1001"}, {"Area", "2026"}},
        {{"mainv", "1001"}, {"Area", "2147483647"}},
        {{"mainv", "1001"}, {"Area", "3024"}},
        {{"mainv", "1001"}, {"Unit", "4294967296"}},
        {{"mainv", "-1001"}},
        {{"mainv", "1e400"}},
        {{"mainv", " "}},
    };
    for (const Keys& keys : cases) {
        messageBox.shown.clear();
        log.clear();
        configure(keys);
        EXPECT_EQ(run(), StartUpResult::Failed) << keys.begin()->second;
        ASSERT_EQ(messageBox.shown.size(), 1U);
        EXPECT_EQ(messageBox.shown[0].title, "system information");
        EXPECT_EQ(messageBox.shown[0].style, MessageStyle::Stop);
        EXPECT_TRUE(
            messageBox.shown[0].text.starts_with("System resource lost,please reboot or re-setup"));
        EXPECT_TRUE(log.empty());
    }
}

TEST_F(StartUpTest, does_nothing_after_the_step_that_failed) {
    configure({{"mainv", "1001"}});
    windows.splashFails = true;
    EXPECT_EQ(run(), StartUpResult::Failed);
    EXPECT_EQ(log, std::vector<std::string>{"showSplash"});
    EXPECT_EQ(messageBox.shown, std::vector<ShownMessage>{failure("no splash")});

    windows.splashFails = false;
    log.clear();
    messageBox.shown.clear();
    frameBands.missing.insert("ControlBand");
    EXPECT_EQ(run(), StartUpResult::Failed);
    EXPECT_EQ(log.back(), "recalculateLayout");
    EXPECT_EQ(messageBox.shown, std::vector<ShownMessage>{failure("no band ControlBand")});
}

TEST_F(StartUpTest, starts_with_one_message_when_defaults_cannot_be_kept) {
    configure({{"mainv", "1001"}});
    profile.refused.insert(configurationFile);
    EXPECT_EQ(run(), StartUpResult::Running);
    EXPECT_EQ(settings.unitCode, 1001);
    EXPECT_EQ(messageBox.shown,
              (std::vector<ShownMessage>{
                  {"The settings apply now, but they could not be kept for the next start:\n" +
                       configurationFile,
                   "Information prompted", MessageStyle::Information}}));
}

TEST_F(StartUpTest, creates_shortcuts_for_two_arguments_and_ends) {
    EXPECT_EQ(run("/program/tool*1"), StartUpResult::Installed);
    EXPECT_EQ(shell.shortcuts,
              (std::vector<Shortcut>{{"/desk/Velmorant DVR Tools.lnk", "/program/tool", "/program"},
                                     {"/menu/Velmorant DVR Tools/Velmorant DVR Tools.lnk",
                                      "/program/tool", "/program"}}));
    EXPECT_TRUE(files.folderExists("/menu/Velmorant DVR Tools"));
    EXPECT_TRUE(files.folderExists("/cache/VelmorantDVRtempFile"));
    EXPECT_TRUE(messageBox.shown.empty());
    EXPECT_TRUE(log.empty());
    EXPECT_TRUE(profile.writes.empty());
}

TEST_F(StartUpTest, creates_shortcuts_again_over_an_earlier_installation) {
    EXPECT_EQ(run("/program*2"), StartUpResult::Installed);
    EXPECT_EQ(run("/program*2"), StartUpResult::Installed);
    EXPECT_EQ(shell.shortcuts.size(), 4U);
    EXPECT_EQ(shell.shortcuts[0].workingDirectory, "/");
}

TEST_F(StartUpTest, refuses_installer_arguments_that_mean_nothing) {
    struct Case {
        std::string commandLine;
        std::string description;
    };
    const std::vector<Case> cases = {{"/program/tool*3", "The text table has no row 31100"},
                                     {"/program/tool*99999", "Overflow"},
                                     {"/program/none*1", "/program/none: No such file or folder"},
                                     {"/program/tool*x", "Type mismatch: \"x\" is not a number"}};
    for (const Case& each : cases) {
        messageBox.shown.clear();
        EXPECT_EQ(run(each.commandLine), StartUpResult::Failed);
        EXPECT_EQ(messageBox.shown, std::vector<ShownMessage>{failure(each.description)});
        EXPECT_TRUE(shell.shortcuts.empty());
    }
}

TEST_F(StartUpTest, stops_installing_at_a_registry_value_that_cannot_be_read) {
    shell.registry.erase(programsValue);
    EXPECT_EQ(run("/program/tool*1"), StartUpResult::Failed);
    EXPECT_EQ(shell.shortcuts.size(), 1U);
    EXPECT_FALSE(files.folderExists("/cache/VelmorantDVRtempFile"));
    EXPECT_EQ(messageBox.shown.size(), 1U);
}

TEST_F(StartUpTest, removes_shortcuts_for_three_arguments_and_ends) {
    files.files["/desk/Velmorant DVR Tools.lnk"] = "";
    files.folders.insert("/cache/VelmorantDVRtempFile");
    EXPECT_EQ(run("a*b*c"), StartUpResult::Installed);
    EXPECT_EQ(files.changes,
              (std::vector<std::string>{"deleteFile /desk/Velmorant DVR Tools.lnk",
                                        "deleteFolder /cache/VelmorantDVRtempFile"}));
    EXPECT_TRUE(log.empty());
}

TEST_F(StartUpTest, shows_the_fixed_message_when_there_is_nothing_to_remove) {
    EXPECT_EQ(run("a*b*c*d"), StartUpResult::Failed);
    EXPECT_EQ(messageBox.shown,
              std::vector<ShownMessage>{failure("/desk/Velmorant DVR Tools.lnk: no such file")});
}

TEST_F(StartUpTest, ends_at_once_for_one_argument_and_for_stars_alone) {
    for (const std::string commandLine : {"/card/103045.MP4", "a b c", "*a*", "***", " "}) {
        EXPECT_EQ(run(commandLine), StartUpResult::Installed);
        EXPECT_TRUE(log.empty());
        EXPECT_TRUE(files.changes.empty());
        EXPECT_TRUE(messageBox.shown.empty());
    }
}

TEST(Shortcuts, checks_a_path_component_by_component) {
    fakes::FakeShellObject shell;
    fakes::FakeFileSystem files;
    const fakes::FakeHostPaths paths;
    const SettingsState settings;
    const LanguageTable texts(settings);
    files.folders = {"/", "/a", "/a/.hidden"};
    files.files = {{"/a/.hidden/file", ""}};
    const Shortcuts shortcuts(shell, files, paths, texts);
    EXPECT_EQ(shortcuts.checkFolder("/a//.hidden/file"), "/a/.hidden/file");
    EXPECT_EQ(shortcuts.checkFolder("/a/.hidden/"), "/a/.hidden");
    EXPECT_EQ(shortcuts.checkFolder("/a/none/file"), "");
    EXPECT_EQ(shortcuts.checkFolder(""), "");
}

TEST(MinutesOfOffset, reads_a_time_of_day_with_a_sign) {
    EXPECT_EQ(minutesOfOffset("8:00"), 480);
    EXPECT_EQ(minutesOfOffset("-5:30"), -330);
    EXPECT_EQ(minutesOfOffset("0:00"), 0);
    EXPECT_EQ(minutesOfOffset("23:59"), 1439);
    for (const char* text : {"", "8", "24:00", "8:60", ":", "8:", "--8:00", "8:0x", "8:00:00", "-"})
        EXPECT_THROW(minutesOfOffset(text), StepError) << text;
}

} // namespace
} // namespace velmorant
