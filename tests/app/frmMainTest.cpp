#include "app/frmMain.h"

#include "app/LanguageTable.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/fakes/FakeHostPaths.h"
#include "tests/fakes/FakeMessageBox.h"
#include "tests/fakes/FakeNativeWindow.h"
#include "tests/fakes/FakeScreen.h"
#include "tests/fakes/FakeSkin.h"
#include "tests/fakes/FakeWaits.h"
#include "tests/fakes/FakeWindow.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

namespace velmorant {
namespace {

using fakes::ShownMessage;

class FakeFrameCommands : public FrameCommands {
  public:
    void openFiles() override { calls.push_back("openFiles"); }
    void deleteAll() override { calls.push_back("deleteAll"); }
    void showSettings() override { calls.push_back("showSettings"); }
    void showAbout() override { calls.push_back("showAbout"); }
    void endProgram() override { calls.push_back("endProgram"); }

    std::vector<std::string> calls;
};

/// A window that reports each new size to the frame, as a real one does.
class ReportingWindow : public fakes::FakeWindow {
  public:
    void resize(int newWidth, int newHeight) override {
        FakeWindow::resize(newWidth, newHeight);
        ++resizes;
        if (frame != nullptr && resizes < 10)
            frame->Resize();
    }
    frmMain* frame = nullptr;
    int resizes = 0;
};

class frmMainTest : public testing::Test {
  protected:
    frmMainTest() {
        settings.setLanguage(1001);
        files.files = {{"/program/skin/main/1.mp4", ""}, {"/program/skin/main/2.mp4", ""}};
        native.procedure = [this](const WindowMessage& message) {
            passed.push_back(message.message);
            return std::intptr_t{77};
        };
    }

    std::vector<std::uint32_t> passed;
    SettingsState settings;
    ReportingWindow window;
    fakes::FakeNativeWindow native;
    fakes::FakeSkin skin;
    fakes::FakeWindow splash;
    fakes::FakeFileSystem files;
    fakes::FakeHostPaths paths;
    fakes::FakeScreen screen;
    LanguageTable texts{settings};
    fakes::FakeMessageBox messageBox;
    fakes::FakeWaits waits;
    FakeFrameCommands commands;
    frmMain frame{{.settings = settings,
                   .window = window,
                   .native = native,
                   .skin = skin,
                   .splash = splash,
                   .files = files,
                   .paths = paths,
                   .screen = screen,
                   .texts = texts,
                   .messageBox = messageBox,
                   .waits = waits,
                   .commands = commands}};
};

TEST_F(frmMainTest, loads_the_skin_of_the_language) {
    EXPECT_EQ(frame.Load(), SkinLoad::Loaded);
    settings.setLanguage(1002);
    frame.Load();
    EXPECT_EQ(skin.loaded,
              (std::vector<std::string>{"/program/skin/main/1.mp4", "/program/skin/main/2.mp4"}));
    EXPECT_EQ(window.caption, "Velmorant DVR Tools");
}

TEST_F(frmMainTest, ends_the_program_after_the_message_when_its_skin_is_missing) {
    settings.setLanguage(1002);
    files.files.erase("/program/skin/main/2.mp4");
    EXPECT_EQ(frame.Load(), SkinLoad::Missing);
    EXPECT_EQ(messageBox.shown, (std::vector<ShownMessage>{{"系統檔案丟失，請重新安裝系統",
                                                            "系統警告資訊", MessageStyle::Stop}}));
    EXPECT_EQ(window.closes, 1);
    EXPECT_EQ(commands.calls, std::vector<std::string>{"endProgram"});
    EXPECT_EQ(native.changes, 0);
    EXPECT_TRUE(native.deleted.empty());
}

TEST_F(frmMainTest, counts_a_skin_that_is_no_drawing_as_missing) {
    skin.loadable = false;
    EXPECT_EQ(frame.Load(), SkinLoad::Missing);
    EXPECT_EQ(messageBox.shown.size(), 1U);
    EXPECT_EQ(commands.calls, std::vector<std::string>{"endProgram"});
}

TEST_F(frmMainTest, sets_the_largest_size_and_leaves_every_other_field) {
    frame.Load();
    std::array<std::byte, 44> record;
    for (std::size_t i = 0; i < record.size(); ++i)
        record[i] = static_cast<std::byte>(i + 1);
    const auto before = record;
    EXPECT_EQ(native.procedure({0x24, 0, record.data()}), 77);
    std::array<std::int32_t, 2> size{};
    std::memcpy(size.data(), record.data() + 32, sizeof(size));
    EXPECT_EQ(size, (std::array<std::int32_t, 2>{1024, 708}));
    for (std::size_t i = 0; i < record.size(); ++i) {
        if (i < 32 || i >= 40) {
            EXPECT_EQ(record[i], before[i]) << i;
        }
    }
    EXPECT_EQ(passed, std::vector<std::uint32_t>{0x24});
}

TEST_F(frmMainTest, passes_every_message_on) {
    frame.Load();
    std::array<std::byte, 40> record{};
    EXPECT_EQ(native.procedure({0x05, 0, record.data()}), 77);
    EXPECT_EQ(native.procedure({0x24, 0, nullptr}), 77);
    EXPECT_EQ(record, (std::array<std::byte, 40>{}));
    EXPECT_EQ(passed, (std::vector<std::uint32_t>{0x05, 0x24}));
}

TEST_F(frmMainTest, puts_the_window_procedure_back_when_it_unloads) {
    frame.Load();
    frame.Unload();
    std::array<std::byte, 40> record{};
    native.procedure({0x24, 0, record.data()});
    EXPECT_EQ(record, (std::array<std::byte, 40>{}));
    EXPECT_EQ(native.changes, 2);
    frame.Unload();
    EXPECT_EQ(native.changes, 2);
}

TEST_F(frmMainTest, passes_messages_to_the_first_procedure_when_loaded_again) {
    frame.Load();
    frame.Load();
    EXPECT_EQ(native.procedure({0x05, 0, nullptr}), 77);
    EXPECT_EQ(passed, std::vector<std::uint32_t>{0x05});
}

TEST_F(frmMainTest, removes_the_third_last_entry_of_any_system_menu) {
    for (const int items : {7, 9, 2}) {
        native.deleted.clear();
        native.menuItems = items;
        frame.Load();
        EXPECT_EQ(native.deleted, std::vector<int>{items - 3});
    }
}

TEST_F(frmMainTest, keeps_its_size_at_the_splashs_place) {
    window.frame = &frame;
    splash.x = 6720;
    splash.y = 2790;
    frame.Resize();
    EXPECT_EQ(window.x, 6720);
    EXPECT_EQ(window.y, 2790);
    EXPECT_EQ(window.width, 1024 * 12);
    EXPECT_EQ(window.height, 708 * 15);
    EXPECT_EQ(window.resizes, 1);
}

TEST_F(frmMainTest, asks_before_it_closes) {
    messageBox.answers = {MessageAnswer::No, MessageAnswer::Yes};
    EXPECT_EQ(frame.CloseRequest(), CloseDecision::Stay);
    EXPECT_EQ(waits.eventRuns, 0);
    EXPECT_EQ(frame.CloseRequest(), CloseDecision::Close);
    EXPECT_EQ(waits.eventRuns, 1);
    EXPECT_EQ(messageBox.shown[0], (ShownMessage{"Really want to exit the system?",
                                                 "Information prompted", MessageStyle::Question}));
}

TEST_F(frmMainTest, stays_when_the_question_cannot_be_asked) {
    settings.languageBase = 30000;
    EXPECT_EQ(frame.CloseRequest(), CloseDecision::Stay);
    settings.languageBase = 2147483647;
    EXPECT_EQ(frame.CloseRequest(), CloseDecision::Stay);
    EXPECT_TRUE(messageBox.shown.empty());
}

TEST_F(frmMainTest, runs_the_commands_by_name_in_any_case) {
    for (const char* name : {"open", "Delete", "SETUP", "info", "close", "", "opens", "place.drag"})
        frame.SkinClick(name);
    EXPECT_EQ(commands.calls,
              (std::vector<std::string>{"openFiles", "deleteAll", "showSettings", "showAbout"}));
}

} // namespace
} // namespace velmorant
