#include "settings/frmSetupInfo.h"

#include "common/StepError.h"
#include "tests/fakes/FakeErrorLog.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/fakes/FakeHostPaths.h"
#include "tests/fakes/FakeMessageBox.h"
#include "tests/fakes/FakeScreen.h"
#include "tests/fakes/FakeShell.h"
#include "tests/fakes/FakeSkin.h"
#include "tests/fakes/FakeTexts.h"
#include "tests/fakes/FakeWindow.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velmorant {
namespace {

using fakes::ShellCall;
using fakes::ShownMessage;
using Calls = std::vector<std::string>;

class FakeSetupTargets : public SetupTargets {
  public:
    bool writeConfiguration(const std::string& key, const std::string& value) override {
        calls.push_back("write " + key + "=" + value);
        return writable;
    }
    void saveRecordingList() override {
        calls.push_back("saveRecordingList");
        if (!listWritable)
            throw StepError("/program/flow.xml: No space left on device");
    }
    void removeSavedList() override { calls.push_back("removeSavedList"); }
    void redrawChart() override { calls.push_back("redrawChart"); }
    void endProgram() override { calls.push_back("endProgram"); }

    bool writable = true;
    bool listWritable = true;
    Calls calls;
};

class frmSetupInfoTest : public testing::Test {
  protected:
    frmSetupInfoTest() {
        settings.setLanguage(1001);
        settings.setUnit(1001);
        files.files = {{"/program/skin/setup/1.mp4", ""}, {"/program/skin/setup/2.mp4", ""}};
        shell.whenStarted = [this](const ShellCall& call) {
            targets.calls.push_back("start " + call.file);
        };
    }
    void click(const std::vector<std::string>& elements) {
        for (const std::string& element : elements)
            dialog.SkinClick(element);
    }
    Calls selected() const {
        Calls names;
        for (const char* name : {"lang1001", "lang1002", "unit1001", "unit1002", "unit1003"}) {
            if (skin.isOn(name))
                names.emplace_back(name);
        }
        return names;
    }

    SettingsState settings;
    fakes::FakeWindow window;
    fakes::FakeSkin skin;
    fakes::FakeScreen screen;
    fakes::FakeFileSystem files;
    fakes::FakeHostPaths paths;
    fakes::FakeTexts texts;
    fakes::FakeMessageBox messageBox;
    fakes::FakeShell shell;
    FakeSetupTargets targets;
    fakes::FakeErrorLog errors;
    frmSetupInfo dialog{{.settings = settings,
                         .window = window,
                         .skin = skin,
                         .screen = screen,
                         .files = files,
                         .paths = paths,
                         .texts = texts,
                         .messageBox = messageBox,
                         .shell = shell,
                         .targets = targets,
                         .errors = &errors}};
};

TEST_F(frmSetupInfoTest, opens_centred_with_the_present_settings_selected) {
    settings.setLanguage(1002);
    settings.setUnit(1003);
    screen.pixelWidth = 1920;
    screen.pixelHeight = 1080;
    EXPECT_EQ(dialog.Load(), SkinLoad::Loaded);
    EXPECT_EQ(window.width, 800 * 12);
    EXPECT_EQ(window.height, 480 * 15);
    EXPECT_EQ(window.x, (1920 - 800) / 2 * 12);
    EXPECT_EQ(window.y, (1080 - 480) / 2 * 15);
    EXPECT_EQ(skin.loaded, Calls{"/program/skin/setup/2.mp4"});
    EXPECT_EQ(selected(), (Calls{"lang1002", "unit1003"}));
}

TEST_F(frmSetupInfoTest, closes_after_the_message_when_its_skin_is_missing) {
    files.files.erase("/program/skin/setup/1.mp4");
    EXPECT_EQ(dialog.Load(), SkinLoad::Missing);
    EXPECT_EQ(messageBox.shown,
              (std::vector<ShownMessage>{{"<13012>", "<13011>", MessageStyle::Stop}}));
    EXPECT_EQ(window.closes, 1);
    EXPECT_TRUE(targets.calls.empty());
}

TEST_F(frmSetupInfoTest, counts_a_skin_that_is_no_drawing_as_missing) {
    skin.loadable = false;
    EXPECT_EQ(dialog.Load(), SkinLoad::Missing);
    EXPECT_EQ(window.closes, 1);
}

TEST_F(frmSetupInfoTest, shows_the_skin_of_the_language_just_chosen) {
    dialog.Load();
    click({"unit1002", "Lang1002"});
    EXPECT_EQ(skin.loaded.back(), "/program/skin/setup/2.mp4");
    EXPECT_EQ(selected(), (Calls{"lang1002", "unit1002"}));
    EXPECT_EQ(dialog.pendingLanguage(), 1002);
    EXPECT_EQ(dialog.pendingUnit(), 1002);
    EXPECT_EQ(settings.languageCode, 1001);
    EXPECT_TRUE(targets.calls.empty());
}

TEST_F(frmSetupInfoTest, closes_without_applying_when_the_chosen_languages_skin_is_missing) {
    files.files.erase("/program/skin/setup/2.mp4");
    dialog.Load();
    click({"UNIT1003", "LANG1002"});
    EXPECT_EQ(messageBox.shown,
              (std::vector<ShownMessage>{{"<23012>", "<23011>", MessageStyle::Stop}}));
    EXPECT_EQ(window.closes, 1);
    EXPECT_TRUE(targets.calls.empty());
    EXPECT_EQ(settings.languageCode, 1001);
    EXPECT_EQ(settings.unitCode, 1001);
}

TEST_F(frmSetupInfoTest, writes_nothing_when_the_first_choice_comes_back) {
    dialog.Load();
    click({"LANG1002", "LANG1001", "UNIT1003", "UNIT1001", "CMDCLOSE"});
    EXPECT_TRUE(targets.calls.empty());
    EXPECT_TRUE(messageBox.shown.empty());
    EXPECT_EQ(window.closes, 1);
}

TEST_F(frmSetupInfoTest, applies_a_new_unit_at_once_without_a_restart) {
    dialog.Load();
    click({"UNIT1002", "cmdclose"});
    EXPECT_EQ(targets.calls, (Calls{"write Unit=1002", "redrawChart"}));
    EXPECT_EQ(settings.unitCode, 1002);
    EXPECT_EQ(settings.speedFactor, 0.6213712);
    EXPECT_TRUE(messageBox.shown.empty());
    EXPECT_EQ(window.closes, 1);
}

TEST_F(frmSetupInfoTest, applies_the_factor_of_every_unit) {
    const std::vector<std::pair<std::string, double>> units = {
        {"UNIT1003", 0.5399568}, {"UNIT1001", 1.0}, {"UNIT1002", 0.6213712}};
    for (const auto& [element, factor] : units) {
        dialog.Load();
        click({element, "CMDCLOSE"});
        EXPECT_EQ(settings.speedFactor, factor) << element;
    }
}

TEST_F(frmSetupInfoTest, chooses_english_in_the_chinese_program) {
    settings.setLanguage(1002);
    messageBox.answers = {MessageAnswer::Yes};
    dialog.Load();
    click({"LANG1001"});
    EXPECT_EQ(skin.loaded.back(), "/program/skin/setup/1.mp4");
    click({"CMDCLOSE"});
    EXPECT_EQ(targets.calls.front(), "write mainv=1001");
    EXPECT_EQ(targets.calls.back(), "endProgram");
    EXPECT_EQ(settings.languageBase, 10000);
}

TEST_F(frmSetupInfoTest, restarts_after_a_change_of_language) {
    messageBox.answers = {MessageAnswer::Yes};
    dialog.Load();
    click({"LANG1002", "UNIT1003", "CMDCLOSE"});
    EXPECT_EQ(messageBox.shown,
              (std::vector<ShownMessage>{{"<13020>", "<13000>", MessageStyle::Question}}));
    EXPECT_EQ(targets.calls, (Calls{"write mainv=1002", "saveRecordingList",
                                    "start /program/Velmorant DVR Tools", "endProgram"}));
    EXPECT_EQ(shell.calls, (std::vector<ShellCall>{{"open", "/program/Velmorant DVR Tools", "", "",
                                                    ShowWindow::Normal}}));
    EXPECT_EQ(settings.unitCode, 1001);
}

TEST_F(frmSetupInfoTest, goes_on_in_the_new_language_when_the_restart_is_refused) {
    messageBox.answers = {MessageAnswer::No};
    dialog.Load();
    click({"LANG1002", "UNIT1003", "CMDCLOSE"});
    EXPECT_EQ(targets.calls, (Calls{"write mainv=1002", "write Unit=1003", "redrawChart"}));
    EXPECT_EQ(settings.languageCode, 1002);
    EXPECT_EQ(settings.languageIndex, 2);
    EXPECT_EQ(settings.languageBase, 20000);
    EXPECT_EQ(settings.speedFactor, 0.5399568);
    EXPECT_EQ(window.closes, 1);
    EXPECT_TRUE(shell.calls.empty());
}

TEST_F(frmSetupInfoTest, stays_when_the_new_instance_cannot_be_started) {
    messageBox.answers = {MessageAnswer::Yes};
    shell.result = 2;
    dialog.Load();
    click({"LANG1002", "CMDCLOSE"});
    EXPECT_EQ(messageBox.shown.back(), (ShownMessage{"<program.notStarted>\nFile not found",
                                                     "<13011>", MessageStyle::Stop}));
    EXPECT_EQ(targets.calls, (Calls{"write mainv=1002", "saveRecordingList", "removeSavedList"}));
    EXPECT_EQ(window.closes, 1);
}

TEST_F(frmSetupInfoTest, applies_settings_that_cannot_be_kept_with_one_message) {
    targets.writable = false;
    messageBox.answers = {MessageAnswer::No};
    dialog.Load();
    click({"LANG1002", "UNIT1002", "CMDCLOSE"});
    EXPECT_EQ(settings.languageCode, 1002);
    EXPECT_EQ(settings.unitCode, 1002);
    ASSERT_EQ(messageBox.shown.size(), 2U);
    EXPECT_EQ(messageBox.shown[1],
              (ShownMessage{"<configuration.notKept>\n/windows/system32/qvconfig.mp4", "<13000>",
                            MessageStyle::Information}));
}

TEST_F(frmSetupInfoTest, tells_before_the_restart_that_the_language_could_not_be_kept) {
    targets.writable = false;
    messageBox.answers = {MessageAnswer::Yes};
    shell.whenStarted = [this](const ShellCall&) { EXPECT_EQ(messageBox.shown.size(), 2U); };
    dialog.Load();
    click({"LANG1002", "CMDCLOSE"});
    EXPECT_EQ(messageBox.shown.size(), 2U);
    EXPECT_EQ(shell.calls.size(), 1U);
}

TEST_F(frmSetupInfoTest, notes_why_the_list_was_not_handed_over) {
    targets.listWritable = false;
    messageBox.answers = {MessageAnswer::Yes};
    dialog.Load();
    click({"LANG1002", "CMDCLOSE"});
    EXPECT_EQ(targets.calls.back(), "endProgram");
    EXPECT_EQ(errors.noted, Calls{"/program/flow.xml: No space left on device"});
    ASSERT_EQ(errors.functions.size(), 1U);
    EXPECT_EQ(errors.functions[0], "restart");
}

TEST_F(frmSetupInfoTest, does_nothing_for_other_elements) {
    dialog.Load();
    click({"LANG1003", "UNIT1004", "LANG", "close", "", "place.drag"});
    EXPECT_EQ(skin.loaded.size(), 1U);
    EXPECT_EQ(window.closes, 0);
    EXPECT_EQ(selected(), (Calls{"lang1001", "unit1001"}));
}

TEST_F(frmSetupInfoTest, forgets_choices_that_were_not_applied_when_it_opens_again) {
    dialog.Load();
    click({"UNIT1003"});
    dialog.Load();
    EXPECT_EQ(dialog.pendingUnit(), 1001);
    EXPECT_EQ(selected(), (Calls{"lang1001", "unit1001"}));
}

} // namespace
} // namespace velmorant
