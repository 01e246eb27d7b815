#include "settings/frmAbout.h"

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

class frmAboutTest : public testing::Test {
  protected:
    frmAboutTest() { files.files = {{"/program/skin/about.mp4", ""}}; }

    fakes::FakeWindow window;
    fakes::FakeSkin skin;
    fakes::FakeScreen screen;
    fakes::FakeFileSystem files;
    fakes::FakeHostPaths paths;
    fakes::FakeTexts texts;
    fakes::FakeMessageBox messageBox;
    fakes::FakeShell shell;
    frmAbout box{
        {.window = window,
         .skin = skin,
         .screen = screen,
         .files = files,
         .paths = paths,
         .texts = texts,
         .messageBox = messageBox,
         .shell = shell,
         .facts = {"1.2.3", "GPL-3.0-or-later", "Qt 6\nlibmpv 2", "https://example.test/dvr"}}};
};

TEST_F(frmAboutTest, opens_centred_with_the_same_skin_in_every_language) {
    screen.pixelWidth = 1921;
    texts.languageBase = 20000;
    EXPECT_EQ(box.Load(), SkinLoad::Loaded);
    EXPECT_EQ(skin.loaded, std::vector<std::string>{"/program/skin/about.mp4"});
    EXPECT_EQ(window.width, 600 * 12);
    EXPECT_EQ(window.height, 400 * 15);
    EXPECT_EQ(window.x, 1921 * 12 / 2 - 300 * 12);
    EXPECT_EQ(window.y, (708 - 400) / 2 * 15);
}

TEST_F(frmAboutTest, tells_version_licence_and_components) {
    box.Load();
    EXPECT_EQ(skin.texts["place.version"], "1.2.3");
    EXPECT_EQ(skin.texts["place.licence"], "GPL-3.0-or-later");
    EXPECT_EQ(skin.texts["place.components"], "Qt 6\nlibmpv 2");
}

TEST_F(frmAboutTest, closes_after_the_message_when_its_skin_is_missing) {
    files.files.clear();
    EXPECT_EQ(box.Load(), SkinLoad::Missing);
    EXPECT_EQ(messageBox.shown,
              (std::vector<ShownMessage>{{"<13012>", "<13011>", MessageStyle::Stop}}));
    EXPECT_EQ(window.closes, 1);
}

TEST_F(frmAboutTest, counts_a_skin_that_is_no_drawing_as_missing) {
    skin.loadable = false;
    EXPECT_EQ(box.Load(), SkinLoad::Missing);
    EXPECT_EQ(messageBox.shown.size(), 1U);
    EXPECT_EQ(window.closes, 1);
}

TEST_F(frmAboutTest, closes_and_opens_the_web_site_by_the_elements_names) {
    box.Load();
    for (const char* element : {"", "open", "webstations", "place.version"})
        box.SkinClick(element);
    EXPECT_EQ(window.closes, 0);
    EXPECT_TRUE(shell.calls.empty());
    box.SkinClick("WebStation");
    EXPECT_EQ(shell.calls, (std::vector<ShellCall>{
                               {"open", "https://example.test/dvr", "", "", ShowWindow::Normal}}));
    box.SkinClick("Close");
    EXPECT_EQ(window.closes, 1);
}

} // namespace
} // namespace velmorant
