#include "tests/gui/ProgramTest.h"

#include <filesystem>
#include <fstream>
#include <sstream>

namespace velmorant {

using WindowTest = ProgramTest;

namespace {

/// Gives the element another id.
void removeElement(const std::string& skin, const std::string& element) {
    std::stringstream text;
    text << std::ifstream(skin).rdbuf();
    std::string drawing = text.str();
    const std::string id = "<g id=\"" + element + "\"";
    const std::size_t place = drawing.find(id);
    ASSERT_NE(place, std::string::npos) << skin;
    drawing.replace(place, id.size(), "<g id=\"x.gone\"");
    std::ofstream(skin) << drawing;
}

} // namespace

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

TEST_F(WindowTest, without_the_skin_of_the_list_the_program_tells_and_ends) {
    std::filesystem::remove(folder() + "/program/skin/media/ls1.MP4");
    EXPECT_TRUE(startAndEnd());
    EXPECT_EQ(boxes,
              (std::vector<std::string>{"System file is missing, please re-install the system"}));
    EXPECT_FALSE(panes().frame.isVisible());
}

TEST_F(WindowTest, commands_that_a_skin_lacks_are_named_on_the_error_output) {
    const std::pair<std::string, std::string> lost[] = {{"main/1.mp4", "info"},
                                                        {"control/MediaControl1.mp4", "head"},
                                                        {"media/ls1.MP4", "lock"},
                                                        {"media/ctl.MP4", "mylist"}};
    for (const auto& [skin, element] : lost)
        removeElement(folder() + "/program/skin/" + skin, element);
    testing::internal::CaptureStderr();
    start();
    const std::string said = testing::internal::GetCapturedStderr();
    for (const auto& [skin, element] : lost)
        EXPECT_THAT(said,
                    testing::HasSubstr(skin + ": the skin has no element \"" + element + '"'));
}

TEST_F(WindowTest, escape_gives_the_window_back_from_the_whole_map) {
    start();
    const auto pressed = [this] {
        return driver().map().evaluate(
            "document.getElementById('wholeWindow').getAttribute('aria-pressed')");
    };
    ASSERT_TRUE(waitUntil([&] {
        return driver().map().evaluate("velmorantMap.configuration.answers('whole-window')") ==
               "true";
    }));
    driver().map().evaluate("document.getElementById('wholeWindow').click()");
    ASSERT_TRUE(waitUntil([&] { return panes().frame.enlarged() && pressed() == "true"; }));
    QTest::keyClick(&panes().frame, Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([&] { return !panes().frame.enlarged() && pressed() == "false"; }));
    driver().map().evaluate("document.getElementById('wholeWindow').click()");
    EXPECT_TRUE(waitUntil([&] { return panes().frame.enlarged() && pressed() == "true"; }))
        << "the page does not know that the window was taken back";
}

TEST_F(WindowTest, the_map_follows_a_change_of_the_unit_at_once) {
    start();
    const auto unit = [this] { return driver().map().evaluate("velmorantMap.speedColours.label"); };
    ASSERT_TRUE(waitUntil([&] { return unit() == "km/h"; }));
    rooms().setup->Load();
    rooms().setup->SkinClick("UNIT1002");
    rooms().setup->SkinClick("CMDCLOSE");
    EXPECT_TRUE(waitUntil([&] { return unit() == "mph"; })) << unit().toStdString();
}

TEST_F(WindowTest, the_splash_is_on_the_screen_before_the_page_is_asked_for) {
    start();
    ASSERT_TRUE(waitUntil([&] { return journal().find("painted frame") != std::string::npos; }));
    const std::string written = journal();
    EXPECT_LT(written.find("painted splash"), written.find("navigate "));
    EXPECT_LT(written.find("navigate "), written.find("painted frame"));
}

} // namespace velmorant
