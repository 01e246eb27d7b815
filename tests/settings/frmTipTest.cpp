#include "settings/frmTip.h"

#include "tests/fakes/FakeFileSystem.h"
#include "tests/fakes/FakeHostPaths.h"
#include "tests/fakes/FakeMessageBox.h"
#include "tests/fakes/FakeScreen.h"
#include "tests/fakes/FakeSkin.h"
#include "tests/fakes/FakeTexts.h"
#include "tests/fakes/FakeTimers.h"
#include "tests/fakes/FakeWindow.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velmorant {
namespace {

using fakes::ShownMessage;

class frmTipTest : public testing::Test {
  protected:
    frmTipTest() {
        settings.setLanguage(1001);
        files.files = {{"/program/skin/load/load1.mp4", ""}, {"/program/skin/load/load2.mp4", ""}};
    }

    SettingsState settings;
    fakes::FakeWindow window;
    fakes::FakeSkin skin;
    fakes::FakeTimers timers;
    fakes::FakeTimer timer{timers};
    fakes::FakeScreen screen;
    fakes::FakeFileSystem files;
    fakes::FakeHostPaths paths;
    fakes::FakeTexts texts;
    fakes::FakeMessageBox messageBox;
    frmTip splash{{.settings = settings,
                   .window = window,
                   .skin = skin,
                   .timer = timer,
                   .screen = screen,
                   .files = files,
                   .paths = paths,
                   .texts = texts,
                   .messageBox = messageBox}};
};

TEST_F(frmTipTest, loads_the_picture_of_the_language) {
    EXPECT_EQ(splash.Load(), SkinLoad::Loaded);
    settings.setLanguage(1002);
    splash.Load();
    EXPECT_EQ(skin.loaded, (std::vector<std::string>{"/program/skin/load/load1.mp4",
                                                     "/program/skin/load/load2.mp4"}));
}

TEST_F(frmTipTest, closes_itself_once_after_three_seconds) {
    splash.Load();
    timers.advance(2999);
    EXPECT_EQ(window.closes, 0);
    timers.advance(1);
    EXPECT_EQ(window.closes, 1);
    timers.advance(10000);
    EXPECT_EQ(window.closes, 1);
}

TEST_F(frmTipTest, stands_in_the_middle_of_the_screen_with_the_frames_size) {
    screen.pixelWidth = 1920;
    screen.pixelHeight = 1080;
    splash.Resize();
    EXPECT_EQ(window.width, 1024 * 12);
    EXPECT_EQ(window.height, 708 * 15);
    EXPECT_EQ(window.x, (1920 - 1024) / 2 * 12);
    EXPECT_EQ(window.y, (1080 - 708) / 2 * 15);
}

TEST_F(frmTipTest, closes_after_the_message_when_its_skin_is_missing) {
    files.files.clear();
    EXPECT_EQ(splash.Load(), SkinLoad::Missing);
    EXPECT_EQ(messageBox.shown,
              (std::vector<ShownMessage>{{"<13012>", "<13011>", MessageStyle::Stop}}));
    EXPECT_EQ(window.closes, 1);
}

TEST_F(frmTipTest, counts_a_skin_that_is_no_drawing_as_missing) {
    skin.loadable = false;
    EXPECT_EQ(splash.Load(), SkinLoad::Missing);
    EXPECT_EQ(messageBox.shown.size(), 1U);
    EXPECT_EQ(window.closes, 1);
}

} // namespace
} // namespace velmorant
