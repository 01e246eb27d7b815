#include "tests/gui/ProgramTest.h"

#include <filesystem>

namespace velmorant {

using WindowTest = ProgramTest;

TEST_F(WindowTest, language_1002_shows_chinese) {
    start(chinese);
    add({recording(1)});
    EXPECT_NE(
        rooms().list->view().text(rooms().rows->row(1), SubItem::KindLabel).find("\u4e00\u822c"),
        std::string::npos);
    const QString all = panes().list.skin->elementWidget("all")->accessibleName();
    EXPECT_TRUE(all.contains("\u5168\u90e8")) << all.toStdString();
    EXPECT_EQ(driver().map().evaluate("document.documentElement.lang").toStdString(), "zh-Hant");
    EXPECT_EQ(driver().map().evaluate("document.title").toStdString(), "\u8def\u7dda\u5730\u5716");
}

TEST_F(WindowTest, without_its_splash_the_program_tells_and_goes_on) {
    std::filesystem::remove(folder() + "/program/skin/load/load1.mp4");
    start();
    EXPECT_EQ(boxes,
              (std::vector<std::string>{"System file is missing, please re-install the system"}));
}

TEST_F(WindowTest, the_splash_is_on_the_screen_before_the_page_is_asked_for) {
    start();
    ASSERT_TRUE(waitUntil([&] { return journal().find("painted frame") != std::string::npos; }));
    const std::string written = journal();
    EXPECT_LT(written.find("painted splash"), written.find("navigate "));
    EXPECT_LT(written.find("navigate "), written.find("painted frame"));
}

} // namespace velmorant
