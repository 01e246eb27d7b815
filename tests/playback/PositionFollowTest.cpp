#include "playback/PositionFollow.h"

#include "tests/fakes/FakeChart.h"
#include "tests/fakes/FakeMapPage.h"
#include "tests/fakes/FakeMediaPlayer.h"
#include "tests/fakes/FakeSkin.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace velmorant {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class PositionFollowTest : public ::testing::Test {
  protected:
    PositionFollowTest() { state.settings.setUnit(1001); }

    void fill(int dots) {
        state.currentTrack = std::make_shared<clsDot>();
        for (int i = 0; i < dots; ++i)
            state.currentTrack->SetDot("2012/9/7 08:05:09", "", static_cast<std::int16_t>(i), i,
                                       "121." + std::to_string(i), "25", 0, 90, 0, 0, 0);
    }
    std::string digits() {
        return std::to_string(bar.digits["A1"]) + std::to_string(bar.digits["A2"]) +
               std::to_string(bar.digits["A3"]);
    }

    fakes::FakePlayerSettings player;
    fakes::FakeSkin bar;
    fakes::FakeChart chart;
    fakes::FakeMapPage page;
    ProgramState state;
    PositionFollow follow{
        {.player = player, .controlBar = bar, .chart = chart, .page = page, .state = state}};
};

TEST_F(PositionFollowTest, a_tick_shows_volume_and_speaker) {
    player.loudness = 70;
    follow.UpdateControlBand("0|1");
    EXPECT_EQ(bar.values["volume"], 70);
    EXPECT_FALSE(bar.on["speaker"]);
    player.muted = true;
    follow.UpdateControlBand("0|1");
    EXPECT_EQ(bar.values["volume"], 0) << "while muted the slider shows 0";
    EXPECT_TRUE(bar.on["speaker"]);
}

struct Progress {
    const char* text;
    double value;
};

TEST_F(PositionFollowTest, progress_is_the_share_of_the_length_in_percent) {
    const Progress rows[] = {{"30|120", 25}, {"0|120", 0}, {"120|120", 100}, {"1|3", 33},
                             {"1|8", 12},    {"3|8", 38},  {"130|120", 100}, {"1|2", 50}};
    for (const Progress& row : rows) {
        bar.values["playprogress"] = -1;
        follow.UpdateControlBand(row.text);
        EXPECT_EQ(bar.values["playprogress"], row.value) << row.text;
    }
}

TEST_F(PositionFollowTest, a_length_of_0_or_1_leaves_the_progress_alone) {
    bar.values["playprogress"] = 42;
    for (const char* text : {"30|0", "30|1", "30|-5"})
        follow.UpdateControlBand(text);
    EXPECT_EQ(bar.values["playprogress"], 42);
}

TEST_F(PositionFollowTest, the_published_length_is_the_last_one_greater_than_1) {
    EXPECT_EQ(follow.publishedDuration(), 0);
    follow.UpdateControlBand("30|120");
    follow.UpdateControlBand("30|1");
    EXPECT_EQ(follow.publishedDuration(), 120);
    follow.UpdateControlBand("0|0");
    EXPECT_EQ(follow.publishedDuration(), 120);
    follow.UpdateControlBand("0|60");
    EXPECT_EQ(follow.publishedDuration(), 60);
}

TEST_F(PositionFollowTest, position_0_goes_to_the_first_dot_and_resets_the_marker) {
    fill(10);
    state.currentTrack->lPlayLocal(7);
    follow.UpdateControlBand("0|120");
    EXPECT_EQ(state.currentTrack->lPlayLocal(), 1);
    EXPECT_EQ(chart.cursor, 0.0);
    EXPECT_THAT(page.cars, ElementsAre("121.0|25|1|90"));
}

TEST_F(PositionFollowTest, a_position_moves_cursor_marker_and_car) {
    fill(10);
    follow.UpdateControlBand("4|120");
    EXPECT_EQ(state.currentTrack->lPlayLocal(), 4);
    EXPECT_EQ(chart.cursor, 3.0);
    EXPECT_THAT(page.cars, ElementsAre("121.3|25|4|90"));
    EXPECT_EQ(digits(), "003");
}

TEST_F(PositionFollowTest, the_car_is_sent_on_every_call_whether_or_not_it_moved) {
    fill(10);
    follow.UpdateControlBand("4|120");
    follow.UpdateControlBand("4|1");
    EXPECT_THAT(page.cars, ElementsAre("121.3|25|4|90", "121.3|25|4|90"));
}

TEST_F(PositionFollowTest, past_the_last_interval_the_cursor_stays_on_the_last_dot_reached) {
    fill(10);
    follow.UpdateControlBand("8|120");
    EXPECT_EQ(state.currentTrack->lPlayLocal(), 8);
    follow.UpdateControlBand("50|120");
    EXPECT_EQ(state.currentTrack->lPlayLocal(), 8);
}

TEST_F(PositionFollowTest, a_cursor_that_found_no_dot_yet_goes_to_the_first) {
    fill(10);
    follow.UpdateControlBand("50|120");
    EXPECT_EQ(state.currentTrack->lPlayLocal(), 1);
    EXPECT_EQ(chart.cursor, 0.0);
}

TEST_F(PositionFollowTest, without_a_current_track_the_band_is_still_refreshed) {
    follow.UpdateControlBand("30|120");
    EXPECT_EQ(bar.values["playprogress"], 25);
    EXPECT_EQ(chart.cursorMoves, 0);
    EXPECT_THAT(page.cars, IsEmpty());
}

TEST_F(PositionFollowTest, an_empty_track_ends_the_tick_without_a_car) {
    fill(0);
    follow.UpdateControlBand("3|120");
    EXPECT_THAT(page.cars, IsEmpty());
    EXPECT_EQ(digits(), "000");
}

TEST_F(PositionFollowTest, a_page_that_is_not_ready_gets_no_car_and_the_band_is_refreshed) {
    fill(10);
    page.isReady = false;
    follow.UpdateControlBand("4|8");
    EXPECT_THAT(page.cars, IsEmpty());
    EXPECT_EQ(digits(), "003");
    EXPECT_EQ(bar.values["playprogress"], 50);
}

struct SpeedShown {
    const char* speed;
    std::int32_t unit;
    const char* digits;
};

TEST_F(PositionFollowTest, the_speed_is_shown_in_the_display_unit_by_three_digits) {
    const SpeedShown rows[] = {{"7", 1001, "007"},   {"120", 1002, "075"}, {"120", 1003, "065"},
                               {"0", 1001, "000"},   {"999", 1001, "999"}, {"1234", 1001, "123"},
                               {"2.5", 1001, "002"}, {"3.5", 1001, "004"}};
    for (const SpeedShown& row : rows) {
        state.settings.setUnit(row.unit);
        follow.ShowDot(std::string(row.speed) + "|121.5|25.04|2012/9/7 08:05:09|12|90");
        EXPECT_EQ(digits(), row.digits) << row.speed << " in unit " << row.unit;
    }
}

TEST_F(PositionFollowTest, a_dot_text_moves_the_car_without_speed_and_date) {
    follow.ShowDot("60|121.5|25.04|2012/9/7 08:05:09|12|90");
    EXPECT_THAT(page.cars, ElementsAre("121.5|25.04|12|90"));
}

TEST_F(PositionFollowTest, the_dot_text_of_a_track_holds_its_current_dot) {
    clsDot track;
    track.SetDot("2012/9/7 08:05:09", "01:05", 60, 65, "121.5", "25.04", 0, 90, 0, 0, 0);
    track.lPlayLocal(1);
    EXPECT_EQ(PositionFollow::dotText(track), "60|121.5|25.04|2012/9/7 08:05:09|1|90");
}

TEST_F(PositionFollowTest, texts_with_an_error_end_silently) {
    fill(10);
    for (const char* text : {"", "4", "x|120", "4|y", "40000|1"})
        follow.UpdateControlBand(text);
    for (const char* text : {"", "fast|1|2|3|4|5", "60|121.5", "-5|1|2|3|4|5"})
        follow.ShowDot(text);
    EXPECT_THAT(page.cars, IsEmpty());
}

} // namespace
} // namespace velmorant
