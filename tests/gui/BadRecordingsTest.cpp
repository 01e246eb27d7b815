#include "tests/gui/ProgramTest.h"

#include <filesystem>
#include <fstream>

namespace velmorant {

namespace fs = std::filesystem;

class BadRecordingsTest : public ProgramTest {
  protected:
    std::string written(const std::string& name, const std::string& content) {
        const std::string path = folder() + "/card/20240612/" + name;
        fs::create_directories(fs::path(path).parent_path());
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }
    std::string cutOff(const std::string& name) {
        const std::string path = copied(recording(2), "card/20240612/" + name);
        fs::resize_file(path, fs::file_size(path) / 3);
        return path;
    }
    bool statusNames(const std::string& name) {
        return journal().find("failed ") != std::string::npos &&
               journal().find(name) != std::string::npos;
    }
};

TEST_F(BadRecordingsTest, broken_files_get_their_line_and_do_not_stop_the_others) {
    start();
    add({copied(recording(1), "card/20240612/103000.MP4"), written("103100.MP4", ""),
         written("103200.MP4", "this is no recording"), cutOff("103300.MP4"),
         copied(recording(3), "card/20240612/103400.MP4")});
    ASSERT_EQ(driver().rowCount(), 5);
    extractAll();
    waitForRoutes(driver().rowsWithPlaces());
    ASSERT_NE(driver().track(1), nullptr);
    EXPECT_EQ(driver().track(1)->count(), 8);
    ASSERT_NE(driver().track(driver().rowCount()), nullptr);
    EXPECT_EQ(driver().track(driver().rowCount())->count(), 8);
    ASSERT_EQ(boxes.size(), 1u) << "one box for all of them together";
    for (const char* name : {"103100.MP4", "103200.MP4"})
        EXPECT_NE(boxes[0].find(name), std::string::npos) << boxes[0];
    EXPECT_EQ(boxes[0].find("103000.MP4"), std::string::npos) << boxes[0];
    play(driver().rowCount());
}

TEST_F(BadRecordingsTest, the_queue_goes_on_behind_what_cannot_be_played) {
    const std::string broken = copied(recording(2), "card/20240612/103100.MP4");
    showOnMap({copied(recording(1), "card/20240612/103000.MP4"), broken,
               copied(recording(3), "card/20240612/103200.MP4")});
    // As when the card loses a file's content after it was read.
    fs::resize_file(broken, 1000);
    driver().doubleClickRow(2);
    EXPECT_TRUE(waitUntil([&] { return driver().playing(3); }));
    EXPECT_FALSE(rooms().rows->marked(2));
    EXPECT_NE(rooms().rows->row(2).notice, "");
    EXPECT_EQ(rooms().rows->row(2).file, FileState::Present);
    EXPECT_TRUE(statusNames("103100.MP4"));
    EXPECT_EQ(boxes, std::vector<std::string>());
}

TEST_F(BadRecordingsTest, a_missing_file_loses_its_mark_and_opens_nothing) {
    const std::string gone = copied(recording(2), "card/20240612/103100.MP4");
    showOnMap({copied(recording(1), "card/20240612/103000.MP4"), gone});
    const auto place = driver().map().routePlace(driver().number(2), 0.5);
    ASSERT_TRUE(place.has_value());
    fs::remove(gone);
    driver().map().click(place->pixel);
    EXPECT_TRUE(waitUntil([&] { return rooms().rows->row(2).file == FileState::Missing; }));
    EXPECT_FALSE(rooms().rows->marked(2));
    EXPECT_EQ(player().url(), "");
}

TEST_F(BadRecordingsTest, unusual_paths_go_the_whole_road) {
    const std::string longName(100, 'n');
    const std::string paths[] = {
        "two  blanks and one/103045.MP4",
        "salt & pepper/103145.MP4",
        "\u884c\u8eca\u7d00\u9304/\u9304\u5f71.MP4",
        longName + "/" + longName + "/" + longName + "/103245.MP4",
    };
    start();
    std::vector<std::string> recordings;
    for (const std::string& path : paths)
        recordings.push_back(copied(recording(static_cast<int>(recordings.size()) + 1), path));
    ASSERT_GT(recordings.back().size(), 300u);
    add(recordings);
    extractAll();
    waitForRoutes(4);
    for (int row = 1; row <= 4; ++row) {
        SCOPED_TRACE(driver().path(row));
        EXPECT_EQ(driver().path(row), recordings[static_cast<std::size_t>(row) - 1]);
        ASSERT_NO_FATAL_FAILURE(play(row));
        EXPECT_TRUE(waitUntil([&] { return driver().position() > 0.3; }));
    }
}

} // namespace velmorant
