#include "desktop/widgets/Theme.h"
#include "server/catalogue/ServedTree.h"
#include "tests/desktop/update/DesktopUpdate.h"
#include "tests/desktop/update/NginxServer.h"

#include <QApplication>
#include <QDir>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace velmorant {
namespace {

using testing::HasSubstr;

class UpdateWindowTest : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(nginx.ready()) << nginx.errors(); }

    void publish(const std::string& version) {
        publishRelease({release.path(), nginx.served().path(), version, "Velmorant DVR Tools", {}});
    }
    void publishFiles(const std::string& version, const std::string& text) {
        release.write("Velmorant DVR Tools", "program");
        release.write("readme.txt", text);
        release.write("skin/main/1.mp4", text + std::string(3'000'000, 's'));
        release.write("new/folder/page.html", text);
        publish(version);
    }

    NginxServer nginx;
    builders::ScratchFolder release;
};

TEST_F(UpdateWindowTest, brings_a_program_folder_up_to_date_from_a_real_server) {
    applyTheme(*qApp);
    publishFiles("R1", "one");
    DesktopUpdate desktop(nginx.base());
    desktop.folder.write("Velmorant DVR Tools", "program");
    auto* sum = desktop.widget.findChild<QProgressBar*>("prgSum");
    auto* single = desktop.widget.findChild<QProgressBar*>("prgSingle");
    desktop.update.Open(UpdateOpening::Automatic);
    EXPECT_FALSE(desktop.widget.isVisible()) << "hidden until there is something to fetch";
    ASSERT_TRUE(waitFor([&] { return desktop.update.sumValue() >= 3; }));
    EXPECT_TRUE(desktop.widget.isVisible());
    EXPECT_EQ(sum->maximum(), 4);
    ASSERT_TRUE(waitFor([&] { return single->value() == single->maximum(); }));
    QDir().mkpath(VELMORANT_TEST_OUTPUT);
    EXPECT_TRUE(desktop.widget.grab().save(VELMORANT_TEST_OUTPUT "/update-window.png"));
    ASSERT_TRUE(waitFor([&] { return !desktop.update.running(); }));
    EXPECT_FALSE(desktop.widget.isVisible()) << "closes itself";
    EXPECT_EQ(sum->value(), 4);
    EXPECT_EQ(desktop.folder.read("skin/main/1.mp4"), release.read("skin/main/1.mp4"));
    EXPECT_EQ(desktop.folder.read("new/folder/page.html"), "one");
    EXPECT_EQ(desktop.folder.read("config.mp4"), nginx.served().read("update/remote.rar"));
    EXPECT_TRUE(desktop.messages.shown.empty());

    publishFiles("R2", "two");
    ASSERT_TRUE(desktop.runToEnd());
    EXPECT_EQ(desktop.folder.read("readme.txt"), "two");
}

TEST_F(UpdateWindowTest, stays_hidden_when_there_is_nothing_to_fetch) {
    publishFiles("R1", "one");
    DesktopUpdate desktop(nginx.base());
    desktop.folder.write("config.mp4", "[config]\nmainv=r1\n");
    ASSERT_TRUE(desktop.runToEnd(UpdateOpening::Automatic));
    EXPECT_FALSE(desktop.widget.isVisible());
    EXPECT_FALSE(desktop.folder.has("readme.txt"));

    ASSERT_TRUE(desktop.runToEnd(UpdateOpening::OnRequest));
    EXPECT_EQ(desktop.toldAtLast(), "The program is up to date.");
}

TEST_F(UpdateWindowTest, asks_before_the_main_program_and_starts_the_updater) {
    publishFiles("R1", "one");
    DesktopUpdate desktop(nginx.base());
    desktop.messages.answers = {MessageAnswer::Yes};
    ASSERT_TRUE(desktop.runToEnd());
    ASSERT_EQ(desktop.shell.calls.size(), 1U);
    EXPECT_EQ(desktop.shell.calls[0].file, desktop.folder.path("velmupdate"));
    EXPECT_EQ(desktop.messages.shown[0].style, MessageStyle::InformationChoice);
    EXPECT_EQ(desktop.folder.read("readme.txt"), "one");
    EXPECT_FALSE(desktop.folder.has("config.mp4"));
}

TEST_F(UpdateWindowTest, is_abandoned_by_its_button_or_by_escape) {
    publishFiles("R1", "one");
    DesktopUpdate desktop(nginx.base());
    const auto button = [&] { return desktop.widget.findChild<QPushButton*>(); };
    const std::function<void()> ways[] = {
        [&] { button()->click(); },
        [&] { QTest::keyClick(button(), Qt::Key_Escape); },
    };
    for (const auto& abandon : ways) {
        desktop.update.Open(UpdateOpening::OnRequest);
        ASSERT_TRUE(waitFor([&] { return desktop.update.sumValue() >= 1; }));
        abandon();
        EXPECT_TRUE(waitFor([&] { return !desktop.update.running(); }));
        EXPECT_FALSE(desktop.widget.isVisible());
        EXPECT_FALSE(desktop.folder.has("config.mp4"));
    }
    desktop.messages.answers = {MessageAnswer::No};
    ASSERT_TRUE(desktop.runToEnd());
    EXPECT_EQ(desktop.folder.read("readme.txt"), "one");
}

TEST_F(UpdateWindowTest, tells_of_a_catalogue_that_is_not_served) {
    DesktopUpdate desktop(nginx.base());
    ASSERT_TRUE(desktop.runToEnd());
    EXPECT_THAT(desktop.toldAtLast(), HasSubstr("404"));
    EXPECT_FALSE(desktop.folder.has("config.mp4"));
}

} // namespace
} // namespace velmorant
