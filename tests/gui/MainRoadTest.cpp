#include "tests/gui/ProgramTest.h"

#include <cmath>

namespace velmorant {

class MainRoadTest : public ProgramTest {
  protected:
    void showCard() { showOnMap({recording(1), recording(2), recording(3)}); }
};

TEST_F(MainRoadTest, all_extracts_and_draws_every_route) {
    showCard();
    EXPECT_EQ(driver().extractedRows(), 3);
    for (int row = 1; row <= 3; ++row) {
        EXPECT_TRUE(rooms().rows->marked(row)) << "row " << row;
        ASSERT_NE(driver().track(row), nullptr) << "row " << row;
        EXPECT_EQ(driver().track(row)->count(), 8) << "row " << row;
    }
    EXPECT_EQ(boxes, std::vector<std::string>());
}

TEST_F(MainRoadTest, double_click_plays_the_row) {
    showCard();
    play(2);
    EXPECT_EQ(rooms().rows->playingIndex(), 2);
    EXPECT_EQ(RowView::weight(*rooms().rows, 2), RowWeight::Bold);
    EXPECT_EQ(RowView::weight(*rooms().rows, 1), RowWeight::Normal);
    waitForPosition(1.0, 8.0);
}

TEST_F(MainRoadTest, car_moves_along_the_route_while_playing) {
    showCard();
    play(1);
    const int first = driver().map().carIndex();
    ASSERT_TRUE(waitUntil([&] { return driver().map().carIndex() >= first + 2; }));
    player().pause();
    ASSERT_TRUE(waitUntil([&] { return player().playState() == PlayState::Paused; }));
    const int index = driver().map().carIndex();
    const TrackDot& dot = driver().track(1)->dot(index);
    EXPECT_LE(std::abs(dot.second - driver().position()), 1.5);
    EXPECT_NE(journal().find("script MoveCar('" + dot.lonLatText + "|"), std::string::npos);
}

TEST_F(MainRoadTest, click_on_another_route_switches_and_seeks) {
    showCard();
    play(1);
    const auto place = driver().map().routePlace(driver().number(3), 0.6);
    ASSERT_TRUE(place.has_value()) << "no place of the third route can be clicked";
    const double second = driver().track(3)->dot(place->index).second;
    ASSERT_GE(second, 2);
    driver().map().click(place->pixel);
    ASSERT_TRUE(waitUntil([&] { return driver().playing(3); })) << "the click does not switch";
    waitForPosition(second, second + 2.5);
    EXPECT_EQ(rooms().rows->playingIndex(), 3);
    EXPECT_TRUE(waitUntil([&] { return driver().map().carIndex() >= place->index; }));
}

TEST_F(MainRoadTest, click_on_the_route_that_plays_seeks_in_it) {
    showCard();
    play(1);
    const auto place = driver().map().routePlace(driver().number(1), 0.8);
    ASSERT_TRUE(place.has_value());
    const double second = driver().track(1)->dot(place->index).second;
    ASSERT_GE(second, 4);
    player().pause();
    ASSERT_TRUE(waitUntil([&] { return player().playState() == PlayState::Paused; }));
    driver().map().click(place->pixel);
    waitForPosition(second - 0.05, second + 0.05);
    EXPECT_EQ(player().url(), driver().path(1));
}

TEST_F(MainRoadTest, real_recordings_go_the_whole_road) {
    const std::string data = std::string(VELMORANT_TEST_DATA) + "/recordings/";
    showOnMap({data + "hero7.mp4", data + "max-heromode.mp4", data + "karma.mp4"});
    for (int row = 1; row <= 3; ++row) {
        SCOPED_TRACE(driver().path(row));
        ASSERT_NO_FATAL_FAILURE(play(row));
        const int first = driver().map().carIndex();
        EXPECT_TRUE(waitUntil([&] { return driver().map().carIndex() > first; }));
    }
    const auto place = driver().map().routePlace(driver().number(3), 0.3);
    ASSERT_TRUE(place.has_value());
    player().pause();
    ASSERT_TRUE(waitUntil([&] { return player().playState() == PlayState::Paused; }));
    driver().map().click(place->pixel);
    const double second = driver().track(3)->dot(place->index).second;
    waitForPosition(second - 0.05, second + 0.05);
}

} // namespace velmorant
